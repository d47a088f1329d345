// How arcconf is called: commands that read, and nothing that changes or tests a controller.
//
// Pure: makes the command, does not run it.
#pragma once

#include <string>

#include "transport/process/command_runner.h"

namespace Vantix::transport {

/// Cancelling is left to the caller. A controller with many disks answers in seconds.
[[nodiscard]] Command ArcconfListCommand(const std::string& program);
/// For releases that know no "list".
[[nodiscard]] Command ArcconfVersionsCommand(const std::string& program);
/// Without a command the program names its release.
[[nodiscard]] Command ArcconfReleaseCommand(const std::string& program);
[[nodiscard]] Command ArcconfAdapterCommand(const std::string& program, int controller_id);
[[nodiscard]] Command ArcconfDisksCommand(const std::string& program, int controller_id);

}  // namespace Vantix::transport
