#include "platform/raid/raid_adapters.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/local/local_host.h"
#include "platform/pci/pci_ids.h"
#include "platform/pci/present_pci_devices.h"
#include "transport/text/ascii_case.h"

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
    // The last one is Windows'.
    constexpr std::array<std::string_view, 6> kDrivers = {"ahci",  "vmd",   "ata_",
                                                          "sata_", "pata_", "storahci"};
    const std::string lower = transport::AsciiLowerText(driver);
    return std::any_of(kDrivers.begin(), kDrivers.end(),
                       [&](std::string_view start) { return lower.rfind(start, 0) == 0; });
}

bool IsWanted(const std::string& class_code, bool is_served) {
    const std::string_view kind = std::string_view(class_code).substr(0, kRaidClass.size());
    if (!is_served) return kind == kRaidClass;
    return std::find(kServedClasses.begin(), kServedClasses.end(), kind) != kServedClasses.end();
}

struct PciFunction {
    std::string address;
    std::string class_code;  // 6 hexadecimal digits, as all numbers here
    std::string vendor;
    std::string device;
    std::string driver;
};

void AddIfWanted(const PciFunction& function, std::vector<RaidAdapter>& list) {
    RaidAdapter adapter;
    adapter.address = function.address;
    adapter.ids = function.vendor + ":" + function.device;
    adapter.driver = function.driver;
    adapter.is_served = function.vendor == kServedVendor;
    adapter.hides_disks = function.class_code.rfind(kRaidClass, 0) == 0;
    if (IsWanted(function.class_code, adapter.is_served) && !ShowsEachDisk(adapter.driver)) {
        list.push_back(std::move(adapter));
    }
}

}  // namespace

RaidAdapters FindRaidAdapters(const transport::SystemRoot& root) {
    if (root.IsThisMachine()) {
        const auto devices = local::HostDevices();
        if (devices) return RaidAdaptersAmong(*devices);
    }
    RaidAdapters adapters;
    const std::vector<std::string> addresses = root.List(kDevices);
    adapters.is_bus_listed = !addresses.empty();
    for (const std::string& address : addresses) {
        const std::string folder = std::string(kDevices) + "/" + address;
        PciFunction function;
        function.address = address;
        function.class_code = Hexadecimal(root.ReadText(folder + "/class"));
        if (function.class_code.rfind("01", 0) != 0) continue;
        function.vendor = Hexadecimal(root.ReadText(folder + "/vendor"));
        function.device = Hexadecimal(root.ReadText(folder + "/device"));
        function.driver = root.LinkName(folder + "/driver");
        if (root.LinkName(folder + "/physfn").empty()) AddIfWanted(function, adapters.list);
    }
    return adapters;
}

RaidAdapters RaidAdaptersAmong(const std::vector<local::PresentDevice>& devices) {
    RaidAdapters adapters;
    for (const local::PresentDevice& device : devices) {
        const auto ids = pci::PciIdsOf(device);
        if (!ids) continue;
        adapters.is_bus_listed = true;
        const auto address = pci::PciAddressOf(device);
        const std::string numbers = pci::DeviceIdText(*ids);
        PciFunction function;
        function.address = address ? address->Text() : device.instance_id;
        function.class_code = pci::ClassCodeText(*ids);
        function.vendor = numbers.substr(0, numbers.size() / 2);
        function.device = numbers.substr(numbers.size() / 2);
        if (local::HasDriver(device)) function.driver = device.service;
        AddIfWanted(function, adapters.list);
    }
    return adapters;
}

}  // namespace Vantix::raid
