// The classification code of an inventory entry.
//
// The table is the value map of CIM_SoftwareIdentity.Classifications (DMTF CIM schema):
//   2 Driver, 3 Configuration Software, 4 Application Software, 5 Instrumentation,
//   6 Firmware/BIOS (here: BIOS, UEFI, option ROMs and FCode), 7 Diagnostic Software,
//   8 Operating System, 9 Middleware, 10 Firmware, 12 Support/Service Pack, 13 Software Bundle.
// Entries tell their class in words only, so words decide: of identifier, name and description, and
// the resource the entry relates to. What says nothing is firmware in a firmware inventory and
// application software in a software inventory.
#pragma once

#include <string>
#include <vector>

namespace Vantix::redfish {

struct ClassificationEvidence {
    std::string id;
    std::string name;
    std::string software_id;
    std::string description;
    std::vector<std::string> related_paths;
    /// From a firmware inventory, or from the only inventory there is.
    bool is_in_firmware_inventory = true;
    /// The entry relates to a device, a manager or another piece of hardware.
    bool has_related_hardware = false;
};

/// Decimal code, never empty.
[[nodiscard]] std::string ClassificationOf(const ClassificationEvidence& evidence);

}  // namespace Vantix::redfish
