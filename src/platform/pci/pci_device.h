// What the kernel's attributes say of one PCI device.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/pci/pci_address.h"
#include "platform/pci/pci_ids.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pci {

struct PciDevice {
    PciAddress address;
    std::string path;                ///< its folder, all links followed where that is possible
    std::vector<std::string> names;  ///< what the folder holds
    PciIds ids;
    std::string label;         ///< what the firmware calls it ("Embedded NIC 1")
    bool is_on_board = false;  ///< the firmware lists it among the devices of the board
};

/// In ascending order of their addresses.
[[nodiscard]] std::vector<PciAddress> ListPciAddresses(const transport::SystemRoot& root);

/// Nothing when there is no such device, when it is a virtual function, or when it does not tell
/// its vendor and device id (pulled out, say). Other attributes may be missing.
[[nodiscard]] std::optional<PciDevice> ReadPciDevice(const transport::SystemRoot& root,
                                                     const PciAddress& address);

}  // namespace Vantix::pci
