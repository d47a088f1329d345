// Where a PCI function is: domain, bus, device, function.
//
// Pure; texts in the kernel's form and in the forms that tools print.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Vantix::pci {

/// Lower-case hexadecimal digits, with zeros in front up to `digits`.
[[nodiscard]] std::string HexText(std::uint32_t number, std::size_t digits);

struct PciAddress {
    std::uint32_t domain = 0;    ///< more than 16 bits behind host bridges that the kernel makes up
    std::uint32_t bus = 0;       ///< 0 to ff
    std::uint32_t device = 0;    ///< 0 to 1f
    std::uint32_t function = 0;  ///< 0 to 7

    auto operator<=>(const PciAddress& other) const = default;

    /// As the kernel names it: "0000:3b:00.0".
    [[nodiscard]] std::string Text() const;
    /// Without function: "0000:3b:00".
    [[nodiscard]] std::string DeviceText() const;
    /// Domain and bus: "0000:3b".
    [[nodiscard]] std::string BusText() const;
};

/// "0000:3b:00.0", "3B:00.0" (domain 0) or "0:3b:0:0"; letter case, leading zeros and blanks around
/// it do not matter. Nothing for any other text.
[[nodiscard]] std::optional<PciAddress> ParsePciAddress(std::string_view text);

}  // namespace Vantix::pci
