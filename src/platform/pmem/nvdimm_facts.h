// What is known of one persistent-memory module, and the record made of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/identities/software_identity.h"
#include "transport/smbios/smbios_records.h"

namespace Vantix::pmem {

/// Unknown texts are empty.
struct NvdimmFacts {
    std::string name;            ///< the system's: "nmem0"
    std::string vendor, device;  ///< ids, hexadecimal digits: "8980", "097b"
    std::string serial;          ///< as the system tells it
    std::string firmware;        ///< the same; most systems do not
    std::string hardware_revision;
    transport::SmbiosMemoryDevice record;  ///< what the machine's firmware says of the module
};

/// Field by field as a module in a BMC's inventory:
/// - VersionString: the firmware revision that the machine's firmware put into SMBIOS (DSP0134,
///   Memory Device), else what the system tells. Else empty: the revision of the hardware is none.
/// - PartNumber, Manufacturer and the slot: from SMBIOS, else empty; the slot type is always that
///   of memory. SerialNumber: from SMBIOS, else what the system tells.
/// - SoftwareID: the part number, else vendor and device id ("8980-097b"), else the system's name.
/// - Name, ElementName: the part number, else the system's name. InstanceID: the system's name.
/// - Description "Persistent memory module", Classifications "10", IsPLDMUpdateSupported "0".
[[nodiscard]] VantixOptions::SoftwareIdentity_ MakeIdentity(const NvdimmFacts& facts);

/// An empty record where there is none with the handle.
[[nodiscard]] transport::SmbiosMemoryDevice RecordWithHandle(
    const std::vector<transport::SmbiosMemoryDevice>& records, std::uint16_t handle);

}  // namespace Vantix::pmem
