#include "platform/enclosure/enclosure.h"

#include <iterator>
#include <utility>

#include "platform/enclosure/vesk_forms.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix {

using enclosure::ModuleFacts;
using enclosure::PowerSupplies;

namespace {

ModuleFacts FactsOf(const VantixConnection::ConnectionInfo& connection) {
    if (auto* channel = redfish::RedfishChannel::Of(connection)) {
        return enclosure::FactsOverRedfish(*channel);
    }
    if (const auto channel = ipmi::IpmiChannel::Of(connection)) {
        return enclosure::FactsOverIpmi(*channel);
    }
    return {};
}

PowerSupplies PowerSuppliesOf(const VantixConnection::ConnectionInfo& connection) {
    if (auto* channel = redfish::RedfishChannel::Of(connection)) {
        return enclosure::PowerSuppliesOverRedfish(*channel);
    }
    if (const auto channel = ipmi::IpmiChannel::Of(connection)) {
        return enclosure::PowerSuppliesOverIpmi(*channel);
    }
    return {};
}

VeskInventoryErrorCode Take(std::string fact, std::string& text) {
    text = std::move(fact);
    return text.empty() ? VESK_INVENTORY_FAILED : VESK_INVENTORY_SUCCESS;
}

}  // namespace

VeskInventory::VeskInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

VeskInventoryErrorCode VeskInventory::GetMachineType(std::string& machine_type) {
    return Take(FactsOf(connection_).machine_type, machine_type);
}

VeskInventoryErrorCode VeskInventory::GetSerialNumber(std::string& serial_number) {
    return Take(FactsOf(connection_).serial_number, serial_number);
}

VeskInventoryErrorCode VeskInventory::GetFirmwareVersion(std::string& version) {
    return Take(FactsOf(connection_).firmware_version, version);
}

VeskInventoryErrorCode VeskInventory::GetPSUFwInfo(std::vector<PSUFwInfo>& list) {
    PowerSupplies supplies = PowerSuppliesOf(connection_);
    std::move(supplies.list.begin(), supplies.list.end(), std::back_inserter(list));
    return supplies.is_complete ? VESK_INVENTORY_SUCCESS : VESK_INVENTORY_FAILED;
}

}  // namespace Vantix
