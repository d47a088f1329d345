// The answer to Get Device ID (IPMI v2.0, 20.1): who made the controller and what it runs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

struct DeviceId {
    std::uint8_t device_id = 0;
    std::uint8_t revision = 0;
    std::uint8_t firmware_major = 0;
    std::uint8_t firmware_minor = 0;  ///< BCD by the standard; some controllers count otherwise
    bool is_updating = false;         ///< firmware or self-initialization in progress
    std::uint32_t manufacturer = 0;   ///< IANA enterprise number; 0 and 0xfffff mean unknown
    std::uint16_t product = 0;
    Bytes auxiliary;  ///< four bytes of firmware revision whose meaning is the maker's; or none
};

[[nodiscard]] RawRequest GetDeviceIdRequest();

/// Nothing when the answer is shorter than the firmware revision reaches.
[[nodiscard]] std::optional<DeviceId> ParseDeviceId(const RawAnswer& answer);

/// Major and minor as they are commonly printed: "9.08". The minor part is shown digit by digit, so
/// that controllers which break the BCD rule are not converted twice.
[[nodiscard]] std::string FirmwareVersionText(const DeviceId& device);

}  // namespace Vantix::transport
