// Asks the kernel's network drivers for the firmware version of their devices.
#pragma once

#include "platform/pci/firmware_attributes.h"

namespace Vantix::pci {

/// The query over the ethtool interface of this machine (ETHTOOL_GDRVINFO), which needs no rights
/// and changes nothing.
[[nodiscard]] NetFirmwareQuery ThisMachinesNetFirmware();

}  // namespace Vantix::pci
