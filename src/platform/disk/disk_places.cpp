#include "platform/disk/disk_places.h"

#include <algorithm>
#include <cstddef>

#include "platform/disk/disk_facts.h"

namespace Vantix::disk {
namespace {

using redfish::Slot;

constexpr const char* kEnclosures = "/sys/class/enclosure/";

bool IsNumber(std::string_view text) {
    constexpr std::size_t kLongest = 5;
    return !text.empty() && text.size() <= kLongest &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

Slot Bay(const std::string& number) {
    if (!IsNumber(number)) return {};
    return {number, redfish::kSlotDriveBay};
}

}  // namespace

std::string BayOfPathInfo(std::string_view text) {
    constexpr std::string_view kKey = "BAY:";
    const std::size_t key = text.find(kKey);
    if (key == std::string_view::npos) return {};
    std::string_view rest = text.substr(key + kKey.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view digits = rest.substr(0, rest.find_first_not_of("0123456789"));
    return IsNumber(digits) ? std::string(digits) : std::string();
}

DiskPlaces::DiskPlaces(const transport::SystemRoot& root) : root_(root), pci_slots_(root) {
    ReadEnclosures();
}

void DiskPlaces::ReadEnclosures() {
    for (const std::string& name : root_.List(kEnclosures)) ReadEnclosure(kEnclosures + name + "/");
}

void DiskPlaces::ReadEnclosure(const std::string& enclosure) {
    for (const std::string& component : root_.List(enclosure)) {
        const std::string link = enclosure + component + "/device";
        const std::string device = root_.Resolve(link);
        const std::string address =
            device.empty() ? root_.LinkName(link) : device.substr(device.rfind('/') + 1);
        // The enclosure's own device link has no component; it is no disk and harms nothing.
        if (address.empty()) continue;
        Slot bay = Bay(Attribute(root_, enclosure + component + "/slot"));
        if (!bay.IsKnown()) bay = redfish::SlotOfLabel(component, redfish::DeviceKind::kDrive);
        if (bay.IsKnown()) bays_.emplace(address, bay);
    }
}

Slot DiskPlaces::OfScsi(const std::string& address, const std::string& folder,
                        std::string_view device_path) const {
    if (const auto bay = bays_.find(address); bay != bays_.end()) return bay->second;
    const Slot told = Bay(BayOfPathInfo(Attribute(root_, folder + "/path_info")));
    return told.IsKnown() ? told : SasBay(device_path);
}

Slot DiskPlaces::SasBay(std::string_view device_path) const {
    const std::size_t start = device_path.find("/end_device-");
    if (start == std::string_view::npos) return {};
    const std::string_view rest = device_path.substr(start + 1);
    const std::string device(rest.substr(0, rest.find('/')));
    return Bay(Attribute(root_, "/sys/class/sas_device/" + device + "/bay_identifier"));
}

Slot DiskPlaces::OfPci(std::string_view device_path) const {
    const std::string number = pci_slots_.SlotAt(device_path);
    return number.empty() ? Slot() : Slot{number, redfish::kSlotPcie};
}

}  // namespace Vantix::disk
