// The drivers of a system that lists its devices by calls. Private to this family.
//
// Pure: the system's list in, records out. Drivers that serve no present device are not in it.
#pragma once

#include <vector>

#include "platform/local/present_devices.h"
#include "platform/system_info/driver_links.h"
#include "platform/system_info/system_info.h"

namespace Vantix::system_info {

struct PresentDrivers {
    /// One for each driver that has code of its own, in each version of it; for PCI functions that
    /// need a driver one for each kind of adapter, named as update packages name it
    /// ("fakenet_80861521"). In no order. The description is that of the first device.
    std::vector<DriverData> drivers;
    std::vector<DriverlessDevice> driverless;  ///< on PCI, as the list has them
};

/// Left out are devices that are no hardware of their own: those that software makes up, volumes,
/// processors. Devices with a driver that does not work count, with a line in the log.
[[nodiscard]] PresentDrivers DriversOf(const std::vector<local::PresentDevice>& devices);

}  // namespace Vantix::system_info
