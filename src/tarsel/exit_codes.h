// Exit codes of the command, and which result code ends in which of them.
#pragma once

#include <cstdint>
#include <string>

#include "common/result/tarsel_result.h"

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

/// A generic failure without a word: it says nothing of why a scan failed.
bool IsMute(const TarselResult& result);

/// The code that tells best why a scan failed. "Connection failed" may be the answer of the last
/// protocol that was tried, and a generic failure without a word says nothing, while an earlier
/// failure knows more: `last_failure` is the target's last one (0: none), `has_answered` says that
/// facts were read. A release that cannot be scanned is told from other failures of its kind. Other
/// codes are returned as they are.
std::int32_t TellingCode(const TarselResult& result, std::int32_t last_failure, bool has_answered);

/// The table for --help.
std::string ExitCodeTable();

}  // namespace tarsel
