#include "platform/connection/redfish_errors.h"

#include "common/result/result_codes.h"

namespace Vantix::VantixConnection {

using transport::HttpErrorKind;
using transport::RedfishFailure;
using transport::RedfishProblem;

namespace {

struct Row {
    int code;
    const char* what;    // "<what> <target>"
    const char* advice;  // what to do
};

Row RowOfTransport(HttpErrorKind kind) {
    switch (kind) {
        case HttpErrorKind::kBadAddress:
            return {CONNECTION_FAILED, "The address or a connection option is not usable for",
                    "correct it and try again"};
        case HttpErrorKind::kResolve:
            return {CONNECTION_FAILED, "No address could be found for",
                    "check the spelling of the name or use the IP address"};
        case HttpErrorKind::kConnect:
            return {CONNECTION_FAILED, "No connection could be made to",
                    "check the address, the port and that HTTPS is enabled on the BMC"};
        case HttpErrorKind::kConnectTimeout:
            return {CONNECTION_FAILED, "Nobody answered at",
                    "check the address, the network and that the BMC is powered"};
        case HttpErrorKind::kUntrusted:
            return {VERIFY_CERTIFICATE_FAILED, "The certificate check failed for",
                    "make sure that it is the right BMC, then give its authority with --ca-file or "
                    "its SHA-256 fingerprint with --pin"};
        case HttpErrorKind::kTlsHandshake:
            return {VERIFY_CERTIFICATE_FAILED, "No secure connection could be agreed on with",
                    "an old BMC may need --tls-legacy"};
        case HttpErrorKind::kTimeout:
            return {TIMEOUT, "No answer came in time from", "raise --timeout or try again later"};
        case HttpErrorKind::kDeadline:
            return {TIMEOUT, "The time for the whole scan ran out with", "raise --deadline"};
        case HttpErrorKind::kCancelled:
            return {INTERRUPTED_BY_USER, "Interrupted while talking to", "start the scan again"};
        default:
            return {CONNECTION_FAILED, "The connection was lost to",
                    "try again, and restart the BMC if it keeps happening"};
    }
}

Row RowOf(const RedfishFailure& failure) {
    switch (failure.problem) {
        case RedfishProblem::kUnauthorized:
            return {AUTHENTICATION_FAILED, "User name or password was refused by",
                    "check both; no further login is tried, so that the account is not locked"};
        case RedfishProblem::kPasswordChange:
            return {PASSWORD_MUST_BE_CHANGED,
                    "The password must be changed before it can be used on",
                    "change it on the BMC and scan again"};
        case RedfishProblem::kSessionLimit:
            return {NO_AVAILABLE_USER_ID, "No session is free on",
                    "end sessions on the BMC, wait for them to run out, or use --auth basic"};
        case RedfishProblem::kForbidden:
        case RedfishProblem::kLicence:
            return {FUNCTION_NOT_SUPPORTED, "The login was not allowed by",
                    "check the account's role and the BMC's licence"};
        case RedfishProblem::kNotFound:
        case RedfishProblem::kBadBody:
            return {NO_RESTFUL_SERVICE, "There is no usable Redfish service on",
                    "enable Redfish on the BMC or check address and port"};
        case RedfishProblem::kRedirect:
            return {CONNECTION_FAILED, "A redirect was not followed from",
                    "give the address that the BMC redirects to"};
        case RedfishProblem::kStatus:
            return {GET_RESTFUL_DATA_FAILED, "The Redfish service did not work on",
                    "try again later, and restart the BMC if it keeps happening"};
        case RedfishProblem::kNotReached:
            return RowOfTransport(failure.transport);
        case RedfishProblem::kNone:
            break;
    }
    return {SUCCEED, "", ""};
}

bool ConcernsTheAccount(const RedfishFailure& failure) {
    return failure.problem == RedfishProblem::kUnauthorized ||
           failure.problem == RedfishProblem::kPasswordChange ||
           failure.problem == RedfishProblem::kForbidden;
}

}  // namespace

TarselResult ResultOfConnectFailure(const RedfishFailure& failure, const std::string& target,
                                    const std::string& user) {
    const Row row = RowOf(failure);
    if (row.code == SUCCEED) return TarselResult(SUCCEED, "");
    std::string message = std::string(row.what) + " " + target;
    if (ConcernsTheAccount(failure)) message += " for the account \"" + user + "\"";
    return TarselResult(row.code, message + " (" + failure.text + "); " + row.advice + ".");
}

bool MayOtherPortsAnswer(const RedfishFailure& failure) {
    if (failure.problem != RedfishProblem::kNotReached) return true;
    switch (failure.transport) {
        case HttpErrorKind::kBadAddress:
        case HttpErrorKind::kResolve:
        case HttpErrorKind::kConnectTimeout:
        case HttpErrorKind::kDeadline:
        case HttpErrorKind::kCancelled:
            return false;
        default:
            return true;
    }
}

int CodeOfReadFailure(const RedfishFailure& failure) {
    const int code = RowOf(failure).code;
    return code == NO_RESTFUL_SERVICE || code == FUNCTION_NOT_SUPPORTED ? GET_RESTFUL_DATA_FAILED
                                                                        : code;
}

}  // namespace Vantix::VantixConnection
