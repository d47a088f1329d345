// The structures of an SMBIOS table (DMTF DSP0134, "Structure standards"): what a machine's
// firmware says of it.
//
// Pure, over raw bytes. Any bytes may come in: a damaged structure ends the reading, what stood
// before it is kept. Knows nothing of what the fields of a type mean.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

struct SmbiosStructure {
    std::uint8_t type = 0;
    std::uint16_t handle = 0;
    std::string formatted;             ///< raw bytes with the four of the header
    std::vector<std::string> strings;  ///< raw bytes

    // Fields are named by their offset in the formatted area, the header included, as the standard
    // lists them. Numbers are little-endian; a field behind the end is absent.
    [[nodiscard]] std::optional<std::uint8_t> Byte(std::size_t offset) const;
    [[nodiscard]] std::optional<std::uint16_t> Word(std::size_t offset) const;
    /// The clean text whose number stands at `offset`; empty when there is none.
    [[nodiscard]] std::string Text(std::size_t offset) const;
    /// Raw bytes of the formatted area, fewer than `length` at its end.
    [[nodiscard]] std::string_view Slice(std::size_t offset, std::size_t length) const;
};

using SmbiosStructures = std::vector<SmbiosStructure>;

/// As many as there are handles.
inline constexpr std::size_t kMostSmbiosStructures = 65536;

/// Reads up to the end-of-table structure (type 127, not returned), the first damaged one, the end
/// of `table`, or `most` structures. Also reads a single structure with its strings.
[[nodiscard]] SmbiosStructures ReadSmbiosTable(std::string_view table,
                                               std::size_t most = kMostSmbiosStructures);

}  // namespace Vantix::transport
