// A simulated machine that speaks CIM, and the options that reach it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"
#include "platform/connection/connection.h"
#include "support/temporary_folder.h"

namespace Vantix::VantixConnection {

inline simulators::BmcOptions Machine(const std::string& scenario) {
    simulators::BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/" + scenario;
    return options;
}

/// Trusts exactly this simulator, and knows its login.
inline ConnectOption OptionFor(const simulators::BmcSimulator& machine,
                               int mode = kConnectModeOobBmc) {
    ConnectOption option;
    option.connect_mode = mode;
    option.target_address = "127.0.0.1";
    option.cim_port = machine.Port();
    option.port = machine.Port();
    option.user = "demo";
    option.password = "demo-pass-1";
    option.ca_file = machine.CaFile();
    return option;
}

/// The connection, or one without channel when there was none.
inline ConnectionInfo Connect(const ConnectOption& option) {
    std::vector<ConnectionInfo> list;
    const TarselResult result = FetchCIMConnectionList(option, list);
    EXPECT_TRUE(result.IsSucceed()) << result;
    return list.empty() ? ConnectionInfo() : list.front();
}

/// A port of loopback that nobody listens at.
inline int ClosedPort() {
    simulators::BmcSimulator gone{simulators::BmcOptions()};
    const int port = gone.Port();
    gone.Stop();
    return port;
}

inline simulators::FaultRule FaultAt(int nth_request, simulators::Fault::Kind kind) {
    simulators::FaultRule rule;
    rule.nth_request = nth_request;
    rule.fault.kind = kind;
    return rule;
}

inline simulators::FaultRule FaultOn(const std::string& class_name, simulators::Fault::Kind kind) {
    simulators::FaultRule rule;
    rule.body_contains = "\"" + class_name + "\"";
    rule.fault.kind = kind;
    return rule;
}

}  // namespace Vantix::VantixConnection
