// Connections over CIM-XML. There is no CIM client in this version: the function says so, and lets
// what is known of the target from the Redfish leg speak where that is the real reason.

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {

namespace {

// Failures that concern the target itself: another protocol would fail alike, or must not try.
bool ConcernsTheTarget(const TarselResult& result) {
    return result == AUTHENTICATION_FAILED || result == VERIFY_CERTIFICATE_FAILED ||
           result == PASSWORD_MUST_BE_CHANGED || result == NO_AVAILABLE_USER_ID ||
           result == INTERRUPTED_BY_USER || result == CONNECTION_FAILED || result == TIMEOUT;
}

}  // namespace

TarselResult FetchCIMConnectionList(const ConnectOption& option,
                                    std::vector<ConnectionInfo>& list) {
    list.clear();
    if (option.run->IsCancelled()) return TarselResult(INTERRUPTED_BY_USER);
    const TarselResult before = option.run->LastFailure();
    if (!before.IsSucceed() && ConcernsTheTarget(before)) return before;
    std::string message = "This version cannot scan " + option.target_address +
                          " over CIM, the only other way to its BMC; enable Redfish on the BMC and "
                          "scan again";
    if (!before.IsSucceed()) {
        std::string reason =
            before.message.empty() ? GetResultMessage(before.code) : before.message;
        if (reason.ends_with('.')) reason.pop_back();
        message += " (over Redfish: " + reason + ")";
    }
    return TarselResult(CONNECTION_FAILED, message + ".");
}

}  // namespace Vantix::VantixConnection
