// A simulated server, and the scan that a front end would make of it.
#pragma once

#include <string>

#include "bmc_simulator/bmc_simulator.h"
#include "service/update_scan_service/update_scan_option.h"

namespace front_end {

inline simulators::BmcOptions RackServer() {
    simulators::BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/rack-server";
    return options;
}

inline service::UpdateScanOption ScanOf(const simulators::BmcSimulator& server) {
    service::UpdateScanOption option;
    auto& connect = option.connect_option;
    connect.connect_mode = Vantix::VantixConnection::kConnectModeOobBmc;
    connect.target_address = "127.0.0.1";
    connect.port = server.Port();
    connect.user = "demo";
    connect.password = "demo-pass-1";
    connect.fingerprint = server.Fingerprint();
    return option;
}

}  // namespace front_end
