#include "platform/raid/raid_adapters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Vantix::raid {
namespace {

constexpr std::string_view kDevices = "/sys/bus/pci/devices";
constexpr std::string_view kServedVendor = "9005";  // Adaptec, now of Microchip
// PCI class codes: mass storage, with the subclasses RAID, SAS and "other".
constexpr std::string_view kRaidClass = "0104";
constexpr std::array<std::string_view, 3> kServedClasses = {kRaidClass, "0107", "0180"};

// "0x010400" -> "010400"
std::string Hexadecimal(const std::string& text) {
    return text.rfind("0x", 0) == 0 ? text.substr(2) : text;
}

bool ShowsEachDisk(const std::string& driver) {
    constexpr std::array<std::string_view, 5> kDrivers = {"ahci", "vmd", "ata_", "sata_", "pata_"};
    return std::any_of(kDrivers.begin(), kDrivers.end(),
                       [&](std::string_view start) { return driver.rfind(start, 0) == 0; });
}

bool IsWanted(const std::string& class_code, bool is_served) {
    const std::string_view kind = std::string_view(class_code).substr(0, kRaidClass.size());
    if (!is_served) return kind == kRaidClass;
    return std::find(kServedClasses.begin(), kServedClasses.end(), kind) != kServedClasses.end();
}

}  // namespace

RaidAdapters FindRaidAdapters(const transport::SystemRoot& root) {
    RaidAdapters adapters;
    const std::vector<std::string> addresses = root.List(kDevices);
    adapters.is_bus_listed = !addresses.empty();
    for (const std::string& address : addresses) {
        const std::string folder = std::string(kDevices) + "/" + address;
        const std::string class_code = Hexadecimal(root.ReadText(folder + "/class"));
        if (class_code.rfind("01", 0) != 0) continue;
        RaidAdapter adapter;
        adapter.address = address;
        const std::string vendor = Hexadecimal(root.ReadText(folder + "/vendor"));
        adapter.ids = vendor + ":" + Hexadecimal(root.ReadText(folder + "/device"));
        adapter.driver = root.LinkName(folder + "/driver");
        adapter.is_served = vendor == kServedVendor;
        adapter.hides_disks = class_code.rfind(kRaidClass, 0) == 0;
        const bool is_function = root.LinkName(folder + "/physfn").empty();
        if (is_function && IsWanted(class_code, adapter.is_served) &&
            !ShowsEachDisk(adapter.driver)) {
            adapters.list.push_back(adapter);
        }
    }
    return adapters;
}

}  // namespace Vantix::raid
