// Which slot of the machine a PCI device sits in.
//
// Deliberately not here: how a slot number is written in a report.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/pci/pci_device.h"
#include "transport/smbios/smbios_records.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pci {

class PciSlots {
  public:
    /// Reads the kernel's slots (/sys/bus/pci/slots), and for devices without one those of the
    /// SMBIOS table. Slots without a number of their own ("0", and "0-1", which is the kernel's
    /// second "0") are none.
    explicit PciSlots(const transport::SystemRoot& root);

    /// What a system that has no such files says of the slot at an address; 0 and numbers that
    /// stand for none change nothing.
    void Set(const PciAddress& address, std::uint32_t number);

    /// The slot of the device itself or of the nearest device above it, so that all functions of a
    /// card and what sits behind a bridge on it share its slot. A device of the board, a host's
    /// own port and a device that nothing is known of have none: empty.
    [[nodiscard]] std::string SlotOf(const PciDevice& device) const;

    /// The same for what hangs on a device and is known by its path with all links followed
    /// ("/sys/devices/pci0000:3a/.../0000:3b:00.0"), or by a bare address: the nearest slot on the
    /// way there.
    [[nodiscard]] std::string SlotAt(std::string_view device_path) const;

  private:
    void AddIfUnknown(const transport::SmbiosSlot& slot);
    [[nodiscard]] const std::string* Find(const PciAddress& address) const;

    std::map<std::string, std::string> slots_;  ///< "0000:3b:00" or "0000:3b" (whole bus) to slot
};

/// The number printed beside a slot: the one behind the word "slot" of its designation ("PCIe Slot
/// 03": 3), else its id. Empty when it has none.
[[nodiscard]] std::string NumberOfSlot(const transport::SmbiosSlot& slot);

}  // namespace Vantix::pci
