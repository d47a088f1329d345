#include "platform/disk/disk_facts.h"

#include <algorithm>
#include <cstddef>

#include "platform/redfish/text_rules.h"

namespace Vantix::disk {

VantixOptions::SoftwareIdentity_ MakeIdentity(const DiskFacts& facts) {
    VantixOptions::SoftwareIdentity_ identity;
    identity.Name = redfish::FirstOf({facts.model, facts.node});
    identity.ElementName = identity.Name;
    identity.ProductName = identity.Name;
    identity.Description = "Drive firmware";
    identity.Caption = facts.source;
    identity.Manufacturer = facts.manufacturer;
    identity.VersionString = facts.firmware;
    identity.SoftwareID = identity.Name;
    identity.InstanceID = facts.node;
    identity.Classifications = "10";
    identity.IsPLDMUpdateSupported = "0";
    identity.AssociatedAdapterSlot = facts.slot.number;
    identity.SlotType = facts.slot.type;
    identity.SerialNumber = facts.serial;
    identity.PartNumber = facts.model;
    return identity;
}

std::string Attribute(const transport::SystemRoot& root, std::string_view path) {
    return Plausible(root.ReadText(path));
}

std::string Plausible(std::string text) {
    constexpr std::size_t kLongest = 256;
    const bool has_sign = std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
    return text.size() <= kLongest && has_sign ? text : std::string();
}

}  // namespace Vantix::disk
