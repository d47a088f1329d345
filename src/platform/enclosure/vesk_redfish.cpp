// An enclosure management module over its HTTPS service: chassis, manager and power supplies.

#include "platform/enclosure/vesk_forms.h"
#include "platform/redfish/device_index.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::enclosure {

using redfish::Device;
using redfish::FirstOf;

namespace {

PSUFwInfo RecordOf(const Device& device) {
    PSUFwInfo record;
    record.Reserved = device.manufacturer;
    record.SoftwareId = FirstOf({device.part_number, device.model, device.id});
    if (!redfish::IsNoVersion(device.firmware_version)) record.Version = device.firmware_version;
    record.SlotNum = device.slot.number;
    record.Name = FirstOf({device.name, device.model, device.id});
    return record;
}

}  // namespace

ModuleFacts FactsOverRedfish(redfish::RedfishChannel& channel) {
    const redfish::ManagedSystem& managed = channel.Managed();
    return {managed.machine_type, managed.serial_number, managed.manager_version};
}

PowerSupplies PowerSuppliesOverRedfish(redfish::RedfishChannel& channel) {
    PowerSupplies supplies;
    const redfish::DeviceIndex index(channel.Inventory());
    for (const Device& device : index.Devices()) {
        const bool is_wanted = device.kind == redfish::DeviceKind::kPowerSupply &&
                               !device.is_absent && !device.is_superseded;
        if (is_wanted) supplies.list.push_back(RecordOf(device));
    }
    supplies.is_complete = !channel.Run().IsCancelled() && !channel.IsLoginLost();
    return supplies;
}

}  // namespace Vantix::enclosure
