#include "service/update_scan_service/detail/pci_identities.h"

#include <set>
#include <string>
#include <utility>

#include "platform/log/log.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;
using IdAndSlot = std::pair<std::string, std::string>;

constexpr int kPciSlot = 7;

std::string NameOf(const PciInfo& device) {
    const std::string& name =
        device.Description.size() > device.ShortName.size() ? device.Description : device.ShortName;
    if (!name.empty()) return name;
    return device.Label3 + "-" + device.Label2 + "-" + device.IdPart1 + "-" + device.IdPart2;
}

IdAndSlot KeyOf(const SoftwareIdentity_& identity) {
    return {identity.SoftwareID, identity.AssociatedAdapterSlot};
}

}  // namespace

SoftwareIdentity_ ConvertPciDevice(const PciInfo& device) {
    SoftwareIdentity_ identity;
    identity.Description = device.Description;
    identity.Name = NameOf(device);
    identity.SoftwareID = device.IdPart1 + device.IdPart2;
    identity.IsPLDMUpdateSupported = "0";
    identity.VersionString = device.Version.empty() ? "N/A" : device.Version;
    if (!device.Slot.empty() && device.Slot != "0") {
        identity.SlotType = kPciSlot;
        identity.AssociatedAdapterSlot = device.Slot;
    }
    return identity;
}

int GetPciSoftwareIdentity(std::vector<SoftwareIdentity_>& identities) {
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Enter GetPciSoftwareIdentity()";
    std::vector<PciInfo> devices;
    GetPciInfo(devices);
    std::set<IdAndSlot> known;
    for (const SoftwareIdentity_& identity : identities) known.insert(KeyOf(identity));
    for (const PciInfo& device : devices) {
        SoftwareIdentity_ identity = ConvertPciDevice(device);
        if (known.insert(KeyOf(identity)).second) identities.push_back(std::move(identity));
    }
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Exit GetPciSoftwareIdentity()";
    return identities.empty() ? -1 : 0;
}

}  // namespace service::detail
