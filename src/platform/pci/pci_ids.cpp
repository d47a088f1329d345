#include "platform/pci/pci_ids.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>

#include "platform/pci/pci_address.h"
#include "transport/text/ascii_case.h"

namespace Vantix::pci {
namespace {

std::optional<std::uint32_t> AllHex(std::string_view text) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    return number;
}

// The numbers of a list of ids, each from the first id that tells it.
struct Numbers {
    std::optional<std::uint32_t> vendor, device, subsystem, class_code;

    // `field` in lower case: "ven_8086".
    void Take(std::string_view field) {
        Set(vendor, field, "ven_", 4);
        Set(device, field, "dev_", 4);
        Set(subsystem, field, "subsys_", 8);
        Set(class_code, field, "cc_", 6);
        std::optional<std::uint32_t> kind;  // without programming interface
        Set(kind, field, "cc_", 4);
        if (kind && !class_code) class_code = *kind << 8U;
    }

    static void Set(std::optional<std::uint32_t>& number, std::string_view field,
                    std::string_view name, std::size_t digits) {
        if (number || field.size() != name.size() + digits || !field.starts_with(name)) return;
        number = AllHex(field.substr(name.size()));
    }
};

}  // namespace

std::string DeviceIdText(const PciIds& ids) {
    return HexText(ids.vendor, 4) + HexText(ids.device, 4);
}

std::string SubsystemIdText(const PciIds& ids) {
    return HexText(ids.subsystem_vendor, 4) + HexText(ids.subsystem_device, 4);
}

std::string ClassCodeText(const PciIds& ids) {
    return ids.class_code == kNoClass ? std::string() : HexText(ids.class_code, 6);
}

std::optional<PciIds> ParsePciHardwareIds(const std::vector<std::string>& ids) {
    constexpr std::string_view kBus = "pci\\";
    Numbers numbers;
    for (const std::string& id : ids) {
        const std::string lower = transport::AsciiLowerText(id);
        if (!lower.starts_with(kBus)) continue;
        std::string_view rest = std::string_view(lower).substr(kBus.size());
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('&'), rest.size());
            numbers.Take(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    if (!numbers.vendor || !numbers.device || *numbers.vendor == kNoVendor) return std::nullopt;
    PciIds found;
    found.vendor = *numbers.vendor;
    found.device = *numbers.device;
    found.subsystem_vendor = numbers.subsystem.value_or(0) & 0xFFFFU;
    found.subsystem_device = numbers.subsystem.value_or(0) >> 16U;
    found.class_code = numbers.class_code.value_or(kNoClass);
    return found;
}

}  // namespace Vantix::pci
