#include "tarsel/option_declarations.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>

#include "tarsel/existing_paths.h"

namespace tarsel {
namespace {

constexpr int kLongestSeconds = 24 * 60 * 60;
constexpr int kHighestBay = 9999;

// 64 hexadecimal digits, colons between them allowed.
std::string CheckFingerprint(const std::string& text) {
    const auto is_hexadecimal = [](char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f') ||
               (letter >= 'A' && letter <= 'F');
    };
    const auto digits = std::count_if(text.begin(), text.end(), is_hexadecimal);
    const auto colons = std::count(text.begin(), text.end(), ':');
    const bool is_good = digits == 64 && static_cast<std::size_t>(digits + colons) == text.size();
    return is_good ? "" : "not a SHA-256 fingerprint (64 hexadecimal digits)";
}

std::string CheckProxy(const std::string& text) {
    return text.find('@') == std::string::npos
               ? ""
               : "a proxy URL must not carry user information on the command line";
}

void AddCredentialOptions(CLI::App& scan, ScanArguments& arguments) {
    scan.add_option("--user", arguments.user, "User name, if not given with the target")
        ->type_name("NAME");
    auto* file = scan.add_option("--password-file", arguments.password.file,
                                 "File whose first line is the password; only its owner may have "
                                 "access to it")
                     ->type_name("FILE");
    auto* descriptor = scan.add_option("--password-fd", arguments.password.descriptor,
                                       "Open file descriptor whose first line is the password")
                           ->type_name("N")
                           ->check(CLI::Range(0, 1 << 20));
    auto* standard_input = scan.add_flag("--password-stdin", arguments.password.is_stdin,
                                         "Read the password from the standard input");
    file->excludes(descriptor)->excludes(standard_input);
    descriptor->excludes(standard_input);
}

void AddOutputOptions(CLI::App& scan, ScanArguments& arguments) {
    scan.add_option("--scantype", arguments.scan_type,
                    "What to scan: fw firmware, dd device drivers, all both")
        ->check(CLI::IsMember({"fw", "dd", "all"}))
        ->capture_default_str();
    scan.add_option("--output", arguments.output_dir,
                    "Folder for Tarsel-update-scan.xml, common_result.xml and tarsel.log; made if "
                    "missing (default: the current folder)")
        ->type_name("DIR");
    scan.add_flag("-q,--quiet", arguments.is_quiet, "Print the tables and errors only");
    scan.add_flag("-v", arguments.verbosity,
                  "Show the log on the standard error output (-vv: with all details)");
}

void AddSeconds(CLI::App& scan, const std::string& name, int& value, const std::string& text) {
    scan.add_option(name, value, text)
        ->type_name("SECONDS")
        ->check(CLI::Range(1, kLongestSeconds))
        ->capture_default_str();
}

void AddPatienceOptions(CLI::App& scan, ScanArguments& arguments) {
    AddSeconds(scan, "--timeout", arguments.timeout_seconds, "Limit for one request");
    AddSeconds(scan, "--connect-timeout", arguments.connect_timeout_seconds,
               "Limit for opening a connection");
    AddSeconds(scan, "--inventory-timeout", arguments.inventory_timeout_seconds,
               "Limit for the firmware collection");
    AddSeconds(scan, "--deadline", arguments.deadline_seconds, "Limit for the whole scan");
    scan.add_option("--per-target-parallel", arguments.max_parallel,
                    "Requests in flight at the target at most")
        ->type_name("N")
        ->check(CLI::Range(1, 16))
        ->capture_default_str();
    scan.add_option("--login-attempts", arguments.login_attempts,
                    "Refused logins this scan may cause; more may lock the account")
        ->type_name("N")
        ->check(CLI::Range(1, 10))
        ->capture_default_str();
    scan.add_option("--max-body", arguments.max_body_mib, "Largest answer accepted")
        ->type_name("MIB")
        ->check(CLI::Range(1, 1024))
        ->capture_default_str();
}

void AddConnectionOptions(CLI::App& scan, ScanArguments& arguments) {
    auto* ca_file = scan.add_option("--ca-file", arguments.ca_file,
                                    "Trust the certificates of this PEM file instead of the "
                                    "system's")
                        ->type_name("FILE")
                        ->check(CLI::Validator(CheckExistingFile, "FILE"));
    auto* pin = scan.add_option("--pin", arguments.fingerprint,
                                "Trust the one certificate with this SHA-256 fingerprint")
                    ->type_name("SHA256")
                    ->check(CheckFingerprint);
    scan.add_flag("--insecure", arguments.is_insecure,
                  "Do not check the certificate: anybody in between can read the password")
        ->excludes(ca_file)
        ->excludes(pin);
    scan.add_flag("--tls-legacy", arguments.is_tls_legacy,
                  "Accept TLS 1.0 and 1.1 and weak keys of old controllers");
    auto* proxy = scan.add_option("--proxy", arguments.proxy,
                                  "Connect through this proxy (default: directly)")
                      ->type_name("URL")
                      ->check(CheckProxy);
    scan.add_flag("--use-env-proxy", arguments.use_environment_proxy,
                  "Honour http_proxy and its kin")
        ->excludes(proxy);
    scan.add_option("--auth", arguments.auth,
                    "Login method over Redfish; auto is a session, or Basic where the service has "
                    "no sessions")
        ->check(CLI::IsMember({"auto", "session", "basic"}))
        ->capture_default_str();
}

// The port behind a host is that of the protocol a target is first asked over.
void AddTargetOptions(CLI::App& scan, TargetTexts& targets, ScanArguments& arguments) {
    const auto add = [&scan](const char* name, std::optional<std::string>& text,
                             const std::string& what) {
        return scan.add_option(name, text, what + ": [USER@]HOST[:PORT]")->type_name("TARGET");
    };
    add("--bmc", targets.bmc, "Scan a server through its BMC");
    add("--tolv", targets.tolv, "Scan the management module of a blade chassis");
    add("--esxi", targets.esxi, "Scan an ESXi host");
    add("--vesk", targets.vesk, "Scan the management module of a dense enclosure");
    add("--remoteos", targets.remoteos, "Scan a Linux server by running this tool there over SSH");
    scan.add_option("--switch", arguments.bay,
                    "Scan the I/O switch in this bay of the chassis instead of its module")
        ->type_name("BAY")
        ->check(CLI::Range(1, kHighestBay));
}

void AddBmcOptions(CLI::App& scan, ScanArguments& arguments) {
    scan.add_flag("--info-only", arguments.is_info_only,
                  "Read machine type and serial number only");
    scan.add_option("--system-id", arguments.system_id,
                    "Id of the computer system to read (default: the one the BMC manages)")
        ->type_name("ID");
    scan.add_flag("--zelvar", arguments.is_zelvar, "The management suite drives this scan");
    scan.add_flag("--cfc", arguments.is_cfc_system, "The target is a CFC-class system");
    scan.add_flag("--csp", arguments.is_csp_system, "The target is a CSP-class system");
}

CLI::Option* AddPort(CLI::App& scan, const char* name, int& port, const std::string& text) {
    constexpr int kHighestPort = 65535;
    return scan.add_option(name, port, text)->type_name("PORT")->check(CLI::Range(1, kHighestPort));
}

void AddCimOptions(CLI::App& scan, ScanArguments& arguments) {
    AddPort(scan, "--cim-port", arguments.cim_port, "Port of the CIM service (default: 5989)");
    scan.add_flag("--cim-http", arguments.is_cim_http,
                  "Read CIM without TLS, from port 5988 unless given: everything can be read and "
                  "changed in between; user and password are sent only with --insecure");
    scan.add_option("--cim-namespace", arguments.cim_namespace,
                    "Namespace of the CIM inventory (default: the usual ones, in order)")
        ->type_name("NAME");
}

void AddIpmiOptions(CLI::App& scan, ScanArguments& arguments) {
    constexpr int kHighestSuite = 17;
    constexpr int kLongestInterval = 60;
    AddPort(scan, "--ipmi-port", arguments.ipmi_port, "UDP port of IPMI over LAN (default: 623)");
    scan.add_option("--ipmi-cipher", arguments.ipmi_cipher,
                    "IPMI cipher suite (default: 17, then 3)")
        ->type_name("N")
        ->check(CLI::Range(1, kHighestSuite));
    scan.add_option("--ipmi-interval", arguments.ipmi_interval_seconds,
                    "Pause between two IPMI sessions")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, kLongestInterval))
        ->capture_default_str();
}

void AddOwnMachineOptions(CLI::App& scan, TargetTexts& targets, ScanArguments& arguments) {
    const auto add = [&scan](const char* name, std::optional<std::string>& text,
                             const std::string& what) {
        // The address may be missing.
        scan.add_option(name, text,
                        what + "; the BMC at [USER@]HOST[:PORT], or where the machine says it is")
            ->expected(0, 1)
            ->type_name("[BMC]");
    };
    add("--inband", targets.inband, "Scan this machine with its BMC");
    add("--amd", targets.amd, "Scan this machine, of the AMD platform, with its BMC");
    scan.add_flag("--local", targets.is_local, "Scan this machine without any BMC or login");
    scan.add_option("--sysroot", arguments.system_root,
                    "Read the machine tree recorded in this folder instead of /")
        ->type_name("DIR")
        ->check(CLI::Validator(CheckExistingFolder, "DIR"));
}

void AddSshTrustOptions(CLI::App& scan, RemoteArguments& remote) {
    scan.add_option("--host-key", remote.host_key,
                    "SSH server keys: strict only known ones, accept-new also those of new "
                    "servers, off any")
        ->check(CLI::IsMember({"strict", "accept-new", "off"}))
        ->capture_default_str();
    scan.add_option("--known-hosts", remote.known_hosts,
                    "File of known SSH server keys (default: ~/.ssh/known_hosts)")
        ->type_name("FILE");
    scan.add_flag("--ssh-legacy", remote.is_legacy,
                  "Accept SHA-1 key exchanges and host keys of old SSH servers");
    scan.add_option("--ssh-key", remote.key_file,
                    "Private key to log in with; no other key is offered then")
        ->type_name("FILE")
        ->check(CLI::Validator(CheckExistingFile, "FILE"));
    auto* file = scan.add_option("--ssh-passphrase-file", remote.passphrase.file,
                                 "File whose first line is the key's passphrase; only its owner "
                                 "may have access to it")
                     ->type_name("FILE");
    scan.add_option("--ssh-passphrase-fd", remote.passphrase.descriptor,
                    "Open file descriptor whose first line is the key's passphrase")
        ->type_name("N")
        ->check(CLI::Range(0, 1 << 20))
        ->excludes(file);
}

void AddRemoteOptions(CLI::App& scan, RemoteArguments& remote) {
    scan.add_option("--package-dir", remote.package_dir,
                    "Folder with packages of this tool; the fitting one is carried to a server "
                    "that has no tool of this version")
        ->type_name("DIR")
        ->check(CLI::Validator(CheckExistingFolder, "DIR"));
    scan.add_option("--remote-command", remote.command,
                    "Command to run there instead of the tool's scan of that machine; {tarsel} "
                    "stands for the tool, {folder} for the folder its files belong into; no "
                    "passwords, the command is logged")
        ->type_name("TEXT");
    scan.add_flag("--keep-remote", remote.keeps_folder,
                  "Leave the private folder on the server and say where it is");
}

}  // namespace

void DeclareScanOptions(CLI::App& scan, TargetTexts& targets, ScanArguments& arguments) {
    AddTargetOptions(scan, targets, arguments);
    AddOwnMachineOptions(scan, targets, arguments);
    AddSshTrustOptions(scan, arguments.remote);
    AddRemoteOptions(scan, arguments.remote);
    AddBmcOptions(scan, arguments);
    AddCredentialOptions(scan, arguments);
    AddOutputOptions(scan, arguments);
    AddPatienceOptions(scan, arguments);
    AddConnectionOptions(scan, arguments);
    AddCimOptions(scan, arguments);
    AddIpmiOptions(scan, arguments);
}

}  // namespace tarsel
