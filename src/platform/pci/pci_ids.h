// The numbers that tell what a PCI function is, and their texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vantix::pci {

/// No device has this class code.
inline constexpr std::uint32_t kNoClass = 0xFFFFFFFF;

/// The vendor that an empty place answers with (PCI Local Bus).
inline constexpr std::uint32_t kNoVendor = 0xFFFF;

struct PciIds {
    std::uint32_t vendor = 0;
    std::uint32_t device = 0;
    std::uint32_t subsystem_vendor = 0;  ///< 0: none told
    std::uint32_t subsystem_device = 0;
    std::uint32_t class_code = 0;  ///< base class, subclass, programming interface: 0x020000
};

/// Vendor and device, 4 + 4 lower-case hexadecimal digits: "80861572".
[[nodiscard]] std::string DeviceIdText(const PciIds& ids);

/// The same of the subsystem; zeros where none is told.
[[nodiscard]] std::string SubsystemIdText(const PciIds& ids);

/// 6 lower-case hexadecimal digits: "020000"; empty for kNoClass.
[[nodiscard]] std::string ClassCodeText(const PciIds& ids);

/// What Windows' ids of one device tell ("Identifiers for PCI Devices"):
/// "PCI\VEN_8086&DEV_1572&SUBSYS_00018086&REV_01" (the subsystem's device before its vendor) and,
/// in others of the list, "CC_0200" or "CC_020000". The first of each kind counts; a missing class
/// is kNoClass. Nothing when no id tells vendor and device.
[[nodiscard]] std::optional<PciIds> ParsePciHardwareIds(const std::vector<std::string>& ids);

}  // namespace Vantix::pci
