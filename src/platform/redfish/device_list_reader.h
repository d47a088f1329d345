// The devices of a server as text, one a line, for reading by people and simple tools.
#pragma once

#include <string>

#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// One line a system, chassis and present device: kind, name, maker, model, part number, serial
/// number, firmware version and slot, separated by "; ", unknown ones left out. Every line ends in
/// a line feed. Empty when the snapshot has no device.
[[nodiscard]] std::string ReadDeviceList(const ServerSnapshot& snapshot);

}  // namespace Vantix::redfish
