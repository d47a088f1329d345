#include "integration/platform/redfish/bmc_scan.h"

#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type.h"
#include "platform/connection/redfish_errors.h"
#include "platform/identities/identities.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_info/system_info.h"
#include "transport/http/curl_transport.h"

namespace Vantix::redfish {

using VantixConnection::ConnectionInfo;
using VantixConnection::ConnectOption;

namespace {

void Ask(const ConnectionInfo& connection, ScanOutcome& outcome) {
    outcome.machine_type_code = SystemInfoScan::GetMachineType(connection, outcome.machine_type);
    int type = 0;
    outcome.bmc_type_code = Agentless::OssaTypeAcquire(connection).GetOssaType(type);
    outcome.bmc_type = Agentless::OssaTypeAcquire::OssaTypeToString(type);
    outcome.identities_code = Agentless::AgentlessSoftwareIdentity(connection)
                                  .GetPLDMSoftwareIdentities(outcome.identities);
}

transport::CurlSettings CurlSettingsOf(const ConnectOption& option) {
    transport::CurlSettings settings;
    settings.host = option.target_address;
    settings.port = option.port;
    settings.ca_file = option.ca_file;
    settings.max_body_bytes = option.max_body_bytes;
    settings.connect_timeout = transport::Milliseconds(1000LL * option.connect_timeout_seconds);
    return settings;
}

}  // namespace

std::vector<std::string> ScanOutcome::Versions() const {
    std::vector<std::string> versions;
    for (const auto& identity : identities) versions.push_back(identity.VersionString);
    return versions;
}

bool ScanOutcome::Succeeded() const {
    return connection.IsSucceed() && machine_type_code == SUCCEED && bmc_type_code == SUCCEED &&
           identities_code == SUCCEED;
}

simulators::BmcOptions Scenario(const std::string& name) {
    simulators::BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/" + name;
    return options;
}

simulators::FaultRule FaultAt(const std::string& part, simulators::Fault::Kind kind, int status) {
    simulators::FaultRule rule;
    rule.target_contains = part;
    rule.fault.kind = kind;
    rule.fault.status = status;
    return rule;
}

ConnectOption OptionFor(const simulators::BmcSimulator& bmc) {
    ConnectOption option;
    option.connect_mode = VantixConnection::kConnectModeOobBmc;
    option.target_address = "127.0.0.1";
    option.port = bmc.Port();
    option.user = bmc.Options().user;
    option.password = bmc.Options().password;
    option.ca_file = bmc.CaFile();
    return option;
}

ScanOutcome Scan(const ConnectOption& option) {
    ScanOutcome outcome;
    std::vector<ConnectionInfo> list;
    outcome.connection = VantixConnection::GetRESTConnectionList(option, list);
    if (!list.empty()) Ask(list.front(), outcome);
    return outcome;
}

ScanOutcome ScanImpatiently(const ConnectOption& option) {
    ScanOutcome outcome;
    ImpatientClock clock;
    auto channel = std::make_shared<RedfishChannel>(
        option, std::make_unique<transport::CurlTransport>(CurlSettingsOf(option)), clock);
    outcome.connection = VantixConnection::ResultOfConnectFailure(
        channel->Open(), option.target_address + ":" + std::to_string(option.port), option.user);
    if (!outcome.connection.IsSucceed()) return outcome;
    ConnectionInfo connection;
    connection.connect_case = VantixConnection::kConnectCaseRest;
    connection.channel = std::move(channel);
    Ask(connection, outcome);
    return outcome;
}

}  // namespace Vantix::redfish
