// Who may use a file of a test.
#pragma once

#include <string>

namespace tarsel {

/// Takes all rights to the file away from everybody but its owner.
void CloseToOthers(const std::string& file);

}  // namespace tarsel
