// Where a disk sits: its bay, or the slot of the card that it is.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/pci/pci_slots.h"
#include "platform/redfish/slot_rules.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

class DiskPlaces {
  public:
    /// Reads the enclosures' slots and the PCI slots. `root` must outlive the object.
    explicit DiskPlaces(const transport::SystemRoot& root);

    /// The bay of the disk at the SCSI address "0:0:1:0". `folder` is its folder in sysfs,
    /// `device_path` that folder with all links followed (may be empty). From the enclosure's
    /// slot, else the controller's path_info, else the bay that the SAS layer knows.
    [[nodiscard]] redfish::Slot OfScsi(const std::string& address, const std::string& folder,
                                       std::string_view device_path) const;

    /// The nearest PCI slot on the way to a device, as the PCI inventory numbers it (pci_slots.h);
    /// slot type PCIe. Whether the slot is a drive bay is not known here.
    [[nodiscard]] redfish::Slot OfPci(std::string_view device_path) const;

  private:
    void ReadEnclosures();
    void ReadEnclosure(const std::string& enclosure);
    [[nodiscard]] redfish::Slot SasBay(std::string_view device_path) const;

    const transport::SystemRoot& root_;
    std::map<std::string, redfish::Slot> bays_;  ///< SCSI address -> bay
    const pci::PciSlots pci_slots_;
};

/// The bay in a controller's path_info ("[0:0:1:0] Direct-Access PORT: 1I BOX: 1 BAY: 2 Active");
/// empty when there is none.
[[nodiscard]] std::string BayOfPathInfo(std::string_view text);

}  // namespace Vantix::disk
