#include "tarsel/option_rules.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>

namespace tarsel {
namespace {

using Kinds = unsigned;

constexpr Kinds Only(TargetKind kind) {
    return 1U << static_cast<unsigned>(kind);
}

constexpr Kinds kBmc = Only(TargetKind::kBmc);
constexpr Kinds kInBand = Only(TargetKind::kInBand);
constexpr Kinds kAmd = Only(TargetKind::kAmd);
constexpr Kinds kOwnMachine = kInBand | kAmd | Only(TargetKind::kLocal);
constexpr Kinds kCim = kBmc | Only(TargetKind::kChassis) | Only(TargetKind::kIoSwitch) |
                       Only(TargetKind::kHypervisor) | kInBand;
constexpr Kinds kIpmi = Only(TargetKind::kEnclosure) | kInBand | kAmd;
constexpr Kinds kRemoteOs = Only(TargetKind::kRemoteOs);
// Nobody is connected to in a scan of this machine alone.
constexpr Kinds kConnected = ~Only(TargetKind::kLocal);
// SSH has no certificates, and no requests.
constexpr Kinds kTls = kConnected & ~kRemoteOs;

struct Rule {
    const char* option;
    Kinds kinds;
};

constexpr std::array kRules = {
    Rule{"--switch", Only(TargetKind::kIoSwitch)},
    Rule{"--info-only", kBmc | kInBand},
    Rule{"--system-id", kBmc | kInBand | kAmd},
    Rule{"--zelvar", kBmc | kInBand},
    Rule{"--cfc", kBmc | kAmd},
    Rule{"--csp", kBmc | kAmd},
    Rule{"--sysroot", kOwnMachine},
    Rule{"--cim-port", kCim},
    Rule{"--cim-http", kCim},
    Rule{"--cim-namespace", kCim},
    Rule{"--ipmi-port", kIpmi},
    Rule{"--ipmi-cipher", kIpmi},
    Rule{"--ipmi-interval", kIpmi},
    Rule{"--user", kConnected},
    Rule{"--password-file", kConnected},
    Rule{"--password-fd", kConnected},
    Rule{"--password-stdin", kConnected},
    Rule{"--ca-file", kTls},
    Rule{"--pin", kTls},
    Rule{"--insecure", kTls},
    Rule{"--tls-legacy", kTls},
    Rule{"--proxy", kTls},
    Rule{"--use-env-proxy", kTls},
    Rule{"--auth", kTls},
    Rule{"--timeout", kConnected},
    Rule{"--connect-timeout", kConnected},
    Rule{"--inventory-timeout", kTls},
    Rule{"--deadline", kConnected},
    Rule{"--per-target-parallel", kTls},
    Rule{"--login-attempts", kConnected},
    Rule{"--max-body", kConnected},
    Rule{"--host-key", kRemoteOs},
    Rule{"--known-hosts", kRemoteOs},
    Rule{"--ssh-legacy", kRemoteOs},
    Rule{"--ssh-key", kRemoteOs},
    Rule{"--ssh-passphrase-file", kRemoteOs},
    Rule{"--ssh-passphrase-fd", kRemoteOs},
    Rule{"--package-dir", kRemoteOs},
    Rule{"--remote-command", kRemoteOs},
    Rule{"--keep-remote", kRemoteOs},
};

}  // namespace

std::string MisplacedOption(const CLI::App& scan, TargetKind kind,
                            const std::string& target_option) {
    for (const Rule& rule : kRules) {
        if ((rule.kinds & Only(kind)) != 0 || scan.count(rule.option) == 0) continue;
        return std::string(rule.option) + " means nothing for " + target_option + ".";
    }
    return {};
}

}  // namespace tarsel
