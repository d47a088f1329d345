// Any bytes as what a Redfish service answers: parsed within the limits, put into every place of a
// snapshot that a resource can have, and read by every reader. The texts that come out are clean.
//
// A document with the snapshot's list names as keys fills those lists; any other document becomes
// the one member of all of them.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/broadcom_switch_reader.h"
#include "platform/redfish/device_list_reader.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/pmem_reader.h"
#include "platform/redfish/server_snapshot.h"
#include "transport/redfish/json_document.h"
#include "transport/redfish/odata_link.h"

namespace {

using Vantix::redfish::Resource;
using Vantix::redfish::ServerSnapshot;
using Vantix::VantixOptions::SoftwareIdentity_;

using ListMember = std::vector<Resource> ServerSnapshot::*;
constexpr std::pair<std::string_view, ListMember> kLists[] = {
    {"systems", &ServerSnapshot::systems},
    {"managers", &ServerSnapshot::managers},
    {"chassis", &ServerSnapshot::chassis},
    {"firmware", &ServerSnapshot::firmware},
    {"software", &ServerSnapshot::software},
    {"storage", &ServerSnapshot::storage},
    {"drives", &ServerSnapshot::drives},
    {"network_adapters", &ServerSnapshot::network_adapters},
    {"power_supplies", &ServerSnapshot::power_supplies},
    {"power", &ServerSnapshot::power},
    {"pcie_devices", &ServerSnapshot::pcie_devices},
    {"pcie_slots", &ServerSnapshot::pcie_slots},
    {"memory", &ServerSnapshot::memory},
};

void Append(std::vector<Resource>& list, const boost::json::value& value) {
    const boost::json::object* body = value.if_object();
    if (body == nullptr) return;
    std::string path = "/redfish/v1/Made/" + std::to_string(list.size());
    const boost::json::value* id = body->if_contains("@odata.id");
    if (id != nullptr && id->is_string()) {
        path = Vantix::transport::LinkPath(std::string_view(id->get_string()));
    }
    list.push_back({path, *body});
}

void TakeObject(const boost::json::object& document, std::string_view key,
                boost::json::object& place) {
    const boost::json::value* value = document.if_contains(key);
    if (value != nullptr && value->is_object()) place = value->get_object();
}

ServerSnapshot SnapshotOf(const boost::json::object& document) {
    ServerSnapshot snapshot;
    snapshot.has_firmware_inventory = true;
    bool names_a_list = false;
    for (const auto& [name, member] : kLists) {
        const boost::json::value* list = document.if_contains(name);
        if (list == nullptr || !list->is_array()) continue;
        names_a_list = true;
        for (const auto& value : list->get_array()) Append(snapshot.*member, value);
    }
    TakeObject(document, "root", snapshot.root);
    TakeObject(document, "update_service", snapshot.update_service);
    if (names_a_list) return snapshot;
    snapshot.root = document;
    snapshot.update_service = document;
    for (const auto& [name, member] : kLists) Append(snapshot.*member, document);
    return snapshot;
}

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void RequireClean(const std::vector<SoftwareIdentity_>& identities) {
    for (const SoftwareIdentity_& identity : identities) {
        for (const std::string* text :
             {&identity.Name, &identity.Description, &identity.VersionString, &identity.SoftwareID,
              &identity.InstanceID, &identity.Manufacturer, &identity.SerialNumber,
              &identity.PartNumber, &identity.AssociatedAdapterSlot}) {
            RequireClean(*text);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto document = Vantix::transport::json::ParseJson(bytes);
    const boost::json::object* object = document.value.if_object();
    if (object == nullptr) return 0;
    const ServerSnapshot snapshot = SnapshotOf(*object);
    RequireClean(Vantix::redfish::ReadInventory(snapshot).identities);
    RequireClean(Vantix::redfish::ReadPersistentMemory(snapshot));
    const auto system = Vantix::redfish::FindManagedSystem(snapshot);
    RequireClean(system.machine_type + system.serial_number + system.bios_version);
    const auto facts = Vantix::redfish::ReadBmcFacts(snapshot, system.manager);
    if (Vantix::redfish::BmcKindOf(facts) == Vantix::redfish::kBmcKindNone) std::abort();
    RequireClean(Vantix::redfish::ReadReleaseName(system.manager));
    static_cast<void>(Vantix::redfish::ReadDeviceList(snapshot));
    static_cast<void>(Vantix::redfish::HasUpdatableDeviceBehindBroadcomSwitch(snapshot));
    return 0;
}
