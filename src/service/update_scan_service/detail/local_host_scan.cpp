#include "service/update_scan_service/detail/local_host_scan.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/raid/raid.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/ascii_case.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/identity_log.h"
#include "service/update_scan_service/detail/pci_identities.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;
using Identities = std::vector<SoftwareIdentity_>;

struct LocalFacts {
    std::pair<std::string, std::string> os_arch;
    std::string os_minor_version;
    std::pair<std::string, std::string> mt_sn;
};

TarselResult ReadFacts(LocalFacts& facts) {
    int code = SystemInfoScan::GetOSInfo(facts.os_arch, facts.os_minor_version);
    if (code == 0) {
        const Vantix::VantixConnection::ConnectionInfo local_host;
        code = SystemInfoScan::GetMachineType(local_host, facts.mt_sn);
    }
    if (code != 0) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Failed to Get inband system info";
    }
    return TarselResult(code);
}

void LogFacts(const LocalFacts& facts) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "OS:" << facts.os_arch.first;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Arch:" << facts.os_arch.second;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "OS Min version:" << facts.os_minor_version;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "MT:" << facts.mt_sn.first;
}

void StoreFacts(const LocalFacts& facts, bool check_device, UpdateScanReport& report) {
    report.SetOS(facts.os_arch.first);
    report.SetArch(facts.os_arch.second);
    report.SetOSMinorVersion(facts.os_minor_version);
    report.SetMT(facts.mt_sn.first);
    report.SetScope(facts.mt_sn.second);
    report.SetBmcType("None");
    report.SetCheckDevice(check_device);
}

SoftwareIdentity_ UefiIdentity(const std::string& version) {
    constexpr int kUefiSlot = 3;
    SoftwareIdentity_ identity;
    identity.Description = "The information of UEFI firmware.";
    identity.Name = "UEFI";
    identity.SoftwareID = "UEFI";
    identity.InstanceID = "UEFI";
    identity.Classifications = "6";
    identity.IsPLDMUpdateSupported = "0";
    identity.SlotType = kUefiSlot;
    identity.VersionString = version;
    return identity;
}

SoftwareIdentity_ ConvertRaidDisk(const Vantix::ARCCONF::RaidDisk& disk) {
    SoftwareIdentity_ identity;
    identity.Description = disk.Name;
    identity.ProductName = disk.Name;
    identity.Name = disk.Name;
    identity.VersionString = disk.FirmwareVersion;
    identity.SoftwareID = disk.Identifier;
    identity.AssociatedAdapterSlot = disk.Slot;
    identity.Classifications = "10";
    identity.IsPLDMUpdateSupported = "0";
    identity.SerialNumber = disk.SerialNumber;  // tells the disk again among those of the host
    return identity;
}

void AppendRaid(Identities& identities) {
    constexpr int kListControllers = 2;
    Vantix::ARCCONF::ArcconfConfig tool;
    std::vector<Vantix::ARCCONF::RaidController> controllers;
    tool.GetControllerList(controllers, kListControllers);
    for (Vantix::ARCCONF::RaidController& controller : controllers) {
        tool.GetCtrlDisks(controller);
        PciInfo device;
        if (GetPciInfoByAddress(controller.PciAddress, device) == 0) {
            identities.push_back(ConvertPciDevice(device));
            identities.back().VersionString = controller.FirmwareVersion;
        }
        std::transform(controller.Disks.begin(), controller.Disks.end(),
                       std::back_inserter(identities), ConvertRaidDisk);
    }
}

// Serial numbers in lower case, without the empty ones.
std::vector<std::string> KnownSerials(const Identities& identities) {
    std::vector<std::string> serials;
    for (const SoftwareIdentity_& identity : identities) {
        if (!identity.SerialNumber.empty()) serials.push_back(AsciiLower(identity.SerialNumber));
    }
    return serials;
}

// Controllers and the system cut serial numbers differently, so either may contain the other.
bool IsKnownDisk(const SoftwareIdentity_& disk, const std::vector<std::string>& known_serials) {
    if (disk.SerialNumber.empty()) return false;
    const std::string serial = AsciiLower(disk.SerialNumber);
    return std::any_of(known_serials.begin(), known_serials.end(), [&](const std::string& known) {
        return serial.find(known) != std::string::npos || known.find(serial) != std::string::npos;
    });
}

void AppendOtherDisks(Identities& identities) {
    Identities disks;
    SystemInfoScan::GetDiskDriverSoftwareIdentity(disks);
    const std::vector<std::string> known_serials = KnownSerials(identities);
    std::erase_if(disks,
                  [&](const SoftwareIdentity_& disk) { return IsKnownDisk(disk, known_serials); });
    for (SoftwareIdentity_& disk : disks) {
        disk.SoftwareID = disk.PartNumber;
        identities.push_back(std::move(disk));
    }
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Non Raid disk count: " << disks.size();
}

// RAID controllers come once more here: only devices among themselves are told apart.
void AppendPciDevices(Identities& identities) {
    Identities devices;
    static_cast<void>(GetPciSoftwareIdentity(devices));  // a host without devices is no failure
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "PCI software identity count: " << devices.size();
    std::move(devices.begin(), devices.end(), std::back_inserter(identities));
}

}  // namespace

TarselResult LocalHostScan(const UpdateScanOption& option, UpdateScanReport& report,
                           DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start inband inventorying...";
    LocalFacts facts;
    const TarselResult result = ReadFacts(facts);
    if (result.code != 0) return result;
    LogFacts(facts);
    StoreFacts(facts, option.report_check_device, report);

    std::string uefi_version;
    if (!MakeSystemCheck().GetUEFIVersion(uefi_version)) {
        return TarselResult(INTERNAL_ERROR, "Get uefi version fail");
    }
    Identities identities = {UefiIdentity(uefi_version)};
    AppendRaid(identities);
    AppendOtherDisks(identities);
    AppendPciDevices(identities);
    AppendSoftwareIdentities(report, identities);
    report.SetScanCount(static_cast<int>(report.GetScanResults().size()));
    LogIdentities(kAgentlessIdentityHeading, identities);
    return result;
}

}  // namespace service::detail
