#include "platform/pci/pci_device.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/log/log.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::pci {
namespace {

constexpr const char* kPciDeviceLog = "platform/pci";
constexpr const char* kDeviceFolder = "/sys/bus/pci/devices";
constexpr std::size_t kMostDigits = 8;

using transport::SystemRoot;

// "0x8086": the whole text, at most `most`.
std::optional<std::uint32_t> ReadId(const SystemRoot& root, const std::string& path,
                                    std::uint32_t most) {
    const std::string text = root.ReadText(path);
    std::string_view digits = text;
    if (digits.substr(0, 2) == "0x") digits.remove_prefix(2);
    std::uint32_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() > kMostDigits || error != std::errc() || stop != end || number > most)
        return std::nullopt;
    return number;
}

bool Has(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool SaysSlot(const std::string& label) {
    std::string lower = label;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char letter) { return static_cast<char>(letter | 0x20); });
    return lower.find("slot") != std::string::npos;
}

void ReadLabel(const SystemRoot& root, PciDevice& device) {
    constexpr std::size_t kLongestLabel = 80;
    if (Has(device.names, "label")) {
        device.label = transport::CleanStart(root.ReadText(device.path + "/label"), kLongestLabel);
    }
    // ACPI numbers devices in slots too; their label then says so.
    device.is_on_board =
        Has(device.names, "index") || (Has(device.names, "acpi_index") && !SaysSlot(device.label));
}

bool ReadIds(const SystemRoot& root, const std::string& path, PciIds& ids) {
    const auto vendor = ReadId(root, path + "/vendor", 0xFFFF);
    const auto device = ReadId(root, path + "/device", 0xFFFF);
    if (!vendor || !device || *vendor == kNoVendor) return false;
    ids.vendor = *vendor;
    ids.device = *device;
    ids.subsystem_vendor = ReadId(root, path + "/subsystem_vendor", 0xFFFF).value_or(0);
    ids.subsystem_device = ReadId(root, path + "/subsystem_device", 0xFFFF).value_or(0);
    ids.class_code = ReadId(root, path + "/class", 0xFFFFFF).value_or(kNoClass);
    return true;
}

}  // namespace

std::vector<PciAddress> ListPciAddresses(const SystemRoot& root) {
    std::vector<PciAddress> addresses;
    for (const std::string& name : root.List(kDeviceFolder)) {
        const std::optional<PciAddress> address = ParsePciAddress(name);
        if (address && address->Text() == name) addresses.push_back(*address);
    }
    std::sort(addresses.begin(), addresses.end());
    return addresses;
}

std::optional<PciDevice> ReadPciDevice(const SystemRoot& root, const PciAddress& address) {
    PciDevice device;
    device.address = address;
    device.path = root.Resolve(std::string(kDeviceFolder) + "/" + address.Text());
    if (!device.path.empty()) device.names = root.List(device.path);
    if (Has(device.names, "physfn")) return std::nullopt;
    if (device.path.empty() || !ReadIds(root, device.path, device.ids)) {
        Log(2, kPciDeviceLog, __LINE__).Stream()
            << "PCI device " << address.Text() << " does not tell its vendor and device id";
        return std::nullopt;
    }
    ReadLabel(root, device);
    return device;
}

}  // namespace Vantix::pci
