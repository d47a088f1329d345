#include "platform/local/present_devices.h"

#include "transport/text/ascii_case.h"

namespace Vantix::local {

std::string BusOf(const PresentDevice& device) {
    return transport::AsciiLowerText(device.instance_id.substr(0, device.instance_id.find('\\')));
}

bool HasDriver(const PresentDevice& device) {
    // "Device Manager error codes": not configured; drivers not installed. A key may be left over.
    constexpr std::uint32_t kNotConfigured = 1;
    constexpr std::uint32_t kNotInstalled = 28;
    if (device.problem == kNotConfigured || device.problem == kNotInstalled) return false;
    return !device.service.empty() || !device.driver_key.empty();
}

}  // namespace Vantix::local
