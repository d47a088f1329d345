// Which options go with which target.
#pragma once

#include <string>

#include "tarsel/scan_arguments.h"

namespace CLI {
class App;
}

namespace tarsel {

/// One sentence about the first option among the parsed ones that means nothing for such a target;
/// empty when there is none. `target_option` is the target as the user wrote it, "--bmc" say.
std::string MisplacedOption(const CLI::App& scan, TargetKind kind,
                            const std::string& target_option);

}  // namespace tarsel
