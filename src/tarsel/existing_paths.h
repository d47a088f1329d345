// Checks of options that name a file or a folder.
//
// CLI11 has such checks, but on Windows they look for a name that is not the one given.
#pragma once

#include <string>

namespace tarsel {

/// What is wrong with `name` (UTF-8) as the name of an existing file or, below, folder; empty when
/// nothing is. Links are followed.
std::string CheckExistingFile(const std::string& name);
std::string CheckExistingFolder(const std::string& name);

}  // namespace tarsel
