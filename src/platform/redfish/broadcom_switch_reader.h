// Updatable devices behind PCIe switches of Broadcom.
#pragma once

#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// True when all of this holds:
/// - a PCIe device is a switch of Broadcom: by vendor id 0x1000 in its own VendorId or that of its
///   functions and a bridge or switch by class code (0x0604..), DeviceClass "Bridge" or its name;
///   without any vendor id by the maker's name;
/// - another device sits behind it: the switch links to it (Links.PCIeDevices,
///   DownstreamPCIeDevices or DownstreamDevices, also below Oem), or the device links to the switch
///   (Links.Switch, UpstreamSwitch or PCIeDevice, also below Oem); PCIe devices, adapters, storage
///   controllers and drives count;
/// - a firmware inventory entry with Updateable true relates to that device or another view of it.
[[nodiscard]] bool HasUpdatableDeviceBehindBroadcomSwitch(const ServerSnapshot& snapshot);

}  // namespace Vantix::redfish
