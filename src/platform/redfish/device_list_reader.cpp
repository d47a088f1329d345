#include "platform/redfish/device_list_reader.h"

#include <initializer_list>
#include <string_view>
#include <utility>

#include "platform/redfish/device_index.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;

using Fields = std::initializer_list<std::pair<std::string_view, std::string>>;

std::string Line(std::string_view kind, const Fields& fields) {
    std::string line(kind);
    for (const auto& [label, text] : fields) {
        if (!text.empty()) line.append("; ").append(label).append(text);
    }
    return line + "\n";
}

std::string_view KindText(DeviceKind kind) {
    switch (kind) {
        case DeviceKind::kNetworkAdapter:
            return "Network adapter";
        case DeviceKind::kStorageController:
            return "Storage controller";
        case DeviceKind::kDrive:
            return "Drive";
        case DeviceKind::kPowerSupply:
            return "Power supply";
        case DeviceKind::kPcieDevice:
            return "PCIe device";
        case DeviceKind::kMemory:
            return "Memory";
    }
    return {};
}

std::string ResourceLine(std::string_view kind, const Resource& resource) {
    const auto known = [&](const char* key) { return Known(json::Text(resource.body, key)); };
    return Line(kind, {{"", IdOf(resource)},
                       {"maker ", known("Manufacturer")},
                       {"model ", known("Model")},
                       {"part ", known("PartNumber")},
                       {"serial ", known("SerialNumber")}});
}

std::string DeviceLine(const Device& device) {
    const std::string version =
        IsNoVersion(device.firmware_version) ? std::string() : device.firmware_version;
    return Line(KindText(device.kind), {{"", FirstOf({device.name, device.id})},
                                        {"maker ", device.manufacturer},
                                        {"model ", device.model},
                                        {"part ", device.part_number},
                                        {"serial ", device.serial_number},
                                        {"firmware ", version},
                                        {"slot ", device.slot.number}});
}

}  // namespace

std::string ReadDeviceList(const ServerSnapshot& snapshot) {
    std::string list;
    for (const Resource& system : snapshot.systems) {
        if (IsComputerSystem(system)) list += ResourceLine("System", system);
    }
    for (const Resource& chassis : snapshot.chassis) {
        if (!IsErrorDocument(chassis.body)) list += ResourceLine("Chassis", chassis);
    }
    const DeviceIndex index(snapshot);
    for (const Device& device : index.Devices()) {
        if (!device.is_absent && !device.is_superseded) list += DeviceLine(device);
    }
    return list;
}

}  // namespace Vantix::redfish
