#include "platform/redfish/inventory_reader.h"

#include <utility>

#include "platform/redfish/completion_reader.h"
#include "platform/redfish/device_index.h"
#include "platform/redfish/managed_system.h"

namespace Vantix::redfish {

Inventory ReadInventory(const ServerSnapshot& snapshot, const std::string& system_id) {
    const DeviceIndex index(snapshot);
    FirmwareReading reading = ReadFirmware(snapshot, index);
    const ManagedSystem managed = FindManagedSystem(snapshot, system_id);
    std::vector<VantixOptions::SoftwareIdentity_> missing =
        ReadMissingFirmware(managed, index, reading);
    Inventory inventory;
    inventory.completed = missing.size();
    inventory.without_version = reading.without_version;
    inventory.issues = std::move(reading.issues);
    inventory.not_installed = std::move(reading.not_installed);
    for (FirmwareEntry& entry : reading.entries) {
        inventory.identities.push_back(std::move(entry.identity));
    }
    for (auto& identity : missing) inventory.identities.push_back(std::move(identity));
    return inventory;
}

}  // namespace Vantix::redfish
