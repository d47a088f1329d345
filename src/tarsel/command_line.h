// Reads the arguments of the command. Pure: prints nothing, asks nobody.
#pragma once

#include <string>
#include <vector>

#include "tarsel/scan_arguments.h"

namespace tarsel {

/// What to do: scan, or print a text and end.
struct CommandLine {
    enum class Action { kScan, kPrint, kUsageError };
    Action action = Action::kUsageError;
    ScanArguments scan;  ///< for kScan
    std::string text;    ///< help or version for kPrint; one sentence for kUsageError
};

/// `arguments` without the program's name. A password among them is refused, and no text of the
/// result repeats what may have been one.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace tarsel
