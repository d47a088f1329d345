// Exit codes of the command, and which result code ends in which of them.
#pragma once

#include <cstdint>
#include <string>

namespace tarsel {

enum ExitCode : int {
    kExitComplete = 0,
    kExitFailed = 1,
    kExitUsage = 2,
    kExitPartial = 3,
    kExitAuthentication = 4,
    kExitUnreachable = 5,
    kExitTls = 6,
    kExitUnsupported = 7,
    kExitSignalBase = 128  ///< plus the number of the signal
};

/// `code`: the whole 32-bit result code. `is_partial` matters for a successful code only. `signal`:
/// the signal that interrupted the scan, 0 for none; it decides when the scan did not succeed.
int ExitCodeFor(std::int32_t code, bool is_partial, int signal);

/// The table for --help.
std::string ExitCodeTable();

}  // namespace tarsel
