// What the running kernel says of itself.
#pragma once

#include <string>

namespace Vantix::local {

/// The machine architecture as `uname -m` tells it ("x86_64", "aarch64"); empty when not told.
[[nodiscard]] std::string RunningArchitecture();

}  // namespace Vantix::local
