// Devices, drivers and modules in a recorded machine.
#pragma once

#include <filesystem>
#include <string>

#include "support/module_file.h"
#include "support/system_tree.h"

class DriverTree : public test_support::SystemTree {
  public:
    /// A device of a bus; with `driver`, served by it.
    DriverTree& Device(const std::string& bus, const std::string& device,
                       const std::string& driver = "") {
        const std::string real = "/sys/devices/" + bus + "/" + device;
        Folder(real);
        Link("/sys/bus/" + bus + "/devices/" + device, "../../../devices/" + bus + "/" + device);
        if (driver.empty()) return *this;
        Link(real + "/driver", "../../../bus/" + bus + "/drivers/" + driver);
        Folder("/sys/bus/" + bus + "/drivers/" + driver);
        return *this;
    }
    DriverTree& Pci(const std::string& address, const std::string& class_code,
                    const std::string& vendor, const std::string& device,
                    const std::string& driver = "") {
        Device("pci", address, driver);
        const std::string real = "/sys/devices/pci/" + address;
        File(real + "/class", class_code + "\n");
        File(real + "/vendor", vendor + "\n");
        File(real + "/device", device + "\n");
        return *this;
    }
    /// The driver belongs to the module.
    DriverTree& Of(const std::string& bus, const std::string& driver, const std::string& module) {
        Folder("/sys/module/" + module);
        Link("/sys/bus/" + bus + "/drivers/" + driver + "/module", "../../../../module/" + module);
        return *this;
    }
    DriverTree& Loaded(const std::string& module) {
        File("/sys/module/" + module + "/initstate", "live\n");
        return *this;
    }
    DriverTree& Kernel(const std::string& release) {
        File("/proc/sys/kernel/osrelease", release + "\n");
        return *this;
    }
};
