#include "platform/pci/pci_address.h"

#include <charconv>
#include <cstddef>

namespace Vantix::pci {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The whole of `text` as a hexadecimal number of at most `digits` digits.
bool ReadHex(std::string_view text, std::size_t digits, std::uint32_t most, std::uint32_t& number) {
    if (text.empty() || text.size() > digits) return false;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    return error == std::errc() && stop == end && number <= most;
}

// Cuts what stands behind the last of `marks`; nothing when there is none.
std::optional<std::string_view> TakeLast(std::string_view& text, std::string_view marks) {
    const std::size_t mark = text.find_last_of(marks);
    if (mark == std::string_view::npos) return std::nullopt;
    const std::string_view part = text.substr(mark + 1);
    text = text.substr(0, mark);
    return part;
}

}  // namespace

std::string HexText(std::uint32_t number, std::size_t digits) {
    char letters[8] = {};
    const char* end = std::to_chars(letters, letters + sizeof(letters), number, 16).ptr;
    std::string text(letters, static_cast<std::size_t>(end - letters));
    if (text.size() < digits) text.insert(0, digits - text.size(), '0');
    return text;
}

std::string PciAddress::BusText() const {
    return HexText(domain, 4) + ":" + HexText(bus, 2);
}

std::string PciAddress::DeviceText() const {
    return BusText() + ":" + HexText(device, 2);
}

std::string PciAddress::Text() const {
    return DeviceText() + "." + HexText(function, 1);
}

std::optional<PciAddress> ParsePciAddress(std::string_view text) {
    text = Trimmed(text);
    const bool has_point = text.find('.') != std::string_view::npos;
    PciAddress address;
    const auto function = TakeLast(text, has_point ? "." : ":");
    const auto device = TakeLast(text, ":");
    if (!function || !device || !ReadHex(*function, 1, 7, address.function) ||
        !ReadHex(*device, 2, 0x1F, address.device)) {
        return std::nullopt;
    }
    const auto bus = TakeLast(text, ":");
    if (!bus && !has_point) return std::nullopt;  // three numbers: which one is missing?
    if (!ReadHex(bus ? *bus : text, 2, 0xFF, address.bus)) return std::nullopt;
    if (bus && !ReadHex(text, 8, 0xFFFFFFFF, address.domain)) return std::nullopt;
    return address;
}

}  // namespace Vantix::pci
