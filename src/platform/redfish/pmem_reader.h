// Firmware of the persistent-memory modules that a service reports.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// A present Memory member (DSP8010, Memory) is persistent when one of these says so: MemoryType
/// (IntelOptane, NVDIMM_N, _F, _P), MemoryDeviceType with "NVDIMM", MemoryMedia with Intel3DXPoint,
/// or OperatingMemoryModes with PMEM. VersionString is FirmwareRevision, empty when not told;
/// SoftwareID the part number, else the model, else Id; the slot is the socket label's number.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ReadPersistentMemory(
    const ServerSnapshot& snapshot);

}  // namespace Vantix::redfish
