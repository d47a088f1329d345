// The PCI devices of a system that lists its devices by calls, as the records of the inventory.
//
// Pure: the system's list in, records out. The names are those that the driver packages give;
// firmware versions only where the system tells them.
#pragma once

#include <optional>
#include <vector>

#include "platform/local/present_devices.h"
#include "platform/pci/pci.h"
#include "platform/pci/pci_address.h"
#include "platform/pci/pci_ids.h"
#include "platform/pci/pci_slots.h"

namespace Vantix::pci {

/// The ids of a device on PCI; nothing for devices of other buses, and for those that do not tell
/// vendor and device.
[[nodiscard]] std::optional<PciIds> PciIdsOf(const local::PresentDevice& device);

/// Where the device is; nothing when the system does not tell, or tells no place of PCI.
[[nodiscard]] std::optional<PciAddress> PciAddressOf(const local::PresentDevice& device);

/// The functions on PCI that tell their ids, by address, those without one first;
/// with `only` at most that one. `slots` are those that are known without the system's list; the
/// slots in it go before them.
[[nodiscard]] std::vector<PciInfo> PciRecordsOf(
    const std::vector<local::PresentDevice>& devices, PciSlots slots,
    const std::optional<PciAddress>& only = std::nullopt);

}  // namespace Vantix::pci
