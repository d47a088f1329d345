#include "platform/local/present_devices.h"

namespace Vantix::local {

// The kernel shows its devices as files.
std::optional<std::vector<PresentDevice>> PresentDevices() {
    return std::nullopt;
}

}  // namespace Vantix::local
