// The simulated BMC as a program: serves one scenario until it is told to end. One line on standard
// output says where. The default login is a demonstration's; nothing here guards anything real.

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "bmc_simulator/bmc_simulator.h"

namespace {

volatile std::sig_atomic_t end_asked = 0;

extern "C" void AskToEnd(int) {
    end_asked = 1;
}

struct Settings {
    simulators::BmcOptions bmc;
    std::string password_file;
    std::string password_env;
    std::string port_file;
    std::string ca_file;
    int latency_ms = 0;
    int handshake_ms = 0;
    bool no_expand = false;
    bool no_session = false;
    bool no_basic = false;
    bool counts_on_exit = false;
    bool end_with_input = false;
};

void Declare(CLI::App& app, Settings& settings) {
    simulators::BmcOptions& bmc = settings.bmc;
    app.add_option("--scenario", bmc.scenario_dir,
                   "Folder with redfish/v1/index.json, cim/*.xml or both")
        ->required()
        ->check(CLI::ExistingDirectory);
    app.add_option("--user", bmc.user, "User name")->capture_default_str();
    app.add_option("--password-file", settings.password_file,
                   "File whose first line is the password (default: demo-pass-1)");
    app.add_option("--password-env", settings.password_env,
                   "Environment variable that holds the password");
    app.add_option("--port", bmc.port, "TCP port; 0 takes a free one")->capture_default_str();
    app.add_flag("--ipv6", bmc.listen_ipv6, "Listen on ::1 too");
    app.add_flag("--plain-http", bmc.plain_http, "Without TLS");
    app.add_option("--latency-ms", settings.latency_ms, "Milliseconds before each response");
    app.add_option("--handshake-ms", settings.handshake_ms, "Milliseconds for a TLS handshake");
    app.add_option("--page-size", bmc.page_size, "Members a page; 0: no paging");
    app.add_flag("--no-expand", settings.no_expand, "Do not offer $expand");
    app.add_flag("--no-session", settings.no_session, "Refuse sessions");
    app.add_flag("--no-basic", settings.no_basic, "Refuse Basic credentials");
    app.add_flag("--serialize", bmc.serialize, "Work on one request at a time");
    app.add_option("--max-connections", bmc.max_connections, "Reset connections beyond; 0: none");
    app.add_option("--port-file", settings.port_file, "Write the port here once listening");
    app.add_option("--ca-file", settings.ca_file, "Write the certificate here once listening");
    app.add_flag("--counts-on-exit", settings.counts_on_exit, "Print the counts at the end");
    app.add_flag("--end-with-input", settings.end_with_input, "End at the end of standard input");
}

bool FirstLine(const std::string& file, std::string& line) {
    std::ifstream stream(file);
    if (!std::getline(stream, line)) return false;
    if (line.ends_with('\r')) line.pop_back();
    return true;
}

bool ReadPassword(Settings& settings) {
    if (!settings.password_file.empty()) {
        return FirstLine(settings.password_file, settings.bmc.password);
    }
    if (settings.password_env.empty()) return true;
    const char* value = std::getenv(settings.password_env.c_str());
    if (value) settings.bmc.password = value;
    return value != nullptr;
}

bool WriteFile(const std::string& file, const std::string& text) {
    if (file.empty()) return true;
    std::ofstream stream(file, std::ios::binary);
    stream << text << std::flush;
    if (!stream) std::cerr << "bmc_simulator: cannot write " << file << '\n';
    return static_cast<bool>(stream);
}

void WaitForEnd(bool end_with_input) {
    static std::atomic<bool> input_ended = false;
    if (end_with_input) {
        // Detached: a read from a terminal cannot be called off.
        std::thread([] {
            for (std::string line; std::getline(std::cin, line);) {
            }
            input_ended = true;
        }).detach();
    }
    while (end_asked == 0 && !input_ended) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void PrintCounts(const simulators::BmcCounts& counts) {
    std::cout << "connections=" << counts.connections << " handshakes=" << counts.handshakes
              << " requests=" << counts.requests << " most_in_flight=" << counts.most_in_flight
              << " sessions_made=" << counts.sessions_made
              << " sessions_ended=" << counts.sessions_ended
              << " sessions_open=" << counts.sessions_open
              << " logins_refused=" << counts.logins_refused << std::endl;
}

int Serve(const Settings& settings) {
    simulators::BmcSimulator bmc(settings.bmc);
    const bool written = WriteFile(settings.ca_file, bmc.CertificatePem()) &&
                         WriteFile(settings.port_file, std::to_string(bmc.Port()) + "\n");
    if (!written) return EXIT_FAILURE;
    const std::string& ca_file = settings.ca_file.empty() ? bmc.CaFile() : settings.ca_file;
    std::cout << "url=" << bmc.Url() << " fingerprint=" << bmc.Fingerprint()
              << " ca-file=" << ca_file << std::endl;
    WaitForEnd(settings.end_with_input);
    bmc.Stop();
    if (settings.counts_on_exit) PrintCounts(bmc.Counts());
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    Settings settings;
    CLI::App app("Simulated BMC: a Redfish service on loopback, for tests and demonstrations");
    Declare(app, settings);
    CLI11_PARSE(app, argc, argv);
    if (!ReadPassword(settings)) {
        std::cerr << "bmc_simulator: the password could not be read\n";
        return EXIT_FAILURE;
    }
    settings.bmc.latency = std::chrono::milliseconds(settings.latency_ms);
    settings.bmc.handshake_delay = std::chrono::milliseconds(settings.handshake_ms);
    settings.bmc.allow_session = !settings.no_session;
    settings.bmc.allow_basic = !settings.no_basic;
    if (settings.no_expand) settings.bmc.expand = simulators::ExpandMode::kUnsupported;
    std::signal(SIGINT, AskToEnd);
    std::signal(SIGTERM, AskToEnd);
    try {
        return Serve(settings);
    } catch (const std::exception& error) {
        std::cerr << "bmc_simulator: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
