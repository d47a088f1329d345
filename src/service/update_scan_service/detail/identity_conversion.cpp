#include "service/update_scan_service/detail/identity_conversion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <string>

#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/ascii_case.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;

// Kept in upper case, so that only the identifier in question has to be converted.
constexpr std::array<std::string_view, 27> kAgentlessComponents = {
    "OSSA",  "OSSA-BACKUP",  "OSSA2", "OSSA2-BACKUP",   "UEFI",  "UEFI-BACKUP", "DIAGNOSTICS",
    "TAVRO", "TAVRO-BACKUP", "PYX",   "RUSK",           "KOFAR", "KOFEX",       "QOVA",
    "YEM",   "SWITCHES",     "VESK3", "VESK3-INACTIVE", "VESK",  "TOLV",        "BMC/H8",
    "BMC",   "BMC-BACKUP",   "CPLD",  "FPGA",           "ZIBE",  "HOLM"};

// Packages for hardware that has no driver yet are matched through such identifiers.
bool MarksMissingDriver(const std::string& software_id) {
    return AsciiLower(software_id).find("nodriver#") != std::string::npos;
}

}  // namespace

bool IsAgentlessComponent(std::string_view software_id) {
    const std::string id = AsciiUpper(software_id);
    if (std::find(kAgentlessComponents.begin(), kAgentlessComponents.end(), id) !=
        kAgentlessComponents.end()) {
        return true;
    }
    return id.starts_with("FPGA-IHFS") || id.starts_with("FPGA-IHFG") || id.starts_with("HOLM-") ||
           id.ends_with("_CPLD");
}

UpdateScanItem ConvertSoftwareIdentity(const SoftwareIdentity_& identity) {
    UpdateScanItem item;
    item.name = identity.Name;
    item.softwareId = identity.SoftwareID;
    item.version = identity.VersionString;
    item.classification = identity.Classifications;
    item.description = identity.Description;
    item.instanceId = identity.InstanceID;
    item.slotNum = identity.AssociatedAdapterSlot;
    item.slotType = std::to_string(identity.SlotType);
    item.pldm = IsAgentlessComponent(identity.SoftwareID) ? "1" : identity.IsPLDMUpdateSupported;
    item.hasDevice = 1;
    return item;
}

UpdateScanItem ConvertDriverData(const Vantix::DriverData& driver) {
    UpdateScanItem item;
    item.softwareId = driver.Identifier;
    item.name = driver.Identifier;
    item.version = driver.Version;
    item.classification = "22";
    item.description = driver.Description;
    item.hasDevice = driver.DevicePresent;
    if (item.version.empty() && MarksMissingDriver(item.softwareId)) item.version = "N/A";
    return item;
}

void AppendSoftwareIdentities(UpdateScanReport& report,
                              const std::vector<SoftwareIdentity_>& identities) {
    for (const SoftwareIdentity_& identity : identities) {
        report.GetScanResults().push_back(ConvertSoftwareIdentity(identity));
    }
}

void AppendDriverData(UpdateScanReport& report, const std::vector<Vantix::DriverData>& drivers) {
    for (const Vantix::DriverData& driver : drivers) {
        report.GetScanResults().push_back(ConvertDriverData(driver));
    }
}

void DumpSoftwareIdentity(std::ostream& out, const SoftwareIdentity_& identity) {
    out << "Name:           \t" << identity.Name << '\n'
        << "Description:    \t" << identity.Description << '\n'
        << "Element Name:   \t" << identity.ElementName << '\n'
        << "Version String: \t" << identity.VersionString << '\n';
}

}  // namespace service::detail
