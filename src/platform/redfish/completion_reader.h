// Firmware of devices that the inventory does not list.
//
// Older services have no update service, others list one entry for many equal drives or leave out
// adapters and power supplies. What those devices say themselves completes the list, but only where
// no entry can mean the same device: a missing line is found by looking, a doubled one misleads.
//
// A device counts as listed already when one of these holds:
//   - an entry relates to it, to a part of it, or to another view of the same hardware
//   - an entry's related device has its serial number
//   - an entry's card sits in the same PCIe or OCP slot
//   - an entry that relates to no device has exactly its version, and either names it (model, name
//     or part number), or speaks of its kind ("NIC", "PSU"), or the version is distinctive (at
//     least six characters with two separators); one entry stands for one device of a kind
// BIOS and BMC count as listed when an entry relates to the system's BIOS or the manager, is so
// named, or has exactly the version.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/redfish/device_index.h"
#include "platform/redfish/firmware_reader.h"
#include "platform/redfish/managed_system.h"

namespace Vantix::redfish {

/// Records of BIOS ("UEFI"), BMC ("BMC") and of devices with a version that no entry means, in this
/// order. Caption tells the source ("Redfish NetworkAdapter"). SoftwareID of a device is its part
/// number, else its model, else its Id; IsPLDMUpdateSupported stays empty.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ReadMissingFirmware(
    const ManagedSystem& managed, const DeviceIndex& index, const FirmwareReading& reading);

}  // namespace Vantix::redfish
