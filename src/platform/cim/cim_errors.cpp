#include "platform/cim/cim_errors.h"

#include "common/result/result_codes.h"

namespace Vantix::cim {

using transport::CimFailure;
using transport::CimProblem;
using transport::HttpErrorKind;

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
            return {CONNECTION_FAILED, "The name could not be resolved of",
                    "check the spelling or use the IP address"};
        case HttpErrorKind::kConnect:
            return {CONNECTION_FAILED, "No connection could be made to the CIM service of",
                    "check the address, the port and that CIM over HTTPS is enabled"};
        case HttpErrorKind::kConnectTimeout:
            return {CONNECTION_FAILED, "Nobody answered at",
                    "check the address, the network, firewalls and that the target is powered"};
        case HttpErrorKind::kUntrusted:
            return {VERIFY_CERTIFICATE_FAILED, "The certificate was not accepted of",
                    "give its authority with --ca-file or its SHA-256 fingerprint with --pin"};
        case HttpErrorKind::kTlsHandshake:
            return {VERIFY_CERTIFICATE_FAILED, "No secure connection could be agreed on with",
                    "an old service may need --tls-legacy"};
        case HttpErrorKind::kTimeout:
            return {TIMEOUT, "The CIM service took too long at",
                    "raise --timeout, or restart the CIM service of the target"};
        case HttpErrorKind::kDeadline:
            return {TIMEOUT, "The time for the whole scan ran out with", "raise --deadline"};
        case HttpErrorKind::kCancelled:
            return {INTERRUPTED_BY_USER, "Interrupted while talking to", "start the scan again"};
        default:
            return {CONNECTION_FAILED, "The connection broke to the CIM service of",
                    "try again, and restart the CIM service if it keeps happening"};
    }
}

int InternalErrorOf(CimTargetKind kind) {
    switch (kind) {
        case CimTargetKind::kChassis:
            return TOLV_INTERNAL_ERROR;
        case CimTargetKind::kHypervisor:
            return ESXI_INTERNAL_ERROR;
        case CimTargetKind::kBmc:
            break;
    }
    return BMC_INTERNAL_ERROR;
}

Row RowOf(const CimFailure& failure, CimTargetKind kind) {
    switch (failure.problem) {
        case CimProblem::kUnauthorized:
            return {AUTHENTICATION_FAILED, "The login was refused by the CIM service of",
                    "check user name and password, and that the account's role may use CIM; no "
                    "further login is tried, so that the account is not locked"};
        case CimProblem::kLoginBarred:
            return {AUTHENTICATION_FAILED, "No login was sent to the CIM service of",
                    "check user name and password and start the scan again"};
        case CimProblem::kForbidden:
            return {FUNCTION_NOT_SUPPORTED, "The request was not allowed by the CIM service of",
                    "check that the account's role may read over CIM"};
        case CimProblem::kNoService:
            return {NO_CIM_SERVICE, "There is no usable CIM service on",
                    "enable CIM over HTTPS on the target or check address and port"};
        case CimProblem::kCimError:
            if (failure.IsElsewhere()) {
                return {NO_CIM_SERVICE, "No known CIM namespace has what is needed on",
                        "name the namespace with --cim-namespace"};
            }
            [[fallthrough]];
        case CimProblem::kHttpStatus:
        case CimProblem::kBadBody:
            return {InternalErrorOf(kind), "The CIM service did not work on",
                    "try again later, and restart the CIM service if it keeps happening"};
        case CimProblem::kNotReached:
            return RowOfTransport(failure.transport);
        case CimProblem::kNone:
            break;
    }
    return {SUCCEED, "", ""};
}

bool ConcernsTheAccount(const CimFailure& failure) {
    return failure.problem == CimProblem::kUnauthorized ||
           failure.problem == CimProblem::kLoginBarred || failure.problem == CimProblem::kForbidden;
}

}  // namespace

TarselResult ResultOfCimFailure(const CimFailure& failure, CimTargetKind kind,
                                const std::string& target, const std::string& user) {
    const Row row = RowOf(failure, kind);
    if (row.code == SUCCEED) return TarselResult(SUCCEED, "");
    std::string message = std::string(row.what) + " " + target;
    if (ConcernsTheAccount(failure)) message += " for the account \"" + user + "\"";
    return TarselResult(row.code, message + " (" + failure.text + "); " + row.advice + ".");
}

bool MayOtherPortsAnswer(const CimFailure& failure) {
    if (failure.problem != CimProblem::kNotReached) return true;
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

}  // namespace Vantix::cim
