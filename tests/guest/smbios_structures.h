// Structures of the SMBIOS table (DSP0134) that QEMU cannot be told in words.
#pragma once

#include <cstdint>
#include <string>

namespace guest {

/// System Slots (type 9): a PCI Express slot in use, with its designation, its number and the
/// address of what is in it on bus 0.
inline std::string SlotStructure(std::uint16_t handle, const std::string& designation,
                                 std::uint16_t id, std::uint8_t device) {
    const auto low = [](std::uint16_t word) { return static_cast<char>(word & 0xFF); };
    const auto high = [](std::uint16_t word) { return static_cast<char>(word >> 8); };
    constexpr char kPciExpressX8 = '\xAF';  // "PCI Express Gen 2 x8"
    std::string body = {9, 0x11, low(handle), high(handle)};
    body += {1, kPciExpressX8, 0x0B, 4, 3, low(id), high(id), 4, 1};
    body += {0, 0, 0, static_cast<char>(device << 3)};  // segment, bus, device and function
    return body + designation + std::string(2, '\0');
}

}  // namespace guest
