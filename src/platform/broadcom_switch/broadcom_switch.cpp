#include "platform/broadcom_switch/broadcom_switch.h"

#include "platform/redfish/broadcom_switch_reader.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix {

RedfishBroadComSwitch::RedfishBroadComSwitch(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

bool RedfishBroadComSwitch::ExistUpdateableBroadcomSwitchDownStream() {
    redfish::RedfishChannel* channel = redfish::RedfishChannel::Of(connection_);
    return channel != nullptr &&
           redfish::HasUpdatableDeviceBehindBroadcomSwitch(channel->Inventory());
}

}  // namespace Vantix
