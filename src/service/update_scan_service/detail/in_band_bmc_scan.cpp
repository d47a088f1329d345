#include "service/update_scan_service/detail/in_band_bmc_scan.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/estimate/estimate.h"
#include "platform/log/log.h"
#include "platform/os/os.h"
#include "platform/progress/progress.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/identity_log.h"
#include "service/update_scan_service/detail/in_band_firmware.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/detail/target_system_info.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;

bool IsLegacyTarget(const std::string& machine_type) {
    Vantix::SystemCheck system_check = MakeSystemCheck();
    return IsLegacySystem(system_check, machine_type);
}

void LogFacts(const TargetSystemInfo& info) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "isRedfishSupported:" << info.redfish_supported;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "OS:" << info.os_arch.first;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Arch:" << info.os_arch.second;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "OS Min version:" << info.os_minor_version;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "MT:" << info.mt_sn.first;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "BMC Type:" << info.bmc_type;
}

/// The inventory part, with its working lists.
class InBandInventory {
  public:
    InBandInventory(const UpdateScanOption& option, const TargetSystemInfo& info,
                    UpdateScanReport& report)
        : option_(option),
          info_(info),
          report_(report),
          driver_result_(SUCCEED),
          firmware_result_(SUCCEED),
          disk_result_(SUCCEED) {}

    [[nodiscard]] TarselResult Run() {
        if (option_.scan_type != "fw") ReadDrivers();
        if (option_.scan_type != "dd") ReadFirmwareAndDisks();
        report_.SetScanCount(static_cast<int>(firmware_.size() + drivers_.size()));
        AppendSoftwareIdentities(report_, firmware_);
        AppendDriverData(report_, drivers_);
        LogIdentities(kAgentlessIdentityHeading, firmware_);
        // The whole code decides here, its module number included.
        if (driver_result_.code != 0) return driver_result_;
        if (firmware_result_.code != 0) return firmware_result_;
        return disk_result_;
    }

  private:
    void ReadDrivers() {
        TraceBegin(kTraceDrivers);
        driver_result_ = TarselResult(SystemInfoScan::GetDriverData(drivers_));
        TraceEnd(kTraceDrivers, driver_result_.code);
    }

    void ReadFirmwareAndDisks() {
        InBandFirmware firmware(option_, info_.os_arch.first, report_);
        TraceBegin(kTraceSoftwareIdentities);
        firmware_result_ = firmware.Read(info_.bmc_type, firmware_);
        TraceEnd(kTraceSoftwareIdentities, firmware_result_.code);
        if (!firmware.RedfishFoundSomething()) ReadDisks();
    }

    void ReadDisks() {
        std::vector<SoftwareIdentity_> disks;
        disk_result_ = TarselResult(SystemInfoScan::GetDiskDriverSoftwareIdentity(disks));
        if (!disk_result_.IsSucceed()) return;
        std::vector<std::string> known_serials;
        for (const SoftwareIdentity_& identity : firmware_) {
            if (!identity.SerialNumber.empty()) known_serials.push_back(identity.SerialNumber);
        }
        for (SoftwareIdentity_& disk : disks) MergeDisk(std::move(disk), known_serials);
    }

    // A kept disk counts as known for those behind it.
    void MergeDisk(SoftwareIdentity_ disk, std::vector<std::string>& known_serials) {
        const bool known =
            std::any_of(known_serials.begin(), known_serials.end(), [&](const std::string& serial) {
                return disk.SerialNumber.find(serial) != std::string::npos;
            });
        if (known) {
            Vantix::Log(4, kScanLogSource, __LINE__).Stream()
                << "Remove DUP HDD :" << disk.Name << ",sn=" << disk.SerialNumber;
            return;
        }
        if (info_.redfish_supported) {
            disk.SoftwareID = disk.PartNumber;
            Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "part number :" << disk.PartNumber;
        }
        Vantix::Log(4, kScanLogSource, __LINE__).Stream()
            << "Keep HDD :" << disk.Name << ",sn=" << disk.SerialNumber;
        if (!disk.SerialNumber.empty()) known_serials.push_back(disk.SerialNumber);
        firmware_.push_back(std::move(disk));
    }

    const UpdateScanOption& option_;
    const TargetSystemInfo& info_;
    UpdateScanReport& report_;
    std::vector<Vantix::DriverData> drivers_;
    std::vector<SoftwareIdentity_> firmware_;
    TarselResult driver_result_;
    TarselResult firmware_result_;
    TarselResult disk_result_;
};

void StoreFacts(const UpdateScanOption& option, const TargetSystemInfo& info,
                UpdateScanReport& report) {
    report.SetOS(info.os_arch.first);
    report.SetBmcType(info.bmc_type);
    report.SetArch(info.os_arch.second);
    report.SetOSMinorVersion(info.os_minor_version);
    report.SetMT(info.mt_sn.first);
    report.SetScope(info.mt_sn.second);
    report.SetCheckDevice(option.report_check_device);
}

void StartTimer(const TargetSystemInfo& info, std::int64_t start_seconds,
                DynamicProgressBar* progress_bar) {
    const int seconds = TimeEstimation::getInstance()->GetScanInbandTimeEstimation(
        info.mt_sn.first + "-" + info.os_arch.second, info.os_arch.first,
        static_cast<int>(Vantix::MonotonicSeconds() - start_seconds));
    if (progress_bar != nullptr) progress_bar->SetTimerInterval(seconds * 10);
}

}  // namespace

TarselResult InBandBmcScan(const UpdateScanOption& option, UpdateScanReport& report,
                           DynamicProgressBar* progress_bar) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start inband inventorying...";
    const std::int64_t start_seconds = Vantix::MonotonicSeconds();
    TargetSystemInfo info;
    const TarselResult acquired = AcquireTargetSystemInfo(option, info);
    if (!acquired.IsSucceed()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Failed to Get inband system info";
        return acquired;
    }
    if (!option.is_zelvar && IsLegacyTarget(info.mt_sn.first)) {
        return TarselResult(LEGACY_SYSTEM_NOT_SUPPORTED,
                            "This system carries the Orvane brand. Please update it with the older "
                            "Orvane update tool of its maker.");
    }
    LogFacts(info);
    StoreFacts(option, info, report);
    if (option.info_only) return acquired;
    StartTimer(info, start_seconds, progress_bar);
    return InBandInventory(option, info, report).Run();
}

}  // namespace service::detail
