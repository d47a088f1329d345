// Whole scans against the simulated BMC, in one process, over TLS on loopback.
//
// For each case: requests, connections, most requests in flight, wall time, the calculated chain of
// dependent requests and the ratio of the two. Round trips on loopback cost next to nothing, so the
// chain is the number of dependent steps times the time of one response.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"
#include "bmc_simulator/large_scenario.h"
#include "service/update_scan_service/service_update_scan.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

struct Case {
    int entries = 60;
    int latency_ms = 0;
    bool expand = true;
    bool serialized = false;
    int handshake_ms = 0;
    int connections = 3;        ///< the most that the scan may open
    bool with_chassis = false;  ///< slots, adapters and drives that the members relate to
};

struct Outcome {
    double wall_ms = 0;
    int requests = 0;
    int connections = 0;
    int most_in_flight = 0;
    int sessions_left = 0;
    std::size_t items = 0;
    std::string failure;  ///< empty: the scan succeeded
};

// Scenario folders, made once a size.
class Scenarios {
  public:
    Scenarios() : root_(fs::temp_directory_path() / ("tarsel-scan-bench-" + Stamp())) {}
    ~Scenarios() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    Scenarios(const Scenarios&) = delete;
    Scenarios& operator=(const Scenarios&) = delete;

    std::string Folder(int entries, bool with_chassis) {
        const fs::path folder = root_ / (std::to_string(entries) + (with_chassis ? "c" : ""));
        const auto kind = with_chassis ? simulators::LargeScenarioKind::kWithChassis
                                       : simulators::LargeScenarioKind::kBare;
        if (!fs::exists(folder)) simulators::MakeLargeScenario(folder.string(), entries, kind);
        return folder.string();
    }

  private:
    static std::string Stamp() { return std::to_string(Clock::now().time_since_epoch().count()); }
    fs::path root_;
};

service::UpdateScanOption OptionFor(const simulators::BmcSimulator& bmc, const Case& scan) {
    service::UpdateScanOption option;
    option.scan_type = "all";
    auto& connect = option.connect_option;
    connect.connect_mode = Vantix::VantixConnection::kConnectModeOobBmc;
    connect.target_address = "127.0.0.1";
    connect.port = bmc.Port();
    connect.user = "demo";
    connect.password = "demo-pass-1";
    connect.fingerprint = bmc.Fingerprint();
    connect.max_parallel = scan.connections;
    return option;
}

Outcome ScanOnce(const Case& scan, const std::string& scenario) {
    simulators::BmcOptions options;
    options.scenario_dir = scenario;
    options.latency = std::chrono::milliseconds(scan.latency_ms);
    options.handshake_delay = std::chrono::milliseconds(scan.handshake_ms);
    options.serialize = scan.serialized;
    if (!scan.expand) options.expand = simulators::ExpandMode::kUnsupported;
    simulators::BmcSimulator bmc(options);

    service::UpdateScanReport report;
    const auto begin = Clock::now();
    const TarselResult result = service::ServiceUpdateScan(OptionFor(bmc, scan)).Run(report);
    const std::chrono::duration<double, std::milli> spent = Clock::now() - begin;

    const simulators::BmcCounts counts = bmc.Counts();
    Outcome outcome;
    outcome.wall_ms = spent.count();
    outcome.requests = counts.requests;
    outcome.connections = counts.handshakes;
    outcome.most_in_flight = counts.most_in_flight;
    outcome.sessions_left = counts.sessions_made - counts.sessions_ended;
    outcome.items = report.GetScanResults().size();
    if (!result.IsSucceed()) outcome.failure = result.message;
    return outcome;
}

// The run with the median wall time.
Outcome Scan(const Case& scan, Scenarios& scenarios, int runs) {
    std::vector<Outcome> outcomes;
    for (int n = 0; n < runs; ++n) {
        outcomes.push_back(ScanOnce(scan, scenarios.Folder(scan.entries, scan.with_chassis)));
    }
    std::sort(outcomes.begin(), outcomes.end(),
              [](const Outcome& a, const Outcome& b) { return a.wall_ms < b.wall_ms; });
    return outcomes[outcomes.size() / 2];
}

// With $expand: root and log-in together, facts and inventory together, log-out. Without: the
// collections and then their members, a few at a time, take the place of the middle step; the one
// system and the one manager are members too. What stands beside the inventory may add two steps.
double ChainMs(const Case& scan, const Outcome& outcome) {
    if (scan.serialized) return static_cast<double>(outcome.requests) * scan.latency_ms;
    const int members = scan.entries + 2;
    const int rounds = (members + scan.connections - 1) / scan.connections;
    return (scan.expand ? 3.0 : 3.0 + rounds) * scan.latency_ms;
}

void PrintHeading(const char* title, const char* compared_with) {
    std::printf("\n%s\n%8s %8s %7s %6s %9s %6s %10s %10s %10s %7s %6s\n", title, "entries",
                "ms/resp", "expand", "limit", "requests", "conns", "in-flight", "wall ms",
                compared_with, "ratio", "items");
}

void PrintRow(const Case& scan, const Outcome& outcome, double compared_with_ms) {
    char ratio[16] = "-";
    if (compared_with_ms > 0) {
        std::snprintf(ratio, sizeof ratio, "%.2f", outcome.wall_ms / compared_with_ms);
    }
    std::printf("%8d %8d %7s %6d %9d %6d %10d %10.1f %10.1f %7s %6zu", scan.entries,
                scan.latency_ms, scan.expand ? "yes" : "no", scan.connections, outcome.requests,
                outcome.connections, outcome.most_in_flight, outcome.wall_ms, compared_with_ms,
                ratio, outcome.items);
    if (outcome.sessions_left != 0) std::printf("  SESSION LEFT BEHIND");
    if (!outcome.failure.empty()) std::printf("  FAILED: %s", outcome.failure.c_str());
    std::printf("\n");
    std::fflush(stdout);
}

void MeasureAgainstChain(const Case& scan, Scenarios& scenarios, int runs) {
    const Outcome outcome = Scan(scan, scenarios, runs);
    PrintRow(scan, outcome, ChainMs(scan, outcome));
}

void MeasureLatency(Scenarios& scenarios, int runs) {
    PrintHeading("Concurrent service", "chain ms");
    for (const bool expand : {true, false}) {
        for (const int latency : {0, 10, 50}) {
            for (const int entries : {20, 60, 200}) {
                MeasureAgainstChain({.entries = entries, .latency_ms = latency, .expand = expand},
                                    scenarios, runs);
            }
        }
    }
}

void MeasureChassis(Scenarios& scenarios, int runs) {
    PrintHeading("The same with slots, adapters and drives", "chain ms");
    for (const bool expand : {true, false}) {
        MeasureAgainstChain(
            {.entries = 60, .latency_ms = 50, .expand = expand, .with_chassis = true}, scenarios,
            runs);
    }
}

void MeasureSerialized(Scenarios& scenarios, int runs) {
    PrintHeading("Service that works on one request at a time", "chain ms");
    for (const bool expand : {true, false}) {
        for (const int entries : {20, 60}) {
            MeasureAgainstChain(
                {.entries = entries, .latency_ms = 50, .expand = expand, .serialized = true},
                scenarios, runs);
        }
    }
}

// One row a limit of connections, compared with the fastest of them. The last one, 3, is the
// default: there the scan has to find the best number by itself.
void MeasureHandshakes(Case scan, Scenarios& scenarios, int runs) {
    std::vector<Outcome> outcomes;
    for (const int connections : {1, 2, 3}) {
        scan.connections = connections;
        outcomes.push_back(Scan(scan, scenarios, runs));
    }
    double best = outcomes.front().wall_ms;
    for (const Outcome& outcome : outcomes) best = std::min(best, outcome.wall_ms);
    for (std::size_t n = 0; n < outcomes.size(); ++n) {
        scan.connections = static_cast<int>(n) + 1;
        PrintRow(scan, outcomes[n], best);
    }
}

void MeasureAllHandshakes(Scenarios& scenarios, int runs) {
    PrintHeading("100 ms a TLS handshake, one after the other", "best ms");
    for (const bool expand : {true, false}) {
        for (const int latency : {10, 50}) {
            for (const int entries : {20, 60}) {
                MeasureHandshakes({.entries = entries,
                                   .latency_ms = latency,
                                   .expand = expand,
                                   .handshake_ms = 100},
                                  scenarios, runs);
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 3;
    if (argc > 1) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), runs);
    if (runs < 1) {
        std::fputs("usage: scan_bench [RUNS]\n", stderr);
        return 2;
    }
    Scenarios scenarios;
    MeasureLatency(scenarios, runs);
    MeasureChassis(scenarios, runs);
    MeasureSerialized(scenarios, runs);
    MeasureAllHandshakes(scenarios, runs);
    return 0;
}
