#include "platform/pci/net_firmware.h"

namespace Vantix::pci {

// Windows has no such query for all makers: its adapters tell the version of their driver only.
NetFirmwareQuery ThisMachinesNetFirmware() {
    return {};
}

}  // namespace Vantix::pci
