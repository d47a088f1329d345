// The options of `tarsel scan`: names, help texts, ranges, and which of them go together. What they
// mean for one another beyond that is the parser's affair.
#pragma once

#include <optional>
#include <string>

#include "tarsel/scan_arguments.h"

namespace CLI {
class App;
}

namespace tarsel {

/// The targets as they were written; exactly one must be there.
struct TargetTexts {
    std::optional<std::string> bmc;
    std::optional<std::string> tolv;
    std::optional<std::string> esxi;
    std::optional<std::string> vesk;
};

/// Adds the options to the subcommand; parsing writes into `targets` and `arguments`, which must
/// live until then.
void DeclareScanOptions(CLI::App& scan, TargetTexts& targets, ScanArguments& arguments);

}  // namespace tarsel
