#include "tarsel/exit_codes.h"

#include <array>

namespace tarsel {
namespace {

constexpr std::int32_t kGenericFailure = 1;
constexpr std::int32_t kConnectionFailed = 13;
constexpr std::int32_t kFunctionNotSupported = 25;
constexpr std::int32_t kInterruptedByUser = 47;
constexpr int kInterruptSignal = 2;
// Its code stands for every failure of a hypervisor; only the text tells this one.
constexpr const char* kUnsupportedHypervisor =
    "Tarsel do not support this installed VMWare ESXi Version.";

struct Row {
    std::int32_t code;
    ExitCode exit_code;
};

// Every code that is not listed is a plain failure.
constexpr std::array kTable = {
    Row{5, kExitUsage},                        // invalid parameter
    Row{56, kExitUsage},                       // the address is none
    Row{12, kExitAuthentication},              // user name or password refused
    Row{51, kExitAuthentication},              // password too long for the protocol
    Row{54, kExitAuthentication},              // password must be changed first
    Row{63, kExitAuthentication},              // IPMI session refused
    Row{kConnectionFailed, kExitUnreachable},  // nobody answered
    Row{14, kExitUnreachable},                 // ping failed
    Row{18, kExitUnreachable},                 // no answer in time
    Row{50, kExitUnreachable},                 // system interface
    Row{36, kExitTls},                         // certificate or fingerprint
    Row{0x10071, kExitTls},                    // certificate authority
    Row{25, kExitUnsupported},                 // function not supported
    Row{42, kExitUnsupported},                 // remote machine not supported
    Row{52, kExitUnsupported},                 // no Redfish service
    Row{55, kExitUnsupported},                 // CIM over HTTPS is off
    Row{65, kExitUnsupported},                 // security mode forbids it
    Row{66, kExitUnsupported},                 // no CIM service
    Row{68, kExitUnsupported},                 // interface not supported
    Row{0x1006D, kExitUnsupported},            // legacy brand
    Row{0x10070, kExitUnsupported},            // operating system not supported
    Row{0x40068, kExitUnsupported},            // command not supported on this system
};

int ExitCodeOfFailure(std::int32_t code) {
    for (const Row& row : kTable) {
        if (row.code == code) return row.exit_code;
    }
    return kExitFailed;
}

}  // namespace

int ExitCodeFor(std::int32_t code, bool is_partial, int signal) {
    const bool is_success = (code & 0xFFFF) == 0;
    if (is_success) return is_partial ? kExitPartial : kExitComplete;
    if (signal != 0) return kExitSignalBase + signal;
    if (code == kInterruptedByUser) return kExitSignalBase + kInterruptSignal;
    return ExitCodeOfFailure(code);
}

bool IsMute(const TarselResult& result) {
    return result.code == kGenericFailure && result.message.empty();
}

std::int32_t TellingCode(const TarselResult& result, std::int32_t last_failure, bool has_answered) {
    if (result.message == kUnsupportedHypervisor) return kFunctionNotSupported;
    if (result.code != kConnectionFailed && !IsMute(result)) return result.code;
    if (last_failure != 0) return last_failure;
    return has_answered ? kGenericFailure : result.code;
}

std::string ExitCodeTable() {
    return "Exit codes:\n"
           "  0  complete: everything that was asked for was read\n"
           "  1  failed\n"
           "  2  wrong use of the command line\n"
           "  3  partial: the report has gaps, which the last lines name\n"
           "  4  authentication: user name or password refused\n"
           "  5  unreachable: the target did not answer\n"
           "  6  TLS or SSH: certificate or host key not trusted; no credentials were sent\n"
           "  7  the target does not support this\n"
           "  129, 130, 143  ended by SIGHUP, SIGINT, SIGTERM, after logging out\n";
}

}  // namespace tarsel
