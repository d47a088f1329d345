// Persistent-memory modules as the machine's firmware lists them for the operating system: the ACPI
// table NFIT (ACPI 6.4, 5.2.25). Pure: bytes in, records out.
#pragma once

#include <string_view>
#include <vector>

#include "platform/identities/software_identity.h"
#include "transport/smbios/smbios_table.h"

namespace Vantix::pmem {

/// One identity a module, in the order of their handles, field by field as nvdimm_facts.h tells;
/// named by its handle ("nvdimm1001"), which says where it sits. Ids and serial number come from
/// the module's control region, its SMBIOS record is found by the physical id. `table` is the whole
/// table with its header; what is damaged or cut in it ends the reading, and what stood before is
/// kept.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> ReadNfitModules(
    std::string_view table, const transport::SmbiosStructures& smbios);

}  // namespace Vantix::pmem
