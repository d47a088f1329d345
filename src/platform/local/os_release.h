// The file os-release (os-release(5)): what a distribution says of itself.
//
// Pure: text in, values out.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace Vantix::local {

/// Names and clean values of the assignments, unquoted as a shell would; of several of one name the
/// last. Lines that are none are passed over.
[[nodiscard]] std::map<std::string, std::string> ParseOsRelease(std::string_view text);

struct OsName {
    std::string name;           ///< id and major version in one word: "rhel9", "ubuntu22.04"
    std::string minor_version;  ///< "3" of rhel 9.3; empty when not told
};

/// `release` as ParseOsRelease gives it. The name of the maintenance system (id "platform") is
/// "PLATFORM", without version. Without id it is "linux", as the standard demands.
[[nodiscard]] OsName OsNameOf(const std::map<std::string, std::string>& release);

}  // namespace Vantix::local
