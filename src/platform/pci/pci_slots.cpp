#include "platform/pci/pci_slots.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/local/smbios_tables.h"
#include "transport/text/ascii_case.h"

namespace Vantix::pci {
namespace {

constexpr const char* kSlotFolder = "/sys/bus/pci/slots";
constexpr std::uint32_t kBridgeClass = 0x06;

bool IsNumbered(const std::string& slot) {
    return !slot.empty() && slot.substr(0, slot.find('-')) != "0";
}

// The kernel writes "0000:3b:00", and "0000:3b" for a slot that takes up a whole bus.
std::string KeyOf(const std::string& address) {
    const auto colons = std::count(address.begin(), address.end(), ':');
    const auto parsed = ParsePciAddress(address + (colons == 1 ? ":00.0" : ".0"));
    if (!parsed) return {};
    return colons == 1 ? parsed->BusText() : parsed->DeviceText();
}

// The devices on the way there, the nearest first.
std::vector<PciAddress> Ancestry(std::string_view path) {
    std::vector<PciAddress> ancestry;
    while (!path.empty()) {
        const std::size_t slash = path.rfind('/');
        const bool is_last = slash == std::string_view::npos;
        const auto address = ParsePciAddress(path.substr(is_last ? 0 : slash + 1));
        if (address) ancestry.push_back(*address);
        path = path.substr(0, is_last ? 0 : slash);
    }
    return ancestry;
}

constexpr bool IsCapital(char letter) {
    return letter >= 'A' && letter <= 'Z';
}

}  // namespace

std::string NumberOfSlot(const transport::SmbiosSlot& slot) {
    std::string lower;
    std::transform(slot.designation.begin(), slot.designation.end(), std::back_inserter(lower),
                   [](char letter) { return IsCapital(letter) ? letter | 0x20 : letter; });
    const std::size_t word = lower.rfind("slot");
    if (word != std::string::npos) {
        std::string_view text = std::string_view(lower).substr(word + 4);
        text.remove_prefix(std::min(text.find_first_not_of(" #-_:0"), text.size()));
        const auto end = std::find_if_not(text.begin(), text.end(), transport::IsAsciiDigit);
        if (end != text.begin()) return {text.begin(), end};
    }
    return slot.id && *slot.id != 0 ? std::to_string(*slot.id) : std::string();
}

PciSlots::PciSlots(const transport::SystemRoot& root) {
    for (const std::string& name : root.List(kSlotFolder)) {
        const std::string address =
            root.ReadText(std::string(kSlotFolder) + "/" + name + "/address");
        const std::string key = KeyOf(address);
        if (!key.empty()) slots_.emplace(key, IsNumbered(name) ? name : std::string());
    }
    for (const auto& slot : transport::ReadSmbiosSlots(local::ReadSmbios(root))) {
        AddIfUnknown(slot);
    }
}

void PciSlots::AddIfUnknown(const transport::SmbiosSlot& slot) {
    const auto address =
        slot.address ? ParsePciAddress(transport::PciAddressText(*slot.address)) : std::nullopt;
    const std::string number = NumberOfSlot(slot);
    // Firmware that does not know the address leaves zeros there, or ones.
    if (!address || *address == PciAddress() || address->bus == 0xFF || number.empty()) return;
    std::string& known = slots_[address->DeviceText()];
    if (known.empty()) known = number;
}

void PciSlots::Set(const PciAddress& address, std::uint32_t number) {
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    if (number != 0 && number != kNone) slots_[address.DeviceText()] = std::to_string(number);
}

const std::string* PciSlots::Find(const PciAddress& address) const {
    for (const std::string& key : {address.DeviceText(), address.BusText()}) {
        const auto slot = slots_.find(key);
        if (slot != slots_.end()) return &slot->second;
    }
    return nullptr;
}

std::string PciSlots::SlotOf(const PciDevice& device) const {
    if (device.is_on_board) return {};
    // SMBIOS tables name a slot by the port above it too: that one sits on the board.
    const bool is_bridge = device.ids.class_code >> 16U == kBridgeClass;
    if (is_bridge && Ancestry(device.path).size() == 1) return {};
    return SlotAt(device.path);
}

std::string PciSlots::SlotAt(std::string_view device_path) const {
    for (const PciAddress& address : Ancestry(device_path)) {
        if (const std::string* slot = Find(address)) return *slot;
    }
    return {};
}

}  // namespace Vantix::pci
