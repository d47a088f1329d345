// Makes the firmware list of a target of its CIM_SoftwareIdentity instances.
//
// Pure. Which instances are installed, first evidence wins; letter case is ignored:
//
//   evidence                                                          instance is
//   InstanceID, Status or SoftwareStatus says previous, available,    not installed
//   staged, pending, next or rollback in a word of its own
//   CIM_InstalledSoftwareIdentity entries exist                       installed if one names it
//   CIM_ElementSoftwareIdentity entries exist                         installed if one names it
//                                                                     without a status or as
//                                                                     Current (2)
//   neither exists                                                    installed
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/cim/cim_snapshot.h"
#include "platform/identities/software_identity.h"

namespace Vantix::cim {

struct CimInventory {
    /// In the order of the service; an instance that is listed twice comes once.
    std::vector<VantixOptions::SoftwareIdentity_> identities;
    std::vector<std::string> keys;           ///< KeyText() of each identity
    std::vector<std::string> not_installed;  ///< InstanceID and reason of what was left out
    int without_version = 0;
};

[[nodiscard]] CimInventory ReadSoftware(const CimSnapshot& snapshot);

/// One record. VersionString, else the numbers of version, joined by dots; the first
/// classification; SoftwareID, else the identity information of that type, else the first one.
[[nodiscard]] VantixOptions::SoftwareIdentity_ ReadSoftwareIdentity(const CimInstance& instance);

/// KeyText() of an instance; of its InstanceID where the service did not name it.
[[nodiscard]] std::string KeyOf(const CimInstance& instance);

/// "20240131000000.000000+000" (DSP0004, datetime) as "2024-01-31"; any other text as it is.
[[nodiscard]] std::string DateOf(std::string_view text);

}  // namespace Vantix::cim
