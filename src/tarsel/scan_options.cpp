#include "tarsel/scan_options.h"

namespace tarsel {
namespace {

using Vantix::VantixConnection::AuthMethod;
using Vantix::VantixConnection::ConnectOption;
using Vantix::VantixConnection::RunContext;
using Vantix::VantixConnection::SshHostKeyPolicy;

AuthMethod AuthFor(const std::string& word) {
    if (word == "session") return AuthMethod::kSession;
    if (word == "basic") return AuthMethod::kBasic;
    return AuthMethod::kAuto;
}

int ModeFor(TargetKind kind) {
    switch (kind) {
        case TargetKind::kChassis:
            return Vantix::VantixConnection::kConnectModeChassis;
        case TargetKind::kIoSwitch:
            return Vantix::VantixConnection::kConnectModeIoSwitch;
        case TargetKind::kHypervisor:
            return Vantix::VantixConnection::kConnectModeEsxi;
        case TargetKind::kEnclosure:
            return Vantix::VantixConnection::kConnectModeEnclosure;
        case TargetKind::kInBand:
            return Vantix::VantixConnection::kConnectModeInbandBmc;
        case TargetKind::kAmd:
            return Vantix::VantixConnection::kConnectModeAmd;
        case TargetKind::kLocal:
            return Vantix::VantixConnection::kConnectModeInbandLocal;
        case TargetKind::kRemoteOs:
            return Vantix::VantixConnection::kConnectModeRemoteOs;
        case TargetKind::kBmc:
            break;
    }
    return Vantix::VantixConnection::kConnectModeOobBmc;
}

void AddProtocols(const ScanArguments& arguments, ConnectOption& option) {
    constexpr int kMillisecondsPerSecond = 1000;
    option.cim_port = arguments.cim_port;
    option.cim_plain_http = arguments.is_cim_http;
    option.cim_namespace = arguments.cim_namespace;
    option.ipmi_port = arguments.ipmi_port;
    option.ipmi_cipher = arguments.ipmi_cipher;
    option.ipmi_interval_ms = arguments.ipmi_interval_seconds * kMillisecondsPerSecond;
}

SshHostKeyPolicy HostKeyPolicyFor(const std::string& word) {
    if (word == "accept-new") return SshHostKeyPolicy::kAcceptNew;
    return word == "off" ? SshHostKeyPolicy::kOff : SshHostKeyPolicy::kStrict;
}

void AddSsh(const RemoteArguments& remote, const std::string& passphrase, ConnectOption& option) {
    option.ssh_key_file = remote.key_file;
    option.ssh_key_passphrase = passphrase;
    option.ssh_host_key = HostKeyPolicyFor(remote.host_key);
    option.ssh_known_hosts = remote.known_hosts;
    option.legacy_ssh = remote.is_legacy;
}

// An empty command is the scan of everything.
std::string RemoteCommandFor(const ScanArguments& arguments) {
    const bool is_own_command = !arguments.remote.command.empty();
    if (is_own_command || arguments.scan_type == "all") return arguments.remote.command;
    return "{tarsel} scan --local --quiet --scantype " + arguments.scan_type + " --output {folder}";
}

ConnectOption ConnectOptionFor(const ScanArguments& arguments, const Secrets& secrets,
                               const std::shared_ptr<RunContext>& run) {
    ConnectOption option;
    option.connect_mode = ModeFor(arguments.kind);
    option.target_address = arguments.host;
    option.port = arguments.port;
    option.user = arguments.user;
    option.password = secrets.password;
    option.verify_certificate = !arguments.is_insecure;
    option.ca_file = arguments.ca_file;
    option.fingerprint = arguments.fingerprint;
    option.timeout_seconds = arguments.timeout_seconds;
    option.connect_timeout_seconds = arguments.connect_timeout_seconds;
    option.inventory_timeout_seconds = arguments.inventory_timeout_seconds;
    option.deadline_seconds = arguments.deadline_seconds;
    option.auth = AuthFor(arguments.auth);
    option.max_parallel = arguments.max_parallel;
    option.max_body_bytes = static_cast<std::size_t>(arguments.max_body_mib) * 1024 * 1024;
    option.legacy_tls = arguments.is_tls_legacy;
    option.facts_only = arguments.is_info_only;
    option.proxy = arguments.proxy;
    option.use_environment_proxy = arguments.use_environment_proxy;
    option.system_id = arguments.system_id;
    option.system_root = arguments.system_root;
    option.run = run;
    AddProtocols(arguments, option);
    AddSsh(arguments.remote, secrets.ssh_key_passphrase, option);
    return option;
}

}  // namespace

service::UpdateScanOption ScanOptionFor(const ScanArguments& arguments, const Secrets& secrets,
                                        const std::shared_ptr<RunContext>& run) {
    service::UpdateScanOption option;
    option.bay_id = arguments.bay;
    option.is_zelvar = arguments.is_zelvar;
    option.is_cfc_system = arguments.is_cfc_system;
    option.is_csp_system = arguments.is_csp_system;
    option.info_only = arguments.is_info_only;
    option.output_dir = arguments.output_dir;
    option.remote_flag = arguments.remote.keeps_folder;
    option.package_dir = arguments.remote.package_dir;
    option.remote_command = RemoteCommandFor(arguments);
    option.scan_type = arguments.scan_type;
    option.connect_option = ConnectOptionFor(arguments, secrets, run);
    return option;
}

std::string TableScopeFor(const std::string& scan_type) {
    return scan_type == "fw" ? "fw" : "dd";
}

}  // namespace tarsel
