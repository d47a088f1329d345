#include "platform/redfish/pmem_reader.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/redfish/managed_system.h"
#include "platform/redfish/slot_rules.h"
#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using boost::json::object;
using VantixOptions::SoftwareIdentity_;

bool HasText(const object& body, std::string_view key, std::string_view wanted) {
    const std::vector<std::string> texts = json::Texts(body, key);
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return ContainsIgnoringCase(text, wanted); });
}

bool IsPersistent(const object& body) {
    return HasText(body, "MemoryType", "nvdimm") || HasText(body, "MemoryType", "inteloptane") ||
           HasText(body, "MemoryDeviceType", "nvdimm") ||
           HasText(body, "MemoryMedia", "intel3dxpoint") ||
           HasText(body, "OperatingMemoryModes", "pmem");
}

Slot SlotOfModule(const object& body) {
    if (const object* location = json::Object(body, "Location")) {
        const Slot slot = SlotOfLocation(*location, DeviceKind::kMemory);
        if (slot.IsKnown()) return slot;
    }
    const Slot printed = SlotOfLabel(json::Text(body, "DeviceLocator"), DeviceKind::kMemory);
    if (printed.IsKnown()) return printed;
    return {json::TextAt(body, {"MemoryLocation", "Slot"}), kSlotMemory};
}

SoftwareIdentity_ MakeIdentity(const Resource& module) {
    const object& body = module.body;
    const std::string model = Known(json::Text(body, "Model"));
    SoftwareIdentity_ identity;
    identity.PartNumber = Known(json::Text(body, "PartNumber"));
    identity.SerialNumber = Known(json::Text(body, "SerialNumber"));
    identity.SoftwareID = FirstOf({identity.PartNumber, model, IdOf(module)});
    identity.Name = FirstOf({model, Known(json::Text(body, "Name")), IdOf(module)});
    identity.ElementName = identity.Name;
    identity.Description = "Persistent memory module";
    identity.Caption = "Redfish Memory";
    identity.Manufacturer = Known(json::Text(body, "Manufacturer"));
    identity.VersionString = json::Text(body, "FirmwareRevision");
    identity.InstanceID = IdOf(module);
    identity.Classifications = "10";
    const Slot slot = SlotOfModule(body);
    identity.AssociatedAdapterSlot = slot.number;
    identity.SlotType = kSlotMemory;
    return identity;
}

}  // namespace

std::vector<SoftwareIdentity_> ReadPersistentMemory(const ServerSnapshot& snapshot) {
    std::vector<SoftwareIdentity_> list;
    for (const Resource& module : snapshot.memory) {
        const bool is_absent = Lower(json::TextAt(module.body, {"Status", "State"})) == "absent";
        if (is_absent || IsErrorDocument(module.body) || !IsPersistent(module.body)) continue;
        list.push_back(MakeIdentity(module));
    }
    return list;
}

}  // namespace Vantix::redfish
