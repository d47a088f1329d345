// What differs from system to system where a machine asks its own BMC.
#pragma once

#include "transport/process/command_runner.h"

namespace Vantix::ipmi {

/// Runs the commands of IpmiSessions: the program ipmitool, or for this machine's own BMC what the
/// system has in its place. Lives as long as the program.
[[nodiscard]] transport::CommandRunner& SystemIpmiRunner();

/// Whether a BMC that can be asked is seen by a device node in the file system.
[[nodiscard]] bool ShowsIpmiDeviceAsNode();

/// What to do where the device cannot be used, as it stands in a sentence.
[[nodiscard]] const char* LocalIpmiAdvice();

}  // namespace Vantix::ipmi
