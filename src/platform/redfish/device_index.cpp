#include "platform/redfish/device_index.h"

#include <algorithm>
#include <utility>

#include "platform/redfish/managed_system.h"
#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using boost::json::object;

std::string KeyOf(std::string_view link) {
    const transport::LinkReference reference = transport::SplitLink(link);
    if (reference.pointer.empty()) return transport::FoldLink(reference.path);
    const std::size_t start = reference.pointer.front() == '/' ? 1 : 0;
    return transport::FoldLink(reference.path + "#" + reference.pointer.substr(start));
}

bool IsAbsent(const object& body) {
    return Lower(json::TextAt(body, {"Status", "State"})) == "absent";
}

/// Location and PhysicalLocation are objects, in older schemas Location is an array.
Slot OwnSlot(const object& body, DeviceKind kind) {
    for (const char* key : {"PhysicalLocation", "Location"}) {
        for (const object* location : json::Objects(body, key)) {
            const Slot slot = SlotOfLocation(*location, kind);
            if (slot.IsKnown()) return slot;
        }
    }
    if (const object* slot = json::Object(body, "Slot")) {
        const object* location = json::Object(*slot, "Location");
        return SlotOfLocation(location == nullptr ? object() : *location, kind,
                              json::Text(*slot, "SlotType"));
    }
    for (const char* key : {"Description", "Name"}) {
        const std::string text = json::Text(body, key);
        if (IsSlotLabel(text)) return SlotOfLabel(text, kind);
    }
    return {};
}

Device MakeDevice(const object& body, const std::string& path, DeviceKind kind) {
    Device device;
    device.kind = kind;
    device.path = path;
    device.id = FirstOf(
        {json::Text(body, "Id"), json::Text(body, "MemberId"), transport::LastSegment(path)});
    device.name = Known(json::Text(body, "Name"));
    device.model = Known(json::Text(body, "Model"));
    device.manufacturer = Known(json::Text(body, "Manufacturer"));
    device.serial_number = Known(json::Text(body, "SerialNumber"));
    device.part_number = Known(json::Text(body, "PartNumber"));
    device.firmware_version =
        FirstOf({json::Text(body, "FirmwareVersion"), json::Text(body, "Revision"),
                 json::Text(body, "FirmwareRevision")});
    device.slot = OwnSlot(body, kind);
    device.is_absent = IsAbsent(body);
    return device;
}

/// The PCIe device that holds the function, or the link itself.
std::string PcieDevicePath(const std::string& link) {
    const std::string path = transport::FoldLink(transport::LinkPath(link));
    return path.substr(0, path.find("/pciefunctions/"));
}

void AppendPcieLinks(const object& body, std::vector<std::string>& paths) {
    const object* links = json::Object(body, "Links");
    if (links == nullptr) return;
    for (const char* key : {"PCIeDevice", "PCIeDevices", "PCIeFunctions"}) {
        for (const std::string& link : json::Links(*links, key)) {
            paths.push_back(PcieDevicePath(link));
        }
    }
}

/// Controllers of a Storage resource: an array of them (older), or a collection that was expanded.
std::vector<const object*> ControllersOf(const object& storage) {
    std::vector<const object*> list = json::Objects(storage, "StorageControllers");
    const object* collection = json::Object(storage, "Controllers");
    const std::vector<const object*> newer = collection != nullptr
                                                 ? json::Objects(*collection, "Members")
                                                 : json::Objects(storage, "Controllers");
    // A body without anything but its link says nothing about the controller.
    if (std::any_of(newer.begin(), newer.end(),
                    [](const object* body) { return body->size() > 1; })) {
        return newer;
    }
    return list;
}

bool IsController(const Resource& resource) {
    return json::Text(resource.body, "@odata.type").rfind("#StorageController.", 0) == 0;
}

/// Folded path of the Storage resource that holds the controller.
std::string SubsystemOf(const std::string& controller_path) {
    const std::string folded = transport::FoldLink(controller_path);
    return folded.substr(0, folded.rfind("/controllers/"));
}

std::string ChassisOf(const std::string& path) {
    const std::string folded = transport::FoldLink(path);
    for (const char* part : {"/power#", "/powersubsystem/"}) {
        const std::size_t at = folded.find(part);
        if (at != std::string::npos) return folded.substr(0, at);
    }
    return {};
}

/// Bay number of a power supply that tells no location.
Slot PowerSupplySlot(const object& body, const Device& device) {
    if (device.slot.IsKnown()) return device.slot;
    if (const object* oem = json::Object(body, "Oem")) {
        for (const auto& maker : *oem) {
            const object* fields = maker.value().if_object();
            if (fields == nullptr) continue;
            const auto bay = json::Integer(*fields, "BayNumber");
            if (bay && *bay >= 0) return {std::to_string(*bay), kSlotPsu};
        }
    }
    for (const std::string& label : {json::Text(body, "Name"), device.id}) {
        const Slot slot = SlotOfLabel(label, DeviceKind::kPowerSupply);
        if (slot.IsKnown()) return slot;
    }
    return {};
}

bool IsInBay(DeviceKind kind) {
    return kind == DeviceKind::kDrive || kind == DeviceKind::kPowerSupply ||
           kind == DeviceKind::kMemory;
}

}  // namespace

DeviceIndex::DeviceIndex(const ServerSnapshot& snapshot) {
    ReadPcieSlots(snapshot);
    AddNetworkAdapters(snapshot);
    AddStorage(snapshot);
    AddPlain(snapshot.drives, DeviceKind::kDrive);
    AddPowerSupplies(snapshot);
    AddPlain(snapshot.pcie_devices, DeviceKind::kPcieDevice);
    AddPlain(snapshot.memory, DeviceKind::kMemory);
    InheritSlots();
}

void DeviceIndex::Add(Device device, const std::vector<std::string>& aliases) {
    const std::size_t place = devices_.size();
    const std::string key = KeyOf(device.path);
    if (!by_key_.emplace(key, place).second) return;
    for (const std::string& alias : aliases) by_key_.emplace(KeyOf(alias), place);
    devices_.push_back(std::move(device));
}

void DeviceIndex::ReadPcieSlots(const ServerSnapshot& snapshot) {
    for (const Resource& resource : snapshot.pcie_slots) {
        for (const object* slot : json::Objects(resource.body, "Slots")) {
            const object* location = json::Object(*slot, "Location");
            std::vector<std::string> devices;
            AppendPcieLinks(*slot, devices);
            if (location == nullptr) continue;
            const Slot place =
                SlotOfLocation(*location, DeviceKind::kPcieDevice, json::Text(*slot, "SlotType"));
            for (const std::string& device : devices) slot_of_device_.emplace(device, place);
        }
    }
}

void DeviceIndex::AddNetworkAdapters(const ServerSnapshot& snapshot) {
    for (const Resource& resource : snapshot.network_adapters) {
        if (IsErrorDocument(resource.body)) continue;
        Device device = MakeDevice(resource.body, resource.path, DeviceKind::kNetworkAdapter);
        AppendPcieLinks(resource.body, device.same_hardware);
        for (const object* controller : json::Objects(resource.body, "Controllers")) {
            device.firmware_version = FirstOf(
                {device.firmware_version, json::Text(*controller, "FirmwarePackageVersion")});
            AppendPcieLinks(*controller, device.same_hardware);
            if (!device.slot.IsKnown()) device.slot = OwnSlot(*controller, device.kind);
        }
        Add(std::move(device));
    }
}

void DeviceIndex::AddStorage(const ServerSnapshot& snapshot) {
    std::map<std::string, std::size_t> controllers_of;  // folded path of a subsystem -> how many
    for (const Resource& resource : snapshot.storage) {
        if (IsController(resource)) ++controllers_of[SubsystemOf(resource.path)];
    }
    for (const Resource& resource : snapshot.storage) {
        if (IsErrorDocument(resource.body)) continue;
        if (!IsController(resource)) {
            AddControllersWithin(resource);
            continue;
        }
        Device device = MakeDevice(resource.body, resource.path, DeviceKind::kStorageController);
        AppendPcieLinks(resource.body, device.same_hardware);
        const std::string subsystem = SubsystemOf(resource.path);
        std::vector<std::string> aliases;
        if (controllers_of[subsystem] == 1) aliases.push_back(subsystem);
        Add(std::move(device), aliases);
    }
}

void DeviceIndex::AddControllersWithin(const Resource& storage) {
    const std::vector<const object*> controllers = ControllersOf(storage.body);
    for (std::size_t i = 0; i < controllers.size(); ++i) {
        const std::string pointer = storage.path + "#/StorageControllers/" + std::to_string(i);
        const std::string link = FirstOf({json::Text(*controllers[i], "@odata.id"), pointer});
        const transport::LinkReference own = transport::SplitLink(link, storage.path);
        const std::string path = own.path + (own.pointer.empty() ? "" : "#" + own.pointer);
        Device device = MakeDevice(*controllers[i], path, DeviceKind::kStorageController);
        AppendPcieLinks(*controllers[i], device.same_hardware);
        // Entries often name the subsystem where they mean its only controller.
        std::vector<std::string> aliases = {pointer};
        if (controllers.size() == 1) aliases.push_back(storage.path);
        Add(std::move(device), aliases);
    }
}

void DeviceIndex::AddPowerSupplies(const ServerSnapshot& snapshot) {
    std::vector<std::string> newer;
    for (const Resource& resource : snapshot.power_supplies) {
        if (IsErrorDocument(resource.body)) continue;
        Device device = MakeDevice(resource.body, resource.path, DeviceKind::kPowerSupply);
        device.slot = PowerSupplySlot(resource.body, device);
        newer.push_back(ChassisOf(resource.path));
        Add(std::move(device));
    }
    for (const Resource& resource : snapshot.power) {
        const std::vector<const object*> supplies = json::Objects(resource.body, "PowerSupplies");
        for (std::size_t i = 0; i < supplies.size(); ++i) {
            const std::string path = resource.path + "#/PowerSupplies/" + std::to_string(i);
            Device device = MakeDevice(*supplies[i], path, DeviceKind::kPowerSupply);
            device.slot = PowerSupplySlot(*supplies[i], device);
            device.is_superseded =
                std::find(newer.begin(), newer.end(), ChassisOf(path)) != newer.end();
            Add(std::move(device));
        }
    }
}

void DeviceIndex::AddPlain(const std::vector<Resource>& resources, DeviceKind kind) {
    for (const Resource& resource : resources) {
        if (IsErrorDocument(resource.body)) continue;
        Device device = MakeDevice(resource.body, resource.path, kind);
        // What a PCIe device links to sits behind it; what others link to is their own PCIe side.
        if (kind != DeviceKind::kPcieDevice) {
            AppendPcieLinks(resource.body, device.same_hardware);
        }
        const auto slot = slot_of_device_.find(transport::FoldLink(resource.path));
        if (slot != slot_of_device_.end()) device.slot = slot->second;
        Add(std::move(device));
    }
}

void DeviceIndex::InheritSlots() {
    for (Device& device : devices_) {
        for (const std::string& path : device.same_hardware) {
            const auto slot = slot_of_device_.find(path);
            if (slot != slot_of_device_.end() && !device.slot.IsKnown()) device.slot = slot->second;
        }
        if (device.slot.IsKnown() || IsInBay(device.kind)) continue;
        for (const Device* other : SameHardware(device)) {
            if (!device.slot.IsKnown()) device.slot = other->slot;
        }
    }
}

const Device* DeviceIndex::Find(std::string_view link) const {
    std::string key = KeyOf(link);
    while (!key.empty()) {
        const auto found = by_key_.find(key);
        if (found != by_key_.end()) return &devices_[found->second];
        // A pointer leads into a device before the resource's own parents do.
        const std::size_t cut = key.find_last_of("/#");
        if (cut == std::string::npos) break;
        key.resize(cut);
    }
    return nullptr;
}

std::vector<const Device*> DeviceIndex::SameHardware(const Device& device) const {
    std::vector<const Device*> same;
    for (const Device& other : devices_) {
        if (&other == &device || IsInBay(other.kind) || IsInBay(device.kind)) continue;
        const auto links_to = [](const Device& from, const Device& to) {
            const std::string key = KeyOf(to.path);
            return std::find(from.same_hardware.begin(), from.same_hardware.end(), key) !=
                   from.same_hardware.end();
        };
        const bool has_same_serial =
            !device.serial_number.empty() && device.serial_number == other.serial_number;
        if (links_to(device, other) || links_to(other, device) || has_same_serial) {
            same.push_back(&other);
        }
    }
    return same;
}

}  // namespace Vantix::redfish
