#include "platform/local/firmware_table.h"

#include <windows.h>

namespace Vantix::local {

// GetSystemFirmwareTable gives the table behind eight bytes of its own: how it was got, the
// version, and the table's length.
std::optional<std::string> RunningFirmwareTable() {
    constexpr DWORD kRawSmbios = 0x52534D42;  // 'RSMB'
    constexpr std::size_t kHeader = 8;
    const UINT size = GetSystemFirmwareTable(kRawSmbios, 0, nullptr, 0);
    if (size <= kHeader) return std::nullopt;
    std::string bytes(size, '\0');
    const UINT got = GetSystemFirmwareTable(kRawSmbios, 0, bytes.data(), size);
    if (got <= kHeader || got > size) return std::nullopt;
    return bytes.substr(kHeader, got - kHeader);
}

}  // namespace Vantix::local
