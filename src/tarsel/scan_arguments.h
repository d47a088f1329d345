// What the user asked for on the command line, as plain values.
#pragma once

#include <string>

namespace tarsel {

/// Where the password comes from; at most one of the options is set.
struct PasswordSource {
    std::string file;       ///< empty: none
    int descriptor = -1;    ///< open file descriptor; -1: none
    bool is_stdin = false;  ///< first line of the standard input
};

constexpr bool IsPasswordSourceGiven(const PasswordSource& source) {
    return !source.file.empty() || source.descriptor >= 0 || source.is_stdin;
}

/// What is scanned.
enum class TargetKind {
    kBmc,
    kChassis,
    kIoSwitch,
    kHypervisor,
    kEnclosure,
    kInBand,   ///< this machine, with its BMC
    kAmd,      ///< this machine, of the AMD platform
    kLocal,    ///< this machine, without any BMC
    kRemoteOs  ///< another machine, by this tool's own run there
};

/// True for what is scanned from its own operating system.
constexpr bool IsOwnMachine(TargetKind kind) {
    return kind == TargetKind::kInBand || kind == TargetKind::kAmd || kind == TargetKind::kLocal;
}

/// What a scan over SSH needs beyond host and login.
struct RemoteArguments {
    std::string host_key = "strict";  ///< or "accept-new", "off"
    std::string known_hosts;          ///< file; empty: the user's own
    std::string key_file;             ///< private key; empty: the agent's and the usual ones
    PasswordSource passphrase;        ///< of the private key
    bool is_legacy = false;
    std::string package_dir;  ///< folder of tool packages; empty: nothing is carried there
    std::string command;      ///< empty: the tool's scan of the machine it runs on
    bool keeps_folder = false;
};

/// `tarsel scan`. Durations are in seconds.
struct ScanArguments {
    TargetKind kind = TargetKind::kBmc;
    int bay = 0;       ///< of the I/O switch; 0: none
    std::string host;  ///< no brackets; empty: this machine, its BMC to be found
    int port = 0;      ///< 0: the protocol's default
    std::string user;
    PasswordSource password;

    std::string scan_type = "all";
    std::string output_dir = ".";
    bool is_quiet = false;
    int verbosity = 0;  ///< number of -v

    int timeout_seconds = 60;
    int connect_timeout_seconds = 10;
    int inventory_timeout_seconds = 240;
    int deadline_seconds = 1200;
    int max_parallel = 3;
    int login_attempts = 1;
    int max_body_mib = 32;

    std::string ca_file;
    std::string fingerprint;
    bool is_insecure = false;
    bool is_tls_legacy = false;
    std::string proxy;
    bool use_environment_proxy = false;
    std::string auth = "auto";

    int cim_port = 0;  ///< 0: the protocol's default, as below
    bool is_cim_http = false;
    std::string cim_namespace;  ///< empty: the usual ones
    int ipmi_port = 0;
    int ipmi_cipher = 0;  ///< 0: those that are in use, best first
    int ipmi_interval_seconds = 1;

    bool is_info_only = false;
    std::string system_id;
    bool is_zelvar = false;
    bool is_cfc_system = false;
    bool is_csp_system = false;
    std::string system_root;  ///< folder that stands for "/" of this machine; empty: "/"
    RemoteArguments remote;
};

}  // namespace tarsel
