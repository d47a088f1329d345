// The text of a settings file: pure look-up, no files.
#pragma once

#include <istream>
#include <optional>
#include <string>

namespace Vantix {

/// The integer under `key` in a text of "key = value" lines; of repeated keys the last one counts.
/// Absent when the key is missing or its value is not a whole decimal number that fits. Keys are
/// compared exactly; blanks around key and value, a byte order mark and carriage returns are
/// ignored, as are lines that begin with '#'.
std::optional<int> FindConfigNumber(std::istream& text, const std::string& key);

}  // namespace Vantix
