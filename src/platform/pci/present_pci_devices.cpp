#include "platform/pci/present_pci_devices.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "platform/pci/firmware_attributes.h"
#include "platform/pci/pci_device.h"
#include "platform/pci/pci_ids.h"
#include "platform/pci/pci_names.h"
#include "transport/text/ascii_case.h"

namespace Vantix::pci {
namespace {

using local::PresentDevice;

struct PciFunction {
    const PresentDevice* told = nullptr;
    PciIds ids;
    std::optional<PciAddress> address;
};

// By its path of PCI places: "PCIROOT(0)#PCI(1C00)".
using FunctionPlaces = std::map<std::string, PciAddress>;

std::string LocationOf(const PresentDevice& device) {
    const auto path =
        std::find_if(device.location_paths.begin(), device.location_paths.end(),
                     [](const std::string& one) { return one.starts_with("PCIROOT("); });
    return path == device.location_paths.end() ? std::string() : *path;
}

std::vector<PciFunction> FunctionsAmong(const std::vector<PresentDevice>& devices) {
    std::vector<PciFunction> functions;
    for (const PresentDevice& device : devices) {
        const std::optional<PciIds> ids = PciIdsOf(device);
        if (ids) functions.push_back({&device, *ids, PciAddressOf(device)});
    }
    std::stable_sort(functions.begin(), functions.end(),
                     [](const PciFunction& left, const PciFunction& right) {
                         return left.address < right.address;
                     });
    return functions;
}

FunctionPlaces PlacesOf(const std::vector<PciFunction>& functions) {
    FunctionPlaces places;
    for (const PciFunction& function : functions) {
        const std::string location = LocationOf(*function.told);
        if (function.address && !location.empty()) places.emplace(location, *function.address);
    }
    return places;
}

// The addresses on the way to the function, joined by slashes.
std::string PathOf(const PciFunction& function, const FunctionPlaces& places) {
    std::string path;
    const std::string location = LocationOf(*function.told);
    std::size_t mark = location.find('#');
    while (mark != std::string::npos) {
        mark = location.find('#', mark + 1);
        if (mark == std::string::npos) break;
        const auto parent = places.find(location.substr(0, mark));
        if (parent != places.end()) path += parent->second.Text() + "/";
    }
    return function.address ? path + function.address->Text() : path;
}

std::string SlotOf(const PciFunction& function, const FunctionPlaces& places,
                   const PciSlots& slots) {
    PciDevice device;
    device.ids = function.ids;
    device.path = PathOf(function, places);
    return slots.SlotOf(device);
}

// "(Standard system devices)" and their like name no maker.
std::string MakerOf(const PresentDevice& device) {
    return device.manufacturer.starts_with('(') ? std::string() : device.manufacturer;
}

// "Fake(R) Adapter" of the maker "Fake Networks" begins with its first word.
bool NamesMaker(const std::string& name, const std::string& maker) {
    const std::string first_word = maker.substr(0, maker.find(' '));
    return transport::AsciiLowerText(name).starts_with(transport::AsciiLowerText(first_word));
}

std::string DescriptionOf(const PresentDevice& device) {
    const std::string maker = MakerOf(device);
    if (maker.empty() || NamesMaker(device.description, maker)) return device.description;
    return maker + " " + device.description;
}

PciInfo RecordOf(const PciFunction& function) {
    const PresentDevice& told = *function.told;
    const std::string place = function.address ? function.address->Text() : told.instance_id;
    PciInfo record;
    record.Label2 = MakerOf(told);
    if (record.Label2.empty()) record.Label2 = place;
    record.Label3 = PciNames(std::string_view(), {function.ids}).Class(function.ids);
    // Without driver the bus describes the device, by its class alone.
    if (local::HasDriver(told)) {
        record.ShortName = told.description;
        record.Description = told.description.empty() ? std::string() : DescriptionOf(told);
    } else if (!told.description.empty()) {
        record.Label3 = told.description;
    }
    if (record.Label3.empty()) record.Label3 = "PCI device";
    record.IdPart1 = DeviceIdText(function.ids);
    record.IdPart2 = SubsystemIdText(function.ids);
    if (!StandsForNoVersion(told.firmware_version)) record.Version = told.firmware_version;
    return record;
}

}  // namespace

std::optional<PciIds> PciIdsOf(const PresentDevice& device) {
    if (local::BusOf(device) != "pci") return std::nullopt;
    std::vector<std::string> texts = device.hardware_ids;
    texts.insert(texts.end(), device.compatible_ids.begin(), device.compatible_ids.end());
    return ParsePciHardwareIds(texts);
}

std::optional<PciAddress> PciAddressOf(const PresentDevice& device) {
    constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    if (!device.bus || !device.place || *device.bus == kUnknown) return std::nullopt;
    PciAddress address;
    address.domain = *device.bus >> 8U;
    address.bus = *device.bus & 0xFFU;
    address.device = *device.place >> 16U;
    address.function = *device.place & 0xFFFFU;
    if (address.device > 0x1F || address.function > 7) return std::nullopt;
    return address;
}

std::vector<PciInfo> PciRecordsOf(const std::vector<PresentDevice>& devices, PciSlots slots,
                                  const std::optional<PciAddress>& only) {
    const std::vector<PciFunction> functions = FunctionsAmong(devices);
    const FunctionPlaces places = PlacesOf(functions);
    for (const PciFunction& function : functions) {
        if (function.address && function.told->slot)
            slots.Set(*function.address, *function.told->slot);
    }
    std::vector<PciInfo> records;
    for (const PciFunction& function : functions) {
        if (only && function.address != only) continue;
        records.push_back(RecordOf(function));
        records.back().Slot = SlotOf(function, places, slots);
    }
    return records;
}

}  // namespace Vantix::pci
