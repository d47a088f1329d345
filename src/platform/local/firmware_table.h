// The SMBIOS table where the operating system hands it out by a call instead of files.
#pragma once

#include <optional>
#include <string>

namespace Vantix::local {

/// The structures of this machine's table (DSP0134), raw; nothing where the kernel shows files or
/// the machine has no table.
[[nodiscard]] std::optional<std::string> RunningFirmwareTable();

}  // namespace Vantix::local
