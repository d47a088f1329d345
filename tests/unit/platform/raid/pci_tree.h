// Storage controllers in a recorded machine.
#pragma once

#include <string>

#include "support/system_tree.h"

/// A PCI function as the kernel shows it; `class_code` and ids with their "0x".
inline void AddPciFunction(test_support::SystemTree& tree, const std::string& address,
                           const std::string& class_code, const std::string& vendor,
                           const std::string& device, const std::string& driver = "") {
    const std::string real = "/sys/devices/pci0000:00/" + address;
    tree.File(real + "/class", class_code + "\n");
    tree.File(real + "/vendor", vendor + "\n");
    tree.File(real + "/device", device + "\n");
    tree.Link("/sys/bus/pci/devices/" + address, "../../../devices/pci0000:00/" + address);
    if (!driver.empty()) tree.Link(real + "/driver", "../../../bus/pci/drivers/" + driver);
}

inline void AddServedController(test_support::SystemTree& tree,
                                const std::string& address = "0000:d9:00.0") {
    AddPciFunction(tree, address, "0x010400", "0x9005", "0x028f", "smartpqi");
}

inline void AddServedHostAdapter(test_support::SystemTree& tree) {
    AddPciFunction(tree, "0000:5e:00.0", "0x010700", "0x9005", "0x028f", "smartpqi");
}

inline void AddOtherMakersController(test_support::SystemTree& tree) {
    AddPciFunction(tree, "0000:01:00.0", "0x010400", "0x1000", "0x0060", "megaraid_sas");
}

inline void AddNetworkCard(test_support::SystemTree& tree) {
    AddPciFunction(tree, "0000:02:00.0", "0x020000", "0x8086", "0x10d3", "e1000e");
}
