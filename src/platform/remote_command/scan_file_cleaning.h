// Takes out of a scan file from elsewhere what could take over a terminal that shows its values,
// and refuses what no scan writes and what would use up this machine's memory.
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

/// False for a text with more elements and attributes, or a longer text between two tags, than any
/// scan writes: 20,000 packages, 4096 bytes.
[[nodiscard]] bool IsReasonableScanXml(std::string_view xml);

enum class ScanFileState {
    kClean,      ///< now, or from the beginning
    kExcessive,  ///< not reasonable; left as it was
    kNotWritten  ///< it cannot be read or written
};

/// Cleans a file in place; files that need it not are not touched.
[[nodiscard]] ScanFileState CleanScanFile(const std::string& path);

/// The same for a log, of any length. False when it cannot be read or written.
[[nodiscard]] bool CleanLogFile(const std::string& path);

}  // namespace Vantix::remote
