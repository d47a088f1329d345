// Inventories of installed firmware: over Redfish or CIM, and over IPMI.
#pragma once

#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"

namespace Vantix {
namespace Agentless {

/// The firmware inventory of one target, read over an established connection.
class AgentlessSoftwareIdentity {
  public:
    explicit AgentlessSoftwareIdentity(const VantixConnection::ConnectionInfo& connection);

    /// Appends every installed component. Returns 0, or the code of what kept the list from being
    /// complete; what could be read is appended all the same.
    int GetPLDMSoftwareIdentities(std::vector<VantixOptions::SoftwareIdentity_>& list);

    /// The same; with `all` also components that cannot be updated through the target.
    int GetSoftwareIdentities(std::vector<VantixOptions::SoftwareIdentity_>& list, bool all);

    /// The devices of the target as text, one a line; empty when none can be read.
    std::string GetInventoryList();

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Agentless

enum INVENTORYRETURNCODE : int { INVENTORY_SUCCESS = 0, INVENTORY_FAILED = 1 };

/// Firmware versions that a BMC tells over IPMI (Get Device ID, HPM.1 components, FRU).
class xFirmwareInventory {
  public:
    explicit xFirmwareInventory(const VantixConnection::ConnectionInfo& connection);
    INVENTORYRETURNCODE GetXFWSoftwareIdentity(std::vector<VantixOptions::SoftwareIdentity_>& list);

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Vantix
