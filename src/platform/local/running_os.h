// The operating system that runs on this machine, where no release file tells it.
#pragma once

#include <optional>

#include "platform/local/os_release.h"

namespace Vantix::local {

/// Nothing where the system describes itself by files.
[[nodiscard]] std::optional<OsName> RunningOs();

}  // namespace Vantix::local
