// The whole firmware list of a server: its inventories, completed from its devices.
//
// What the families call; the parts it is made of can be used and tested alone.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/redfish/firmware_reader.h"
#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

struct Inventory {
    std::vector<VantixOptions::SoftwareIdentity_> identities;  ///< inventory first, then completed
    std::size_t completed = 0;        ///< how many of them, at the end, come from devices
    std::size_t without_version = 0;  ///< of the inventory's
    std::vector<ReadIssue> issues;    ///< members that could not be read
    std::vector<ReadIssue> not_installed;
};

/// `system_id` as in FindManagedSystem.
[[nodiscard]] Inventory ReadInventory(const ServerSnapshot& snapshot,
                                      const std::string& system_id = {});

}  // namespace Vantix::redfish
