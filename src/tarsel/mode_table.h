// What can be scanned, for --help.
#pragma once

#include <string>

namespace tarsel {

/// One block per target option: what it scans, over which protocol and port, and what the account
/// needs.
std::string ModeTable();

}  // namespace tarsel
