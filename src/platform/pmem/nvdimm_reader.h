// Persistent-memory modules as the Linux kernel shows them.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pmem {

/// One identity a module of the nd bus (/sys/bus/nd/devices/nmemN), in natural order, field by
/// field as nvdimm_facts.h tells. Its SMBIOS record is found by the handle that nfit/phys_id is; of
/// CXL modules the kernel tells the firmware revision of the memory device, too.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ReadNvdimms(
    const transport::SystemRoot& root);

}  // namespace Vantix::pmem
