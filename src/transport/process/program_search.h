// Where the helper programs of a machine are.
#pragma once

#include <functional>
#include <string>

namespace Vantix::transport {

/// The folders of `path` (a PATH variable; empty: none) and then the usual ones, also those of the
/// administrator, each once, separated by colons. Relative folders are left out: what lies in the
/// current folder must not be run by its name.
[[nodiscard]] std::string ProgramFolders(const std::string& path);

/// The first "<folder>/<name>" for which `is_program` holds; empty when there is none. A name with
/// a slash is taken as it stands.
[[nodiscard]] std::string FindProgram(const std::string& name, const std::string& folders,
                                      const std::function<bool(const std::string&)>& is_program);

}  // namespace Vantix::transport
