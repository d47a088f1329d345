#include "transport/ipmi/device_id.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kShortest = 4;  // up to the minor firmware revision
constexpr std::size_t kWithProduct = 11;
constexpr std::size_t kWithAuxiliary = 15;
constexpr std::uint32_t kManufacturerBits = 0x0fffff;  // the upper four bits are reserved

}  // namespace

RawRequest GetDeviceIdRequest() {
    return {0x06, 0x01, {}};
}

std::optional<DeviceId> ParseDeviceId(const RawAnswer& answer) {
    const Bytes& data = answer.data;
    if (!answer.IsOk() || data.size() < kShortest) return {};
    DeviceId device;
    device.device_id = data[0];
    device.revision = data[1] & 0x0f;
    device.firmware_major = data[2] & 0x7f;
    device.is_updating = (data[2] & 0x80) != 0;
    device.firmware_minor = data[3];
    if (data.size() >= kWithProduct) {
        device.manufacturer = (data[6] | data[7] << 8 | data[8] << 16) & kManufacturerBits;
        device.product = static_cast<std::uint16_t>(data[9] | data[10] << 8);
    }
    if (data.size() >= kWithAuxiliary) {
        device.auxiliary.assign(data.begin() + kWithProduct, data.begin() + kWithAuxiliary);
    }
    return device;
}

std::string FirmwareVersionText(const DeviceId& device) {
    return std::to_string(device.firmware_major) + "." + HexByte(device.firmware_minor);
}

}  // namespace Vantix::transport
