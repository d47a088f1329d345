#include "platform/identities/identities.h"

#include "doubles/platform_double.h"
#include "platform/pmem/pmem.h"

using doubles::PlatformDouble;
using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;

namespace Vantix {
namespace Agentless {

AgentlessSoftwareIdentity::AgentlessSoftwareIdentity(
    const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().AgentlessSoftwareIdentityConstructor(connection);
}

int AgentlessSoftwareIdentity::GetPLDMSoftwareIdentities(Identities& list) {
    return PlatformDouble::Current().GetPLDMSoftwareIdentities(connection_, list);
}

int AgentlessSoftwareIdentity::GetSoftwareIdentities(Identities& list, bool all) {
    return PlatformDouble::Current().GetSoftwareIdentities(connection_, list, all);
}

std::string AgentlessSoftwareIdentity::GetInventoryList() {
    return PlatformDouble::Current().GetInventoryList(connection_);
}

}  // namespace Agentless

xFirmwareInventory::xFirmwareInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().xFirmwareInventoryConstructor(connection);
}

INVENTORYRETURNCODE xFirmwareInventory::GetXFWSoftwareIdentity(Identities& list) {
    return PlatformDouble::Current().GetXFWSoftwareIdentity(connection_, list);
}

}  // namespace Vantix

int PmemManger::GetSoftwareIdentity(const Vantix::VantixConnection::ConnectionInfo& connection,
                                    Identities& list) {
    return PlatformDouble::Current().PmemGetSoftwareIdentity(connection, list);
}

int PmemManger::GetSoftwareIdentity(Identities& list) {
    return PlatformDouble::Current().PmemGetSoftwareIdentity(list);
}
