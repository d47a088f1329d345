// What the local host is: machine type, serial number, version of its firmware.
//
// Each fact on its own, so that one that only root may read costs no other. What nobody filled in
// ("To be filled by O.E.M.") counts as unknown and stands in the debug log.
#pragma once

#include <string>

#include "transport/sysroot/system_root.h"

namespace Vantix::local {

struct MachineIdentity {
    std::string machine_type;   ///< empty when unknown
    std::string serial_number;  ///< empty when unknown
    bool is_told = false;       ///< the machine describes itself, in SMBIOS or a device tree
};

/// Machine type: product name, else SKU number (SMBIOS type 1), else product of the board (type 2);
/// without SMBIOS the model of the device tree. Serial number: the product's, else the board's,
/// never the chassis', which on a blade is that of the enclosure; without SMBIOS the device tree's.
[[nodiscard]] MachineIdentity ReadMachineIdentity(const transport::SystemRoot& root);

/// Version of the UEFI or BIOS firmware (SMBIOS type 0); without SMBIOS that of the boot firmware
/// that the device tree tells. Empty when unknown.
[[nodiscard]] std::string ReadFirmwareVersion(const transport::SystemRoot& root);

/// One sentence for the user about why `what` ("machine type") is not known.
[[nodiscard]] std::string WhyUnknown(const transport::SystemRoot& root, const std::string& what);

}  // namespace Vantix::local
