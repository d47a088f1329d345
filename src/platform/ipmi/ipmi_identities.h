// Firmware records made of what a BMC tells over IPMI. Pure.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/ipmi/ipmi_channel.h"
#include "transport/ipmi/device_id.h"
#include "transport/ipmi/fru_data.h"

namespace Vantix::ipmi {

/// The BMC's own firmware: Name and SoftwareID "BMC", the version as the device tells it, auxiliary
/// revision bytes in Description.
[[nodiscard]] VantixOptions::SoftwareIdentity_ BmcIdentity(const transport::DeviceId& device,
                                                           const transport::FruData& fru);

/// One record a component; named by its description, else by its number.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ComponentIdentities(
    const std::vector<FirmwareComponent>& components);

/// Records of FRU devices that tell a product version; others have none. `main` is FRU 0.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> FruIdentities(
    const transport::FruData& main, const std::vector<FruDevice>& devices);

/// Whether the device is a power supply by its entity, its records or its name.
[[nodiscard]] bool IsPowerSupply(const FruDevice& device);

}  // namespace Vantix::ipmi
