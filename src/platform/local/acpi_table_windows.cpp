#include "platform/local/acpi_table.h"

#include <windows.h>

namespace Vantix::local {

std::optional<std::string> RunningAcpiTable(std::string_view signature) {
    constexpr DWORD kAcpi = 0x41435049;  // 'ACPI'
    DWORD name = 0;
    // Unlike the provider's name, the table's stands in the order of its bytes in memory.
    for (std::size_t i = 0; i < sizeof(name) && i < signature.size(); ++i) {
        name |= static_cast<DWORD>(static_cast<unsigned char>(signature[i])) << (8 * i);
    }
    const UINT size = GetSystemFirmwareTable(kAcpi, name, nullptr, 0);
    if (size == 0) return std::nullopt;
    std::string bytes(size, '\0');
    const UINT got = GetSystemFirmwareTable(kAcpi, name, bytes.data(), size);
    if (got == 0 || got > size) return std::nullopt;
    bytes.resize(got);
    return bytes;
}

}  // namespace Vantix::local
