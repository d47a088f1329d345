// A scan of a simulated BMC with the real platform over real TLS, as a scan path carries it out.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"
#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"
#include "transport/http/http_transport.h"

namespace Vantix::redfish {

/// Real time, but waiting only moves it on: retries come at once.
class ImpatientClock : public transport::Clock {
  public:
    [[nodiscard]] TimePoint Now() const override {
        return std::chrono::steady_clock::now() + skipped_;
    }
    void Wait(transport::Milliseconds duration) override { skipped_ += duration; }

  private:
    std::chrono::steady_clock::duration skipped_{0};
};

/// What one scan told; codes of questions that were not asked are -1.
struct ScanOutcome {
    TarselResult connection{-1, ""};
    int machine_type_code = -1;
    int bmc_type_code = -1;
    int identities_code = -1;
    std::pair<std::string, std::string> machine_type;
    std::string bmc_type;
    std::vector<VantixOptions::SoftwareIdentity_> identities;

    [[nodiscard]] std::vector<std::string> Versions() const;
    [[nodiscard]] bool Succeeded() const;
};

/// A scenario of the sources, with the simulator's usual user and password.
simulators::BmcOptions Scenario(const std::string& name);

/// A rule for every request whose target holds `part`.
simulators::FaultRule FaultAt(const std::string& part, simulators::Fault::Kind kind,
                              int status = 500);

/// How to reach and trust `bmc`, with the right user and password.
VantixConnection::ConnectOption OptionFor(const simulators::BmcSimulator& bmc);

/// Connects, asks machine type, BMC type and identities, and releases the connection. Over
/// GetRESTConnectionList, waits included.
ScanOutcome Scan(const VantixConnection::ConnectOption& option);

/// The same over a channel whose waits cost no time.
ScanOutcome ScanImpatiently(const VantixConnection::ConnectOption& option);

}  // namespace Vantix::redfish
