// The SMBIOS facts of the local host, as far as the kernel and this user's rights let them be read.
#pragma once

#include "transport/smbios/smbios_table.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::local {

/// The structures about firmware, system, board, slots, memory and host interfaces, in the order of
/// the table: out of the whole table, or where the kernel shows none out of the single entries.
/// Empty when there is no SMBIOS or only root may read it (then noted in `root`).
[[nodiscard]] transport::SmbiosStructures ReadSmbios(const transport::SystemRoot& root);

/// True when the kernel shows this machine to have SMBIOS, readable or not.
[[nodiscard]] bool HasSmbios(const transport::SystemRoot& root);

}  // namespace Vantix::local
