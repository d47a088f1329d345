// One record of the log as a text: pure formatting, no masking, no output.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace Vantix {

/// Longer records are cut. Masking must have happened before: half a secret is still a secret.
inline constexpr std::size_t kLongestLogRecord = 256 * 1024;

/// "<time> [<level>] <source>:<line> <text>", without a final line end. Further lines of the text
/// are indented, so that only the first line of a record begins with a time. Control bytes become
/// blanks: a peer's text can neither forge a record nor steer a terminal.
std::string FormatLogRecord(int level, const char* source, int line, const std::string& text,
                            std::chrono::system_clock::time_point time);

}  // namespace Vantix
