// The files that a scan leaves in the output folder.
#pragma once

#include <chrono>
#include <string>

namespace tarsel {

inline constexpr const char* kScanXmlName = "Tarsel-update-scan.xml";
inline constexpr const char* kCommonResultName = "common_result.xml";
inline constexpr const char* kLogName = "tarsel.log";

/// Full name of a file in the folder.
std::string FileIn(const std::string& folder, const std::string& name);

/// Makes the folder with its parents and proves that files can be made in it, before a scan is
/// spent for nothing. Empty, or one sentence about what is wrong.
std::string PrepareOutputFolder(const std::string& folder);

/// Writes a file aside and renames it, so that nobody ever reads half of it. False on failure; a
/// former file is then still there.
[[nodiscard]] bool WriteFileAtomically(const std::string& file, const std::string& content);

/// Renames the scan file of an earlier run to "<name>.old", so that it cannot be taken for the
/// result of this one. True when there was one.
bool SetAsideOldScanXml(const std::string& folder);

/// Renames a scan file that was written since `started`, and so came from a server in this run, to
/// "<name>.remote". True when there was one.
bool SetAsideFetchedScanXml(const std::string& folder,
                            std::chrono::system_clock::time_point started);

}  // namespace tarsel
