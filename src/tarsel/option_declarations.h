// The options of `tarsel scan`: names, help texts and ranges. Which of them go with which target is
// said by option_rules.h.
#pragma once

#include <optional>
#include <string>

#include "tarsel/scan_arguments.h"

namespace CLI {
class App;
}

namespace tarsel {

/// The targets as they were written; exactly one must be there. An empty text is a target given
/// without an address.
struct TargetTexts {
    std::optional<std::string> bmc;
    std::optional<std::string> tolv;
    std::optional<std::string> esxi;
    std::optional<std::string> vesk;
    std::optional<std::string> remoteos;
    std::optional<std::string> inband;
    std::optional<std::string> amd;
    bool is_local = false;
};

/// Adds the options to the subcommand; parsing writes into `targets` and `arguments`, which must
/// live until then.
void DeclareScanOptions(CLI::App& scan, TargetTexts& targets, ScanArguments& arguments);

}  // namespace tarsel
