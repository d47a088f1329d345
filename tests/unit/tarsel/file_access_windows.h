// The access control list of a file, as a test wants it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tarsel {

struct AccessEntry {
    WELL_KNOWN_SID_TYPE who;  ///< WinNullSid: this user
    DWORD rights;
    bool is_allowed = true;
};

/// The file's list consists of these entries alone; nothing is inherited.
void SetAccess(const std::string& file, const std::vector<AccessEntry>& entries);

}  // namespace tarsel
