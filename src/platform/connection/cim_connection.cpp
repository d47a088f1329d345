// Connections to CIM services.

#include <memory>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/cim_target.h"
#include "platform/cim/service_probe.h"
#include "platform/connection/connection.h"
#include "platform/connection/inband_target.h"
#include "platform/log/log_settings.h"

namespace Vantix::VantixConnection {

namespace {

// Failures of an earlier protocol leg that concern the target itself: CIM would fail alike, or must
// not try.
bool SharesItsFate(const TarselResult& before, const RunContext& run) {
    if (before == AUTHENTICATION_FAILED || before == VERIFY_CERTIFICATE_FAILED ||
        before == PASSWORD_MUST_BE_CHANGED || before == INTERRUPTED_BY_USER) {
        return true;
    }
    const bool is_unreachable = before == CONNECTION_FAILED || before == TIMEOUT;
    return is_unreachable && !run.MayOtherPortsAnswer();
}

ConnectionInfo CimInfoOf(const ConnectOption& option) {
    ConnectionInfo info;
    info.connect_case = kConnectCaseCim;
    info.host = option.target_address;
    info.port = cim::CimPortOf(option);
    info.user = option.user;
    info.password = option.password;
    info.base_uri = (option.cim_plain_http ? "http://" : "https://") + cim::CimTargetOf(option);
    info.ca_file = option.ca_file;
    info.fingerprint = option.fingerprint;
    info.verify_certificate = option.verify_certificate;
    info.timeout_seconds = option.timeout_seconds;
    return info;
}

// The account that a BMC gives to its own machine is one of Redfish alone.
TarselResult NeedUser(const ConnectOption& option) {
    return TarselResult(CONNECTION_FAILED,
                        "CIM on " + cim::CimTargetOf(option) +
                            " needs a user name and password; give them with --user.");
}

void SaySecurity(const ConnectOption& option) {
    if (!option.cim_plain_http) return;
    option.run->AddNotice(option.verify_certificate
                              ? "CIM runs without TLS: no user name and password are sent."
                              : "CIM runs without TLS: user name and password travel unprotected.");
}

std::string TextOf(const TarselResult& result) {
    return result.message.empty() ? GetResultMessage(result.code) : result.message;
}

bool IsCimAbsent(const TarselResult& result) {
    return result == CIM_OVER_HTTPS_DISABLED || result == NO_CIM_SERVICE ||
           result == CONNECTION_FAILED;
}

bool IsRedfishAbsent(const TarselResult& before) {
    return before == NO_RESTFUL_SERVICE || before == CONNECTION_FAILED || before == TIMEOUT;
}

// The reader wants to know of both legs. Where only Redfish exists its failure is the one to mend;
// otherwise the later leg's counts.
TarselResult WithEarlier(const TarselResult& result, const TarselResult& before) {
    if (before.IsSucceed()) return result;
    if (IsCimAbsent(result) && !IsRedfishAbsent(before)) {
        return TarselResult(before.code,
                            TextOf(before) + " (Nor over CIM: " + TextOf(result) + ")");
    }
    return TarselResult(result.code, TextOf(result) + " (Over Redfish: " + TextOf(before) + ")");
}

}  // namespace

TarselResult FetchCIMConnectionList(const ConnectOption& wanted,
                                    std::vector<ConnectionInfo>& list) {
    list.clear();
    if (wanted.run->IsCancelled()) return TarselResult(INTERRUPTED_BY_USER);
    ConnectOption option = wanted;
    if (TarselResult found = FillInbandAddress(option); !found.IsSucceed()) return found;
    const TarselResult before = option.run->LastFailure();
    if (!before.IsSucceed() && SharesItsFate(before, *option.run)) return before;
    if (!option.run->MayTryLogin()) return LoginBudgetSpent(cim::CimTargetOf(option));
    if (IsInband(option) && option.user.empty()) return NeedUser(option);
    AddLogSecret(option.password);
    SaySecurity(option);
    auto channel = std::make_shared<cim::CimChannel>(
        option,
        std::make_unique<transport::CurlTransport>(
            cim::CurlSettingsFor(option, cim::CimPortOf(option), !option.cim_plain_http)),
        transport::SystemClock());
    const transport::CimFailure failure = channel->Open();
    if (failure) {
        const TarselResult result = channel->Remember(failure);
        return WithEarlier(cim::ExplainRefusal(option, failure, result), before);
    }
    ConnectionInfo connection = CimInfoOf(option);
    connection.channel = std::move(channel);
    list.push_back(std::move(connection));
    return TarselResult(SUCCEED, "");
}

}  // namespace Vantix::VantixConnection
