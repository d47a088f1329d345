#include "platform/redfish/broadcom_switch_reader.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/redfish/device_index.h"
#include "platform/redfish/firmware_reader.h"
#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using boost::json::object;

std::string Folded(const std::string& link) {
    return transport::FoldLink(transport::LinkPath(link));
}

/// The device's functions as far as its body holds them.
std::vector<const object*> FunctionsOf(const object& device) {
    std::vector<const object*> functions = json::Objects(device, "PCIeFunctions");
    const object* collection = json::Object(device, "PCIeFunctions");
    if (collection != nullptr) functions = json::Objects(*collection, "Members");
    if (const object* links = json::Object(device, "Links")) {
        const auto linked = json::Objects(*links, "PCIeFunctions");
        functions.insert(functions.end(), linked.begin(), linked.end());
    }
    return functions;
}

/// "0x1000", "1000", "0X00001000" -> "1000".
std::string HexDigits(const std::string& text) {
    std::string lower = Lower(text);
    if (lower.rfind("0x", 0) == 0) lower.erase(0, 2);
    const std::size_t first = lower.find_first_not_of('0');
    return first == std::string::npos ? std::string() : lower.substr(first);
}

bool IsBridge(const object& function) {
    const std::string code = HexDigits(json::Text(function, "ClassCode"));
    // Class 06h, sub-class 04h: PCI-to-PCI bridge (PCI Code and ID Assignment Specification).
    return code == "604" || code.rfind("6040", 0) == 0 ||
           Lower(json::Text(function, "DeviceClass")) == "bridge";
}

bool NamesSwitch(const object& device) {
    return HasAnyWord(
        Words(json::Text(device, "Name") + " " + json::Text(device, "Model") + " " +
              json::Text(device, "Description") + " " + json::Text(device, "DeviceType")),
        {"switch"});
}

bool IsBroadcomSwitch(const object& device) {
    std::vector<const object*> parts = FunctionsOf(device);
    parts.push_back(&device);
    bool has_vendor_id = false;
    bool is_broadcom = false;
    bool is_bridge = NamesSwitch(device);
    for (const object* part : parts) {
        const std::string vendor = HexDigits(json::Text(*part, "VendorId"));
        has_vendor_id = has_vendor_id || !vendor.empty();
        is_broadcom = is_broadcom || vendor == "1000";
        is_bridge = is_bridge || IsBridge(*part);
    }
    if (!has_vendor_id) {
        is_broadcom = ContainsIgnoringCase(json::Text(device, "Manufacturer"), "broadcom");
    }
    return is_broadcom && is_bridge;
}

void AppendLinks(const object& links, std::set<std::string>& targets) {
    for (const char* key : {"PCIeDevices", "DownstreamPCIeDevices", "DownstreamDevices"}) {
        for (const std::string& link : json::Links(links, key)) targets.insert(Folded(link));
    }
}

std::set<std::string> DownstreamOf(const Resource& pcie_switch) {
    std::set<std::string> targets;
    const object* links = json::Object(pcie_switch.body, "Links");
    for (const object* holder : {&pcie_switch.body, links}) {
        const object* oem = holder == nullptr ? nullptr : json::Object(*holder, "Oem");
        if (oem == nullptr) continue;
        for (const auto& maker : *oem) {
            if (const object* fields = maker.value().if_object()) AppendLinks(*fields, targets);
        }
    }
    if (links != nullptr) AppendLinks(*links, targets);
    targets.erase(Folded(pcie_switch.path));
    return targets;
}

bool HoldsLinkTo(const object& holder, const std::string& target) {
    for (const char* key : {"Switch", "UpstreamSwitch", "PCIeDevice"}) {
        for (const std::string& link : json::Links(holder, key)) {
            if (Folded(link) == target) return true;
        }
    }
    return false;
}

bool LinksUpTo(const Resource& device, const std::string& pcie_switch) {
    if (Folded(device.path) == pcie_switch) return false;
    const object* links = json::Object(device.body, "Links");
    if (links != nullptr && HoldsLinkTo(*links, pcie_switch)) return true;
    const object* oem = json::Object(device.body, "Oem");
    if (oem == nullptr) return false;
    return std::any_of(oem->begin(), oem->end(), [&](const auto& maker) {
        const object* fields = maker.value().if_object();
        return fields != nullptr && HoldsLinkTo(*fields, pcie_switch);
    });
}

std::set<std::string> DevicesBehindSwitches(const ServerSnapshot& snapshot) {
    std::set<std::string> behind;
    for (const Resource& device : snapshot.pcie_devices) {
        if (!IsBroadcomSwitch(device.body)) continue;
        behind.merge(DownstreamOf(device));
        const std::string path = Folded(device.path);
        for (const auto* list : {&snapshot.pcie_devices, &snapshot.network_adapters,
                                 &snapshot.storage, &snapshot.drives}) {
            for (const Resource& other : *list) {
                if (LinksUpTo(other, path)) behind.insert(Folded(other.path));
            }
        }
    }
    return behind;
}

bool IsBehind(const Device& device, const std::set<std::string>& behind) {
    return behind.count(Folded(device.path)) > 0 ||
           std::any_of(device.same_hardware.begin(), device.same_hardware.end(),
                       [&](const std::string& path) { return behind.count(path) > 0; });
}

}  // namespace

bool HasUpdatableDeviceBehindBroadcomSwitch(const ServerSnapshot& snapshot) {
    const std::set<std::string> behind = DevicesBehindSwitches(snapshot);
    if (behind.empty()) return false;
    const DeviceIndex index(snapshot);
    const FirmwareReading reading = ReadFirmware(snapshot, index);
    return std::any_of(
        reading.entries.begin(), reading.entries.end(), [&](const FirmwareEntry& entry) {
            if (entry.identity.IsPLDMUpdateSupported != "1") return false;
            return std::any_of(
                entry.devices.begin(), entry.devices.end(), [&](const Device* device) {
                    const auto same = index.SameHardware(*device);
                    return IsBehind(*device, behind) ||
                           std::any_of(same.begin(), same.end(), [&](const Device* other) {
                               return IsBehind(*other, behind);
                           });
                });
        });
}

}  // namespace Vantix::redfish
