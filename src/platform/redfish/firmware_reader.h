// From the inventories of an update service to the records of what is installed.
//
// Reads UpdateService.FirmwareInventory and, for what is not there, SoftwareInventory (DSP8010,
// SoftwareInventory). Nothing a member lacks is made up: a text that is not told stays empty. A bad
// member costs only itself. Deliberately not here: devices without entry (completion_reader.h).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/redfish/device_index.h"
#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// A member that gave no record, and why.
struct ReadIssue {
    std::string path;
    std::string cause;
};

struct FirmwareEntry {
    VantixOptions::SoftwareIdentity_ identity;
    std::vector<std::string> related_paths;  ///< as LinkPath
    std::vector<const Device*> devices;      ///< what they lead to; into the index
};

struct FirmwareReading {
    std::vector<FirmwareEntry> entries;  ///< in the order of the inventory
    std::vector<ReadIssue> issues;       ///< members that are errors or no objects
    /// Members left out because they are not installed: former, available, absent, or the same
    /// installation listed twice.
    std::vector<ReadIssue> not_installed;
    std::size_t without_version = 0;  ///< entries whose version is empty or "N/A" and the like
};

/// How the fields come about:
/// - SoftwareID: SoftwareId; where that is missing, empty or "0" (which services give to several
///   unrelated components), the member's Id. A backup image whose SoftwareID is also that of
///   another installed image gets "-Backup" behind it.
/// - InstanceID: Id, else the last segment of the member's path.
/// - Name, ElementName, Description, VersionString, ReleaseDate: as reported.
/// - Manufacturer: as reported, else that of the related device.
/// - SerialNumber, PartNumber, slot: of the first related device that tells them; a slot also from
///   the entry's own device context.
/// - Classifications: see classification.h. Caption: the inventory it comes from.
/// - IdentityInfoType "RelatedItem" and IdentityInfoValue: the related paths, blank-separated.
/// - SoftwareStatus: Status.State. SoftwareRole: "Active" or "Backup" where it is known.
/// - IsPLDMUpdateSupported: Updateable as "1" or "0".
[[nodiscard]] FirmwareReading ReadFirmware(const ServerSnapshot& snapshot,
                                           const DeviceIndex& index);

}  // namespace Vantix::redfish
