// Persistent-memory modules as the Linux kernel shows them.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pmem {

/// One identity a module of the nd bus (/sys/bus/nd/devices/nmemN), in natural order, field by
/// field as a module in a BMC's inventory:
/// - VersionString: the firmware revision that the machine's firmware put into SMBIOS (DSP0134,
///   Memory Device), found by the handle that the module's nfit/phys_id is; of CXL modules what the
///   kernel tells of the memory device. Else empty: nfit/rev_id is the revision of the hardware.
/// - PartNumber, Manufacturer and the slot: from SMBIOS, else empty; the slot type is always that
///   of memory. SerialNumber: from SMBIOS, else what the kernel tells.
/// - SoftwareID: the part number, else vendor and device id ("8980-097b"), else the kernel's name.
/// - Name, ElementName: the part number, else the kernel's name. InstanceID: the kernel's name.
/// - Description "Persistent memory module", Classifications "10", IsPLDMUpdateSupported "0".
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ReadNvdimms(
    const transport::SystemRoot& root);

}  // namespace Vantix::pmem
