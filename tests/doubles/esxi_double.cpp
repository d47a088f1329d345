#include "platform/esxi/esxi.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

namespace Vantix::Agentless {

EXSIInventory::EXSIInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().EXSIInventoryConstructor(connection);
}

bool EXSIInventory::IsUnSpportedEXSIVersion() {
    return PlatformDouble::Current().IsUnSpportedEXSIVersion(connection_);
}

}  // namespace Vantix::Agentless

CIMServerConfig::CIMServerConfig(const Vantix::VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().CIMServerConfigConstructor(connection);
}

int CIMServerConfig::PrevConfig() {
    return PlatformDouble::Current().PrevConfig(connection_);
}
