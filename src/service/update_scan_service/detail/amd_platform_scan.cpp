#include "service/update_scan_service/detail/amd_platform_scan.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/disk/disk.h"
#include "platform/identities/identities.h"
#include "platform/log/log.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/ascii_case.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/pci_identities.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/detail/version_normalization.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixConnection::ConnectionInfo;
using Vantix::VantixOptions::SoftwareIdentity_;
using Identities = std::vector<SoftwareIdentity_>;

void LogDisk(const SoftwareIdentity_& disk) {
    Vantix::Log(4, kScanLogSource, __LINE__).Stream()
        << "Disk slot id=" << disk.AssociatedAdapterSlot;
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Disk name=" << disk.Name;
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Disk manufacturer=" << disk.Manufacturer;
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Disk softwareid=" << disk.SoftwareID;
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "Disk version=" << disk.VersionString;
    Vantix::Log(4, kScanLogSource, __LINE__).Stream()
        << "Disk classification=" << disk.Classifications;
}

class AmdPlatform {
  public:
    AmdPlatform(const UpdateScanOption& option, UpdateScanReport& report)
        : option_(option), report_(report), overall_(SUCCEED, "") {}

    [[nodiscard]] TarselResult Run() {
        if (const int code = SystemInfoScan::GetOSInfo(os_arch_); code != 0) {
            Vantix::Log(1, kScanLogSource, __LINE__).Stream()
                << "GetOSInfo failed with error is " << code;
            return TarselResult(GET_OS_TYPE_FAILED, "Failed to get AMD os info.");
        }
        if (const int code = MakeSystemCheck().GetMachineType(mt_sn_); code != 0) {
            Vantix::Log(1, kScanLogSource, __LINE__).Stream()
                << "GetMachineType failed with error is " << code;
            return TarselResult(GENERIC_FAILURE, "Failed to get AMD machine type.");
        }
        if (option_.scan_type != "dd") {
            const TarselResult connected = ReadFirmware();
            if (connected == NO_AVAILABLE_USER_ID) return connected;
        }
        if (option_.scan_type != "fw") ReadDrivers();
        FillReport();
        return overall_;
    }

  private:
    void Record(const TarselResult& failure) {
        if (overall_ == SUCCEED) overall_ = failure;
    }

    /// The result of the Redfish connection; nothing else is read without an account for it.
    [[nodiscard]] TarselResult ReadFirmware() {
        std::vector<ConnectionInfo> connections;
        TarselResult connected = GetRESTConnectionList(option_.connect_option, connections);
        if (connected == NO_AVAILABLE_USER_ID) return connected;
        if (connected.IsSucceed() && !connections.empty()) ReadOverRedfish(connections.front());
        connections.clear();  // ends the session: the host's own devices take their time
        NormalizeVersions(firmware_, option_.is_cfc_system, option_.is_csp_system);
        // Both flags together, not either of them, leave the host's own devices out.
        if (option_.is_cfc_system && option_.is_csp_system) return connected;
        if (firmware_.empty() || overall_ != SUCCEED) ReadOverIpmi();
        MergePciDevices();
        AppendDisks();
        AppendDiskDrivers();
        return connected;
    }

    void ReadOverRedfish(const ConnectionInfo& connection) {
        Vantix::Agentless::AgentlessSoftwareIdentity inventory(connection);
        const int code = inventory.GetPLDMSoftwareIdentities(firmware_);
        Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Try redfish";
        Vantix::Log(3, kScanLogSource, __LINE__).Stream()
            << "AgentlessSoftwareIdentity ret:" << code
            << "with connect case: " << connection.connect_case;
        if (!firmware_.empty()) return;
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "GetPLDMSoftwareIdentities failed with error is " << code;
        Record(TarselResult(GET_FIRMWARE_INFO_FAILED));
    }

    void ReadOverIpmi() {
        Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "try ipmi";
        ConnectionInfo own_controller;
        own_controller.connect_case = Vantix::VantixConnection::kConnectCaseIpmi;
        const int code =
            Vantix::xFirmwareInventory(own_controller).GetXFWSoftwareIdentity(firmware_);
        if (code == 0) return;
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "GetXFWSoftwareIdentity failed with error is " << code;
        Record(TarselResult(GENERIC_FAILURE, "Failed to get system software identity."));
    }

    // The first identity of an identifier stays, whatever its slot; case is ignored.
    void MergePciDevices() {
        Identities devices;
        if (const int code = GetPciSoftwareIdentity(devices); code != 0) {
            Vantix::Log(1, kScanLogSource, __LINE__).Stream()
                << "GetPciSoftwareIdentity failed with error is " << code;
            Record(TarselResult(GENERIC_FAILURE, "Failed to get PCI software identity."));
        }
        std::unordered_set<std::string> known;
        for (const SoftwareIdentity_& identity : firmware_) {
            known.insert(AsciiLower(identity.SoftwareID));
        }
        for (SoftwareIdentity_& device : devices) {
            if (!known.insert(AsciiLower(device.SoftwareID)).second) continue;
            firmware_.push_back(std::move(device));
        }
    }

    void AppendDisks() {
        Identities disks;
        const int code = Vantix::IBDISKSW::IBDiskSoftwareIdentity().GetDiskSoftwareIdentity(disks);
        if (code != 0) {
            Vantix::Log(2, kScanLogSource, __LINE__).Stream()
                << "GetDiskSoftwareIdentity return code:" << code;
        }
        for (SoftwareIdentity_& disk : disks) {
            LogDisk(disk);
            firmware_.push_back(std::move(disk));
        }
    }

    void AppendDiskDrivers() {
        Identities disk_drivers;
        TraceBegin(kTraceDrivers);
        const TarselResult read(SystemInfoScan::GetDiskDriverSoftwareIdentity(disk_drivers));
        TraceEnd(kTraceDrivers, read.code);
        if (!read.IsSucceed()) {
            Record(read);
            return;
        }
        for (SoftwareIdentity_& disk_driver : disk_drivers) {
            if (!disk_driver.SoftwareID.empty()) firmware_.push_back(std::move(disk_driver));
        }
    }

    void ReadDrivers() {
        const TarselResult read(SystemInfoScan::GetDriverData(drivers_));
        if (!read.IsSucceed()) Record(read);
    }

    void FillReport() const {
        report_.SetOS(os_arch_.first);
        report_.SetArch(os_arch_.second);
        report_.SetBmcType("AMI");
        report_.SetMT(mt_sn_.first);
        report_.SetScope(mt_sn_.second);
        report_.SetScanCount(static_cast<int>(firmware_.size() + drivers_.size()));
        AppendSoftwareIdentities(report_, firmware_);
        AppendDriverData(report_, drivers_);
    }

    const UpdateScanOption& option_;
    UpdateScanReport& report_;
    std::pair<std::string, std::string> os_arch_;
    std::pair<std::string, std::string> mt_sn_;
    Identities firmware_;
    std::vector<Vantix::DriverData> drivers_;
    TarselResult overall_;
};

}  // namespace

TarselResult AmdPlatformScan(const UpdateScanOption& option, UpdateScanReport& report,
                             DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start AMI inventorying...";
    return AmdPlatform(option, report).Run();
}

}  // namespace service::detail
