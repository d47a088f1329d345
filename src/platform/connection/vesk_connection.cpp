// Connections to the HTTPS service of an enclosure management module. Older modules serve the same
// resources, but their log-in service is missing or broken: each request carries the login.

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {

namespace {

// What failed over Redfish and would fail here for the same reason, or must not be tried.
bool SharesItsFate(const TarselResult& before, const ConnectOption& option) {
    if (before == AUTHENTICATION_FAILED || before == VERIFY_CERTIFICATE_FAILED ||
        before == PASSWORD_MUST_BE_CHANGED || before == INTERRUPTED_BY_USER) {
        return true;
    }
    // It is the same port, and the Redfish leg has asked it patiently.
    if (before == CONNECTION_FAILED || before == TIMEOUT) return true;
    return option.auth == AuthMethod::kSession || option.auth == AuthMethod::kBasic;
}

}  // namespace

TarselResult FetchVeskHttpsConnection(const ConnectOption& option, ConnectionInfo& connection) {
    connection = ConnectionInfo();
    if (option.run->IsCancelled()) return TarselResult(INTERRUPTED_BY_USER);
    const TarselResult before = option.run->LastFailure();
    if (!before.IsSucceed() && SharesItsFate(before, option)) return before;
    ConnectOption with_basic = option;
    // Who asked for sessions only does not want the password in every request.
    if (option.auth == AuthMethod::kAuto) with_basic.auth = AuthMethod::kBasic;
    return GetRESTConnection(with_basic, connection);
}

}  // namespace Vantix::VantixConnection
