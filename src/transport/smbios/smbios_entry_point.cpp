#include "transport/smbios/smbios_entry_point.h"

#include <cstdint>
#include <numeric>

namespace Vantix::transport {
namespace {

// Places in the two forms of the entry point.
constexpr std::size_t kLength32 = 0x1f;
constexpr std::size_t kTableLength32At = 0x16;
constexpr std::size_t kStructures32At = 0x1c;
constexpr std::size_t kLength64 = 0x18;
constexpr std::size_t kTableLength64At = 0x0c;

std::size_t Number(std::string_view bytes, std::size_t at, std::size_t width) {
    std::size_t number = 0;
    for (std::size_t i = width; i > 0; --i) {
        number = number << 8U | static_cast<std::uint8_t>(bytes[at + i - 1]);
    }
    return number;
}

bool SumsToZero(std::string_view bytes) {
    const auto add = [](unsigned sum, char byte) { return sum + static_cast<std::uint8_t>(byte); };
    return std::accumulate(bytes.begin(), bytes.end(), 0U, add) % 256 == 0;
}

// `length_at` tells how many bytes the checksum covers. Some firmware tells one less than there are
// in the older form; the checksum then covers what is told.
bool IsSound(std::string_view bytes, std::size_t length_at, std::size_t least) {
    if (bytes.size() < least) return false;
    const std::size_t told = Number(bytes, length_at, 1);
    return told >= least - 1 && told <= bytes.size() && SumsToZero(bytes.substr(0, told));
}

}  // namespace

std::optional<SmbiosEntryPoint> ReadSmbiosEntryPoint(std::string_view bytes) {
    SmbiosEntryPoint entry;
    if (bytes.substr(0, 5) == "_SM3_" && IsSound(bytes, 6, kLength64)) {
        entry.major_version = static_cast<int>(Number(bytes, 7, 1));
        entry.minor_version = static_cast<int>(Number(bytes, 8, 1));
        entry.table_bytes = Number(bytes, kTableLength64At, 4);
        return entry;
    }
    if (bytes.substr(0, 4) == "_SM_" && IsSound(bytes, 5, kLength32)) {
        entry.major_version = static_cast<int>(Number(bytes, 6, 1));
        entry.minor_version = static_cast<int>(Number(bytes, 7, 1));
        entry.table_bytes = Number(bytes, kTableLength32At, 2);
        entry.structures = Number(bytes, kStructures32At, 2);
        return entry;
    }
    return std::nullopt;
}

SmbiosStructures ReadSmbiosTable(std::string_view table, std::string_view entry_point) {
    const SmbiosEntryPoint entry = ReadSmbiosEntryPoint(entry_point).value_or(SmbiosEntryPoint());
    if (entry.table_bytes > 0) table = table.substr(0, entry.table_bytes);
    return ReadSmbiosTable(table, entry.structures);
}

}  // namespace Vantix::transport
