#include "transport/smbios/smbios_records.h"

#include <algorithm>
#include <string_view>

namespace Vantix::transport {
namespace {

const SmbiosStructure& First(const SmbiosStructures& structures, std::uint8_t type) {
    static const SmbiosStructure kNone;
    const auto found =
        std::find_if(structures.begin(), structures.end(),
                     [type](const SmbiosStructure& structure) { return structure.type == type; });
    return found == structures.end() ? kNone : *found;
}

std::optional<PciAddress> AddressOf(const SmbiosStructure& slot) {
    const auto segment = slot.Word(0x0d);
    const auto bus = slot.Byte(0x0f);
    const auto place = slot.Byte(0x10);
    const bool is_told = segment && bus && place && *segment != 0xffff;
    if (!is_told || (*bus == 0xff && *place == 0xff)) return std::nullopt;
    return PciAddress{*segment, *bus, static_cast<std::uint8_t>(*place >> 3U),
                      static_cast<std::uint8_t>(*place & 7U)};
}

std::string Hex(unsigned number, int digits) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += kDigits[number >> static_cast<unsigned>(shift) & 15U];
    }
    return text;
}

}  // namespace

SmbiosBios ReadSmbiosBios(const SmbiosStructures& structures) {
    const SmbiosStructure& bios = First(structures, kSmbiosBios);
    return {bios.Text(0x04), bios.Text(0x05), bios.Text(0x08)};
}

SmbiosSystem ReadSmbiosSystem(const SmbiosStructures& structures) {
    const SmbiosStructure& system = First(structures, kSmbiosSystem);
    return {system.Text(0x04), system.Text(0x05), system.Text(0x06),
            system.Text(0x07), system.Text(0x19), system.Text(0x1a)};
}

SmbiosBaseboard ReadSmbiosBaseboard(const SmbiosStructures& structures) {
    const SmbiosStructure& board = First(structures, kSmbiosBaseboard);
    return {board.Text(0x04), board.Text(0x05), board.Text(0x06), board.Text(0x07)};
}

std::vector<SmbiosSlot> ReadSmbiosSlots(const SmbiosStructures& structures) {
    std::vector<SmbiosSlot> slots;
    for (const SmbiosStructure& structure : structures) {
        if (structure.type != kSmbiosSlot) continue;
        slots.push_back({structure.Text(0x04), structure.Byte(0x05).value_or(0),
                         structure.Byte(0x07).value_or(0), structure.Word(0x09),
                         AddressOf(structure)});
    }
    return slots;
}

std::vector<SmbiosMemoryDevice> ReadSmbiosMemoryDevices(const SmbiosStructures& structures) {
    std::vector<SmbiosMemoryDevice> devices;
    for (const SmbiosStructure& structure : structures) {
        if (structure.type != kSmbiosMemoryDevice) continue;
        devices.push_back({structure.handle, structure.Text(0x10), structure.Text(0x17),
                           structure.Text(0x18), structure.Text(0x1a), structure.Text(0x2b)});
    }
    return devices;
}

std::string PciAddressText(const PciAddress& address) {
    return Hex(address.segment, 4) + ":" + Hex(address.bus, 2) + ":" + Hex(address.device, 2) +
           "." + Hex(address.function, 1);
}

}  // namespace Vantix::transport
