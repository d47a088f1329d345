// Which package of this tool fits a remote machine.
//
// Looks into one folder; unpacks nothing.
#pragma once

#include <string>

namespace Vantix::remote {

struct ToolPackage {
    std::string file;   ///< full path; empty when there is none
    std::string error;  ///< one sentence when there is none
};

/// "tarsel-<version>-<system>-<machine>.tar.gz", system and machine as uname names them. Empty when
/// one of them is no word of letters, digits, "_", "." and "-".
[[nodiscard]] std::string ToolPackageName(const std::string& version, const std::string& system,
                                          const std::string& machine);

/// The package in `folder`; a regular file, or a link to one.
[[nodiscard]] ToolPackage FindToolPackage(const std::string& folder, const std::string& version,
                                          const std::string& system, const std::string& machine);

}  // namespace Vantix::remote
