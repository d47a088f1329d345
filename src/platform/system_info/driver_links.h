// Which driver serves which device, as the kernel links them. Private to this family.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "transport/sysroot/system_root.h"

namespace Vantix::system_info {

/// One driver of one piece of software: a module, or a part of the kernel itself.
struct DriverUse {
    std::string module;  ///< empty for a built-in driver that shows no module
    int devices = 0;     ///< on all buses together
    /// Among them the PCI functions that need a driver to be of use, by vendor and device id (4 + 4
    /// hexadecimal digits).
    std::map<std::string, int> adapters;
};

/// A function on PCI that wants a driver and has none.
struct DriverlessDevice {
    std::string address;     ///< domain:bus:device.function
    std::string ids;         ///< vendor and device, 4 + 4 hexadecimal digits
    std::string class_code;  ///< 6 hexadecimal digits
};

struct DriverLinks {
    bool has_buses = false;  ///< false: nothing could be read
    /// By module name, else driver name. With those that serve something, and loaded modules that
    /// serve nothing now.
    std::map<std::string, DriverUse> drivers;
    std::vector<DriverlessDevice> driverless;
};

/// Reads each device's link once, on every bus but those of the kernel's own bookkeeping.
[[nodiscard]] DriverLinks ReadDriverLinks(const transport::SystemRoot& root);

/// Whether a PCI function of this class needs a driver to be of use: not bridges, memory, system
/// peripherals and counters, which work or idle without one.
[[nodiscard]] bool WantsDriver(const std::string& class_code);

}  // namespace Vantix::system_info
