// Connections to Redfish services.

#include <memory>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/connection/https_target.h"
#include "platform/connection/inband_target.h"
#include "platform/connection/redfish_errors.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"
#include "platform/redfish/enclosure_manager.h"
#include "platform/redfish/redfish_channel.h"
#include "transport/http/curl_transport.h"

namespace Vantix::VantixConnection {

namespace {

constexpr const char* kRedfishConnectionLog = "redfish_connection";
transport::CurlSettings CurlSettingsOf(const ConnectOption& option) {
    transport::CurlSettings settings;
    settings.host = option.target_address;
    settings.port = HttpsPortOf(option);
    settings.verify_certificate = option.verify_certificate;
    settings.ca_file = option.ca_file;
    settings.fingerprint = option.fingerprint;
    settings.legacy_tls = option.legacy_tls;
    settings.proxy = option.proxy;
    settings.use_environment_proxy = option.use_environment_proxy;
    settings.connect_timeout = transport::Milliseconds(1000LL * option.connect_timeout_seconds);
    settings.max_body_bytes = option.max_body_bytes;
    settings.max_connections = option.max_parallel;
    return settings;
}

ConnectionInfo RedfishInfoOf(const ConnectOption& option) {
    ConnectionInfo info;
    info.connect_case = kConnectCaseRest;
    info.host = option.target_address;
    info.port = HttpsPortOf(option);
    info.user = option.user;
    info.password = option.password;
    info.base_uri = "https://" + HttpsTargetOf(option);
    info.ca_file = option.ca_file;
    info.fingerprint = option.fingerprint;
    info.verify_certificate = option.verify_certificate;
    info.timeout_seconds = option.timeout_seconds;
    return info;
}

// The user did not name this address and may wonder.
void SayWhereFrom(const ConnectOption& wanted, const ConnectOption& option) {
    if (wanted.target_address == option.target_address) return;
    option.run->AddNotice("The address " + HttpsTargetOf(option) +
                          " of this machine's BMC comes from its firmware; the machine's network "
                          "device to the BMC must have an address in the same network.");
}

}  // namespace

TarselResult GetRESTConnection(const ConnectOption& wanted, ConnectionInfo& connection) {
    connection = ConnectionInfo();
    ConnectOption option = wanted;
    if (TarselResult found = FillInbandAddress(option); !found.IsSucceed()) return found;
    if (!option.run->MayTryLogin()) return LoginBudgetSpent(HttpsTargetOf(option));
    if (TarselResult got = FillInbandAccount(option); !got.IsSucceed()) return got;
    AddLogSecret(option.password);
    auto channel = std::make_shared<redfish::RedfishChannel>(
        option, std::make_unique<transport::CurlTransport>(CurlSettingsOf(option)),
        transport::SystemClock());
    const transport::RedfishFailure failure = channel->Open();
    if (failure) {
        const TarselResult result =
            ResultOfConnectFailure(failure, HttpsTargetOf(option), option.user);
        Log(2, kRedfishConnectionLog, __LINE__).Stream() << "Redfish connection failed: " << result;
        option.run->RecordFailure(result, MayOtherPortsAnswer(failure));
        SayWhereFrom(wanted, option);
        return result;
    }
    connection = RedfishInfoOf(option);
    if (redfish::IsEnclosureManager(*channel)) connection.connect_case = kConnectCaseVeskRest;
    connection.channel = std::move(channel);
    return TarselResult(SUCCEED, "");
}

TarselResult GetRESTConnectionList(const ConnectOption& option, std::vector<ConnectionInfo>& list) {
    list.clear();
    ConnectionInfo connection;
    TarselResult result = GetRESTConnection(option, connection);
    if (result.IsSucceed()) list.push_back(std::move(connection));
    return result;
}

}  // namespace Vantix::VantixConnection
