#include "platform/system_info/present_drivers.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/log/log.h"
#include "platform/pci/pci_ids.h"
#include "platform/pci/present_pci_devices.h"

namespace Vantix::system_info {
namespace {

using local::PresentDevice;
using pci::PciIds;

constexpr const char* kPresentDriversLog = "drivers";

bool IsBookkeeping(const PresentDevice& device) {
    constexpr std::array<std::string_view, 6> kBuses = {"acpi_hal", "htree", "root",
                                                        "storage",  "sw",    "swd"};
    const std::string bus = local::BusOf(device);
    return device.class_name == "Processor" ||
           std::find(kBuses.begin(), kBuses.end(), bus) != kBuses.end();
}

// "Fake Adapter (Fake Networks, oem5.inf)": which package the driver came with.
std::string DescriptionOf(const PresentDevice& device) {
    const bool has_both = !device.driver_provider.empty() && !device.driver_package.empty();
    const std::string source =
        device.driver_provider + (has_both ? ", " : "") + device.driver_package;
    if (source.empty() || device.description.empty()) return device.description + source;
    return device.description + " (" + source + ")";
}

class DriverList {
  public:
    void Add(const PresentDevice& device) {
        const std::optional<PciIds> ids = pci::PciIdsOf(device);
        const bool is_adapter = ids && WantsDriver(pci::ClassCodeText(*ids));
        if (!local::HasDriver(device)) {
            if (is_adapter) AddDriverless(device, *ids);
            return;
        }
        if (device.service.empty()) return;
        Count(device.service + (is_adapter ? "_" + pci::DeviceIdText(*ids) : ""), device);
        if (device.problem.value_or(0) == 0) return;
        Log(2, kPresentDriversLog, __LINE__).Stream()
            << device.instance_id << " does not work, problem " << *device.problem << " ("
            << device.service << ")";
    }

    [[nodiscard]] PresentDrivers Take() { return std::move(found_); }

  private:
    void Count(const std::string& identifier, const PresentDevice& device) {
        auto record = std::find_if(
            found_.drivers.begin(), found_.drivers.end(), [&](const DriverData& known) {
                return known.Identifier == identifier && known.Version == device.driver_version;
            });
        if (record == found_.drivers.end()) {
            record = found_.drivers.insert(
                record, {identifier, DescriptionOf(device), device.driver_version, 0});
        }
        ++record->DevicePresent;
    }

    void AddDriverless(const PresentDevice& device, const PciIds& ids) {
        const auto address = pci::PciAddressOf(device);
        found_.driverless.push_back({address ? address->Text() : device.instance_id,
                                     pci::DeviceIdText(ids), pci::ClassCodeText(ids)});
    }

    PresentDrivers found_;
};

}  // namespace

PresentDrivers DriversOf(const std::vector<PresentDevice>& devices) {
    DriverList list;
    for (const PresentDevice& device : devices) {
        if (!IsBookkeeping(device)) list.Add(device);
    }
    return list.Take();
}

}  // namespace Vantix::system_info
