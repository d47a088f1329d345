// The SMBIOS structures (DMTF DSP0134, chapter 7) about firmware, system, board and slots.
//
// Pure. Texts are clean and as the firmware gives them: placeholders are the caller's concern.
// Older firmware writes shorter structures; what they lack is absent or empty.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "transport/smbios/smbios_table.h"

namespace Vantix::transport {

inline constexpr std::uint8_t kSmbiosBios = 0;
inline constexpr std::uint8_t kSmbiosSystem = 1;
inline constexpr std::uint8_t kSmbiosBaseboard = 2;
inline constexpr std::uint8_t kSmbiosSlot = 9;
inline constexpr std::uint8_t kSmbiosMemoryDevice = 17;
inline constexpr std::uint8_t kSmbiosHostInterface = 42;

struct SmbiosBios {
    std::string vendor;
    std::string version;
    std::string release_date;
};

struct SmbiosSystem {
    std::string manufacturer;
    std::string product_name;
    std::string version;
    std::string serial_number;
    std::string sku_number;
    std::string family;
};

struct SmbiosBaseboard {
    std::string manufacturer;
    std::string product;
    std::string version;
    std::string serial_number;
};

/// Where a device is on PCI: "0000:3b:00.0".
struct PciAddress {
    std::uint16_t segment = 0;
    std::uint8_t bus = 0;
    std::uint8_t device = 0;
    std::uint8_t function = 0;
};

struct SmbiosSlot {
    std::string designation;  ///< what is printed beside the slot ("PCIe Slot 3")
    std::uint8_t slot_type = 0;
    std::uint8_t usage = 0;             ///< 3 available, 4 in use, 5 unavailable
    std::optional<std::uint16_t> id;    ///< for PCI slots their number
    std::optional<PciAddress> address;  ///< as told, also the meaningless 0000:00:00.0
};

struct SmbiosMemoryDevice {
    std::uint16_t handle = 0;  ///< how other tables of the firmware name the module
    std::string locator;       ///< what is printed beside the socket ("DIMM 4")
    std::string manufacturer;
    std::string serial_number;
    std::string part_number;
    std::string firmware_version;  ///< modules with firmware of their own only
};

// The first structure of its type decides; empty when there is none.
[[nodiscard]] SmbiosBios ReadSmbiosBios(const SmbiosStructures& structures);
[[nodiscard]] SmbiosSystem ReadSmbiosSystem(const SmbiosStructures& structures);
[[nodiscard]] SmbiosBaseboard ReadSmbiosBaseboard(const SmbiosStructures& structures);

/// All slots in the order of the table.
[[nodiscard]] std::vector<SmbiosSlot> ReadSmbiosSlots(const SmbiosStructures& structures);

/// All memory sockets in the order of the table, empty ones too.
[[nodiscard]] std::vector<SmbiosMemoryDevice> ReadSmbiosMemoryDevices(
    const SmbiosStructures& structures);

/// "0000:3b:00.0", as the kernel writes it.
[[nodiscard]] std::string PciAddressText(const PciAddress& address);

}  // namespace Vantix::transport
