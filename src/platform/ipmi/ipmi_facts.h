// Facts of a machine as its BMC tells them over IPMI. Pure.
#pragma once

#include <string>

#include "transport/ipmi/device_id.h"
#include "transport/ipmi/fru_data.h"

namespace Vantix::ipmi {

/// Product name, else product part number, else board, else chassis. Makers' fill-ins ("To be
/// filled by O.E.M.") count as missing, here and below. Empty when nothing is known.
[[nodiscard]] std::string MachineTypeOf(const transport::FruData& fru);

/// Of product, else chassis, else board.
[[nodiscard]] std::string SerialNumberOf(const transport::FruData& fru);

/// The BMC kind (redfish::BmcKind) by the maker's enterprise number, else by what the FRU calls the
/// machine; never "none".
[[nodiscard]] int BmcKindOf(const transport::DeviceId& device, const transport::FruData& fru);

/// As the FRU writes it, else "Enterprise number 7154"; empty when unknown.
[[nodiscard]] std::string ManufacturerOf(const transport::DeviceId& device,
                                         const transport::FruData& fru);

}  // namespace Vantix::ipmi
