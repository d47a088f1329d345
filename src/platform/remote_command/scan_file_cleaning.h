// Takes out of a scan file from elsewhere what could take over a terminal that shows its values.
//
// Knows characters and character references only; whether the file is well-formed is its reader's
// affair.
#pragma once

#include <string>
#include <string_view>

namespace Vantix::remote {

/// The text with a blank for each control character (C0 but tab and line ends, DEL, C1), written as
/// it is or as a character reference, and with U+FFFD for bytes that are no UTF-8. Clean text comes
/// back byte by byte as it was.
[[nodiscard]] std::string CleanScanXml(std::string_view xml);

/// Cleans a file in place; files that need it not are not touched. False when it cannot be read or
/// written.
[[nodiscard]] bool CleanScanFile(const std::string& path);

}  // namespace Vantix::remote
