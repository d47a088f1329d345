#include "doubles/platform_double.h"
#include "platform/bmc_type/bmc_type.h"
#include "platform/broadcom_switch/broadcom_switch.h"

using doubles::PlatformDouble;

namespace Vantix {
namespace Agentless {

OssaTypeAcquire::OssaTypeAcquire(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().OssaTypeAcquireConstructor(connection);
}

int OssaTypeAcquire::GetOssaType(int& type) {
    return PlatformDouble::Current().GetOssaType(connection_, type);
}

std::string OssaTypeAcquire::OssaTypeToString(int type) {
    return PlatformDouble::Current().OssaTypeToString(type);
}

}  // namespace Agentless

RedfishBroadComSwitch::RedfishBroadComSwitch(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().RedfishBroadComSwitchConstructor(connection);
}

bool RedfishBroadComSwitch::ExistUpdateableBroadcomSwitchDownStream() {
    return PlatformDouble::Current().ExistUpdateableBroadcomSwitchDownStream(connection_);
}

}  // namespace Vantix
