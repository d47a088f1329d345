// The SMBIOS entry point (DMTF DSP0134, "Table convention"): how long the table is.
//
// Pure. Both forms are read, the 32-bit ("_SM_") and the 64-bit one ("_SM3_").
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "transport/smbios/smbios_table.h"

namespace Vantix::transport {

struct SmbiosEntryPoint {
    int major_version = 0;
    int minor_version = 0;
    std::size_t table_bytes = 0;  ///< at most; 0: not told
    std::size_t structures = kMostSmbiosStructures;
};

/// Nothing for bytes with another beginning, too few of them, or a wrong checksum.
[[nodiscard]] std::optional<SmbiosEntryPoint> ReadSmbiosEntryPoint(std::string_view bytes);

/// The structures of `table`, within the limits that a usable `entry_point` tells.
[[nodiscard]] SmbiosStructures ReadSmbiosTable(std::string_view table,
                                               std::string_view entry_point);

}  // namespace Vantix::transport
