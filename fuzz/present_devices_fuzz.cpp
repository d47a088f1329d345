// Any texts and numbers as the devices that a system lists: read without a crash, ids that come out
// have their digits, and nothing comes out that did not go in.
//
// One device a paragraph: instance id, bus and place as numbers, service, location path, and the
// hardware ids, one a line.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "platform/pci/present_pci_devices.h"
#include "platform/system_info/present_drivers.h"
#include "transport/sysroot/system_root.h"

namespace {

using Vantix::local::PresentDevice;

std::optional<std::uint32_t> NumberOf(const std::string& text) {
    char* end = nullptr;
    const unsigned long long number = std::strtoull(text.c_str(), &end, 16);
    if (end == text.c_str()) return std::nullopt;
    return static_cast<std::uint32_t>(number);
}

PresentDevice DeviceOf(const std::vector<std::string>& lines) {
    constexpr std::size_t kFirstId = 5;
    PresentDevice device;
    const auto line = [&](std::size_t at) { return at < lines.size() ? lines[at] : std::string(); };
    device.instance_id = line(0);
    device.bus = NumberOf(line(1));
    device.place = NumberOf(line(2));
    device.slot = device.place;
    device.service = line(3);
    device.location_paths = {line(4)};
    for (std::size_t i = kFirstId; i < lines.size(); ++i) device.hardware_ids.push_back(lines[i]);
    return device;
}

std::vector<PresentDevice> DevicesOf(const std::string& text) {
    std::vector<PresentDevice> devices;
    std::vector<std::string> lines;
    std::istringstream all(text);
    for (std::string line; std::getline(all, line);) {
        if (!line.empty()) {
            lines.push_back(line);
            continue;
        }
        devices.push_back(DeviceOf(lines));
        lines.clear();
    }
    devices.push_back(DeviceOf(lines));
    return devices;
}

void RequireIds(const std::string& ids) {
    const bool is_hexadecimal = ids.find_first_not_of("0123456789abcdef") == std::string::npos;
    if (ids.size() != 8 || !is_hexadecimal) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<PresentDevice> devices = DevicesOf(std::string(data, data + size));
    const Vantix::pci::PciSlots slots(Vantix::transport::SystemRoot("/no/such/folder"));
    const std::vector<PciInfo> records = Vantix::pci::PciRecordsOf(devices, slots);
    if (records.size() > devices.size()) std::abort();
    for (const PciInfo& record : records) {
        RequireIds(record.IdPart1);
        RequireIds(record.IdPart2);
        if (record.Label2.empty() || record.Label3.empty()) std::abort();
    }
    const auto found = Vantix::system_info::DriversOf(devices);
    std::size_t served = 0;
    for (const auto& driver : found.drivers) {
        if (driver.Identifier.empty() || driver.DevicePresent < 1) std::abort();
        served += static_cast<std::size_t>(driver.DevicePresent);
    }
    for (const auto& device : found.driverless) RequireIds(device.ids);
    if (served + found.driverless.size() > devices.size()) std::abort();
    return 0;
}
