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
// Nobody is connected to in a scan of this machine alone.
constexpr Kinds kConnected = ~Only(TargetKind::kLocal);

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
    Rule{"--ca-file", kConnected},
    Rule{"--pin", kConnected},
    Rule{"--insecure", kConnected},
    Rule{"--tls-legacy", kConnected},
    Rule{"--proxy", kConnected},
    Rule{"--use-env-proxy", kConnected},
    Rule{"--auth", kConnected},
    Rule{"--timeout", kConnected},
    Rule{"--connect-timeout", kConnected},
    Rule{"--inventory-timeout", kConnected},
    Rule{"--deadline", kConnected},
    Rule{"--per-target-parallel", kConnected},
    Rule{"--login-attempts", kConnected},
    Rule{"--max-body", kConnected},
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
