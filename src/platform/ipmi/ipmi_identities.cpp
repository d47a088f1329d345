#include "platform/ipmi/ipmi_identities.h"

#include <string>

#include "platform/ipmi/ipmi_facts.h"
#include "platform/redfish/slot_rules.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::ipmi {

using redfish::FirstOf;
using redfish::Known;
using VantixOptions::SoftwareIdentity_;

namespace {

// CIM_SoftwareIdentity.Classifications.
constexpr const char* kFirmware = "10";
constexpr const char* kOther = "1";

std::string WithAuxiliary(const std::string& text, const transport::Bytes& auxiliary) {
    if (auxiliary.empty()) return text;
    return text + " (auxiliary revision " + transport::HexBytes(auxiliary) + ")";
}

SoftwareIdentity_ FruIdentity(const transport::FruData& data, const std::string& name, int fru_id) {
    SoftwareIdentity_ identity;
    identity.Name = FirstOf({name, Known(data.product_name), "FRU " + std::to_string(fru_id)});
    identity.Description =
        "Product version of " +
        FirstOf({Known(data.product_name), Known(data.product_part_number), identity.Name});
    identity.Caption = "IPMI FRU";
    identity.ProductName = Known(data.product_name);
    identity.Manufacturer = Known(data.product_manufacturer);
    identity.VersionString = data.product_version;
    // A product version: rarely that of firmware.
    identity.Classifications = kOther;
    identity.SoftwareID =
        FirstOf({Known(data.product_part_number), Known(data.product_name), identity.Name});
    identity.InstanceID = "FRU" + std::to_string(fru_id);
    identity.IsPLDMUpdateSupported = "0";
    identity.SerialNumber = Known(data.product_serial_number);
    identity.PartNumber = Known(data.product_part_number);
    return identity;
}

}  // namespace

SoftwareIdentity_ BmcIdentity(const transport::DeviceId& device, const transport::FruData& fru) {
    SoftwareIdentity_ identity;
    identity.Name = "BMC";
    identity.Description = WithAuxiliary("BMC firmware", device.auxiliary);
    identity.Caption = "IPMI Get Device ID";
    identity.ProductName = MachineTypeOf(fru);
    identity.Manufacturer = ManufacturerOf(device, fru);
    identity.VersionString = transport::FirmwareVersionText(device);
    identity.Classifications = kFirmware;
    identity.SoftwareID = "BMC";
    identity.InstanceID = "BMC";
    identity.IsPLDMUpdateSupported = "0";
    return identity;
}

std::vector<SoftwareIdentity_> ComponentIdentities(
    const std::vector<FirmwareComponent>& components) {
    std::vector<SoftwareIdentity_> identities;
    for (const FirmwareComponent& component : components) {
        SoftwareIdentity_ identity;
        const std::string number = std::to_string(component.number);
        identity.Name = FirstOf({component.description, "Component " + number});
        identity.Description = WithAuxiliary("Firmware component " + number, component.auxiliary);
        identity.Caption = "IPMI HPM.1";
        identity.VersionString = component.version;
        identity.Classifications = kFirmware;
        identity.SoftwareID = FirstOf({component.description, "HPM-" + number});
        identity.InstanceID = "HPM-" + number;
        identity.IsPLDMUpdateSupported = "0";
        identities.push_back(std::move(identity));
    }
    return identities;
}

std::vector<SoftwareIdentity_> FruIdentities(const transport::FruData& main,
                                             const std::vector<FruDevice>& devices) {
    std::vector<SoftwareIdentity_> identities;
    if (!redfish::IsNoVersion(main.product_version)) {
        identities.push_back(FruIdentity(main, {}, 0));
    }
    for (const FruDevice& device : devices) {
        if (redfish::IsNoVersion(device.data.product_version)) continue;
        identities.push_back(FruIdentity(device.data, device.locator.name, device.locator.fru_id));
        if (!IsPowerSupply(device) || device.locator.entity_instance == 0) continue;
        identities.back().SlotType = redfish::kSlotPsu;
        identities.back().AssociatedAdapterSlot = std::to_string(device.locator.entity_instance);
    }
    return identities;
}

bool IsPowerSupply(const FruDevice& device) {
    if (device.locator.entity_id == transport::kEntityPowerSupply) return true;
    if (device.data.is_power_supply) return true;
    const auto words = redfish::Words(device.locator.name + " " + device.data.product_name);
    return redfish::HasAnyWord(words, {"psu", "psus", "ps"}) ||
           redfish::ContainsIgnoringCase(device.data.product_name, "power supply");
}

}  // namespace Vantix::ipmi
