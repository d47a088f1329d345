// Is the target the management module of an enclosure that speaks Redfish?
#pragma once

#include "platform/redfish/redfish_channel.h"

namespace Vantix::redfish {

/// True when the service has no computer systems of its own and its root or its manager (DSP8010:
/// Product, ManagerType "EnclosureManager") says that it manages an enclosure. Waits for the
/// managers only where the root leaves it open.
bool IsEnclosureManager(RedfishChannel& channel);

}  // namespace Vantix::redfish
