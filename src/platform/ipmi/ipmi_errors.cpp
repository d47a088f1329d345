#include "platform/ipmi/ipmi_errors.h"

#include <string>

#include "common/result/result_codes.h"
#include "platform/ipmi/ipmi_target.h"

namespace Vantix::ipmi {

using transport::IpmiFailure;
using transport::IpmiProblem;

namespace {

struct Row {
    int code;
    const char* what;    // "<what> <target> (<the tool's words>); <advice>."
    const char* advice;  // what to do
};

Row RowOfTool(IpmiProblem problem) {
    switch (problem) {
        case IpmiProblem::kToolMissing:
            return {CONNECTION_FAILED,
                    "The program ipmitool is missing, so IPMI cannot be used with",
                    "install the package ipmitool and scan again"};
        case IpmiProblem::kToolBroken:
            return {CONNECTION_FAILED,
                    "The program ipmitool does not work, so IPMI cannot be used with",
                    "run \"ipmitool -V\" and install the package ipmitool anew"};
        case IpmiProblem::kTimedOut:
            return {TIMEOUT, "The answer over IPMI took too long of",
                    "check the network to the BMC and try again"};
        case IpmiProblem::kCancelled:
            return {INTERRUPTED_BY_USER, "Interrupted while talking over IPMI to",
                    "start the scan again"};
        default:
            return {IPMI_SESSION_FAILED, "No IPMI session came about with",
                    "try again, and restart the BMC if it keeps happening"};
    }
}

Row RowOf(IpmiProblem problem) {
    switch (problem) {
        case IpmiProblem::kNone:
            return {SUCCEED, "", ""};
        case IpmiProblem::kAuthentication:
            return {AUTHENTICATION_FAILED, "User name or password was refused over IPMI by",
                    "check both; no further login is tried, so that the account is not locked"};
        case IpmiProblem::kCipher:
            return {IPMI_SESSION_FAILED, "No common IPMI cipher suite was found with",
                    "allow suite 17 or 3 on the BMC"};
        case IpmiProblem::kPrivilege:
            return {IPMI_SESSION_FAILED, "The account may not read over IPMI from",
                    "give it at least the user privilege for the LAN channel"};
        case IpmiProblem::kBusy:
            return {IPMI_SESSION_FAILED,
                    "No IPMI session is free, or the BMC is still starting, on",
                    "wait a few minutes and try again"};
        case IpmiProblem::kNoAnswer:
            return {CONNECTION_FAILED, "Nobody answered over IPMI at",
                    "check the address and that IPMI over LAN is enabled on the BMC"};
        case IpmiProblem::kNameUnknown:
            return {CONNECTION_FAILED, "The name could not be resolved of",
                    "check the spelling or use the IP address"};
        case IpmiProblem::kNoDevice:
            return {CONNECTION_FAILED, "There is no usable IPMI device to reach",
                    "run it on the server itself as administrator, with the IPMI driver loaded"};
        default:
            return RowOfTool(problem);
    }
}

}  // namespace

TarselResult ResultOfIpmiFailure(const IpmiFailure& failure,
                                 const VantixConnection::ConnectOption& option) {
    const Row row = RowOf(failure.problem);
    if (row.code == SUCCEED) return TarselResult(SUCCEED, "");
    std::string message = std::string(row.what) + " " + IpmiTargetText(option);
    if (failure.problem == IpmiProblem::kAuthentication) {
        message += " for the account \"" + option.user + "\"";
    }
    return TarselResult(row.code, message + " (" + failure.text + "); " + row.advice + ".");
}

}  // namespace Vantix::ipmi
