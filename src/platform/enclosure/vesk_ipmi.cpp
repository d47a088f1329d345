// An enclosure management module over IPMI: its own FRU and device id, and the FRUs of its power
// supplies.

#include "platform/enclosure/vesk_forms.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_facts.h"
#include "platform/ipmi/ipmi_identities.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::enclosure {

using redfish::FirstOf;
using redfish::Known;

namespace {

PSUFwInfo RecordOf(const ipmi::FruDevice& device) {
    const auto& data = device.data;
    const auto& locator = device.locator;
    PSUFwInfo record;
    record.Reserved = FirstOf({Known(data.product_manufacturer), Known(data.board_manufacturer)});
    record.SoftwareId = FirstOf({Known(data.product_part_number), Known(data.board_part_number),
                                 Known(data.product_name), locator.name});
    if (!redfish::IsNoVersion(data.product_version)) record.Version = data.product_version;
    if (locator.entity_instance != 0) record.SlotNum = std::to_string(locator.entity_instance);
    record.Name = FirstOf({locator.name, Known(data.product_name), record.SoftwareId});
    return record;
}

}  // namespace

ModuleFacts FactsOverIpmi(ipmi::IpmiChannel& channel) {
    const transport::FruData& fru = channel.MainFru();
    return {ipmi::MachineTypeOf(fru), ipmi::SerialNumberOf(fru),
            transport::FirmwareVersionText(channel.Device())};
}

PowerSupplies PowerSuppliesOverIpmi(ipmi::IpmiChannel& channel) {
    PowerSupplies supplies;
    for (const ipmi::FruDevice& device : channel.FruDevices()) {
        if (ipmi::IsPowerSupply(device)) supplies.list.push_back(RecordOf(device));
    }
    supplies.is_complete = !channel.LastFailure() && !channel.Run().IsCancelled();
    return supplies;
}

}  // namespace Vantix::enclosure
