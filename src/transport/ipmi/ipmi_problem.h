// What went wrong with an IPMI session, read from how ipmitool ended and what it said.
//
// Its exit status is 1 for everything; the reason stands only in the lines that -v adds. Knows
// nothing of result codes.
#pragma once

#include <string>
#include <string_view>

#include "transport/process/command_runner.h"

namespace Vantix::transport {

enum class IpmiProblem {
    kNone,
    kAuthentication,  ///< user name or password refused
    kCipher,          ///< this cipher suite is not spoken; another may be
    kPrivilege,       ///< the account may not open a session of this privilege level
    kBusy,            ///< no free session, or still starting; later it may work
    kNoAnswer,        ///< nobody answers at the address, or IPMI over LAN is off
    kNameUnknown,     ///< the host name was not resolved
    kNoDevice,        ///< the local IPMI device is missing or not accessible
    kToolMissing,     ///< ipmitool is not installed
    kToolBroken,      ///< ipmitool itself does not work
    kTimedOut,        ///< ipmitool had to be ended
    kCancelled,
    kOther
};

struct IpmiFailure {
    IpmiProblem problem = IpmiProblem::kNone;
    std::string text;  ///< the tool's decisive line, clean; never a secret
    explicit operator bool() const { return problem != IpmiProblem::kNone; }
};

/// How an error line begins where this machine's BMC was to be asked, and there was nothing to ask
/// it through (RawIpmiRunner).
inline constexpr std::string_view kNothingToAskThrough = "No IPMI driver and no ipmitool";

/// The problem that the first fitting line of the table names, kOther when none fits.
[[nodiscard]] IpmiFailure ClassifyIpmiErrors(std::string_view error_output);

/// The failure of a run in which no session came about.
[[nodiscard]] IpmiFailure FailureOfRun(const CommandOutcome& outcome);

}  // namespace Vantix::transport
