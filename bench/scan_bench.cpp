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
    int connections = 3;  ///< the most that the scan may open
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

    std::string Folder(int entries) {
        const fs::path folder = root_ / std::to_string(entries);
        if (!fs::exists(folder)) simulators::MakeLargeScenario(folder.string(), entries);
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
        outcomes.push_back(ScanOnce(scan, scenarios.Folder(scan.entries)));
    }
    std::sort(outcomes.begin(), outcomes.end(),
              [](const Outcome& a, const Outcome& b) { return a.wall_ms < b.wall_ms; });
    return outcomes[outcomes.size() / 2];
}

// With $expand: root and log-in together, facts and inventory together, log-out. Without: the
// collection and then its members, a few at a time, take the place of the middle step.
double ChainMs(const Case& scan, const Outcome& outcome) {
    if (scan.serialized) return static_cast<double>(outcome.requests) * scan.latency_ms;
    const int rounds = (scan.entries + scan.connections - 1) / scan.connections;
    return (scan.expand ? 3.0 : 3.0 + rounds) * scan.latency_ms;
}

void PrintHeading(const char* title) {
    std::printf("\n%s\n%8s %8s %7s %6s %9s %6s %10s %10s %9s %7s %6s\n", title, "entries",
                "ms/resp", "expand", "limit", "requests", "conns", "in-flight", "wall ms",
                "chain ms", "ratio", "items");
}

void PrintRow(const Case& scan, const Outcome& outcome) {
    const double chain = ChainMs(scan, outcome);
    char ratio[16] = "-";
    if (chain > 0) std::snprintf(ratio, sizeof ratio, "%.2f", outcome.wall_ms / chain);
    std::printf("%8d %8d %7s %6d %9d %6d %10d %10.1f %9.0f %7s %6zu", scan.entries, scan.latency_ms,
                scan.expand ? "yes" : "no", scan.connections, outcome.requests, outcome.connections,
                outcome.most_in_flight, outcome.wall_ms, chain, ratio, outcome.items);
    if (outcome.sessions_left != 0) std::printf("  SESSION LEFT BEHIND");
    if (!outcome.failure.empty()) std::printf("  FAILED: %s", outcome.failure.c_str());
    std::printf("\n");
    std::fflush(stdout);
}

void MeasureLatency(Scenarios& scenarios, int runs) {
    PrintHeading("Concurrent service");
    for (const bool expand : {true, false}) {
        for (const int latency : {0, 10, 50}) {
            for (const int entries : {20, 60, 200}) {
                const Case scan{.entries = entries, .latency_ms = latency, .expand = expand};
                PrintRow(scan, Scan(scan, scenarios, runs));
            }
        }
    }
}

void MeasureSerialized(Scenarios& scenarios, int runs) {
    PrintHeading("Service that works on one request at a time");
    for (const bool expand : {true, false}) {
        for (const int entries : {20, 60}) {
            const Case scan{
                .entries = entries, .latency_ms = 50, .expand = expand, .serialized = true};
            PrintRow(scan, Scan(scan, scenarios, runs));
        }
    }
}

// The limit of connections is the only thing that differs; 3 is the default, where the scan finds
// the number by itself.
void MeasureHandshakes(Scenarios& scenarios, int runs) {
    PrintHeading("100 ms a TLS handshake; limit 3 is the default and finds the number itself");
    for (const bool expand : {true, false}) {
        for (const int entries : {20, 60}) {
            for (const int connections : {1, 2, 3}) {
                const Case scan{.entries = entries,
                                .latency_ms = 10,
                                .expand = expand,
                                .handshake_ms = 100,
                                .connections = connections};
                PrintRow(scan, Scan(scan, scenarios, runs));
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
    MeasureSerialized(scenarios, runs);
    MeasureHandshakes(scenarios, runs);
    return 0;
}
