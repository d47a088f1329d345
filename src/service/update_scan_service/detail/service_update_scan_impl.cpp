#include "service/update_scan_service/detail/service_update_scan_impl.h"

#include <algorithm>
#include <iterator>

#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/progress/progress.h"
#include "service/update_scan_service/detail/amd_platform_scan.h"
#include "service/update_scan_service/detail/bmc_out_of_band_scan.h"
#include "service/update_scan_service/detail/chassis_scan.h"
#include "service/update_scan_service/detail/enclosure_scan.h"
#include "service/update_scan_service/detail/hypervisor_scan.h"
#include "service/update_scan_service/detail/in_band_bmc_scan.h"
#include "service/update_scan_service/detail/io_switch_scan.h"
#include "service/update_scan_service/detail/local_host_scan.h"
#include "service/update_scan_service/detail/remote_os_scan.h"
#include "service/update_scan_service/detail/result_cleanup.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using namespace Vantix::VantixConnection;  // NOLINT(google-build-using-namespace): mode names

using ScanPath = TarselResult (*)(const UpdateScanOption& option, UpdateScanReport& report,
                                  DynamicProgressBar* progress_bar);

struct ScanPathOfMode {
    int connect_mode;
    ScanPath scan_path;
};

constexpr ScanPathOfMode kScanPaths[] = {
    {kConnectModeInbandBmc, InBandBmcScan},      {kConnectModeOobBmc, BmcOutOfBandScan},
    {kConnectModeChassis, ChassisScan},          {kConnectModeEsxi, HypervisorScan},
    {kConnectModeIoSwitch, IoSwitchScan},        {kConnectModeOobBmcSecond, BmcOutOfBandScan},
    {kConnectModeOobBmcThird, BmcOutOfBandScan}, {kConnectModeEnclosure, EnclosureScan},
    {kConnectModeAmd, AmdPlatformScan},          {kConnectModeRemoteOs, RemoteOsScan},
    {kConnectModeAmdSecond, AmdPlatformScan},    {kConnectModeAmdThird, AmdPlatformScan},
    {kConnectModeInbandLocal, LocalHostScan},
};

// Nothing for modes without a path: 0, 10, 12, 14 and all beyond 16.
ScanPath FindScanPath(int connect_mode) {
    const auto* const entry = std::find_if(
        std::begin(kScanPaths), std::end(kScanPaths),
        [&](const ScanPathOfMode& candidate) { return candidate.connect_mode == connect_mode; });
    return entry == std::end(kScanPaths) ? nullptr : entry->scan_path;
}

void ReportOutcome(const TarselResult& result, DynamicProgressBar* progress_bar) {
    if (progress_bar == nullptr) return;
    if (result.IsSucceed()) {
        progress_bar->SetStage(1, "Scanning finished.");
    } else {
        progress_bar->ReportStageFailure(0, "Scan failed.");
    }
}

}  // namespace

ServiceUpdateScanImpl::ServiceUpdateScanImpl(const UpdateScanOption& option)
    : option_(option), last_result_(0, "") {}

TarselResult ServiceUpdateScanImpl::Run(UpdateScanReport& report) {
    LogOptions();
    const ActiveRun active_run(option_.connect_option);
    TarselResult result = Dispatch(report);
    RemoveOemItems(report);
    DistinguishDuplicateNames(report);
    return result;
}

void ServiceUpdateScanImpl::LogOptions() const {
    Vantix::Log log(3, kScanLogSource, __LINE__);
    std::ostream& out = log.Stream();
    out << std::boolalpha << "scan options are"
        << "\n        : connect_mode       = " << option_.connect_option.connect_mode
        << "\n        : bay_id             = " << option_.bay_id
        << "\n        : is_zelvar          = " << option_.is_zelvar
        << "\n        : is_check_device    = " << option_.is_check_device
        << "\n        : is_cfc_system      = " << option_.is_cfc_system
        << "\n        : is_csp_system      = " << option_.is_csp_system
        << "\n        : output_dir         = " << option_.output_dir
        << "\n        : package_dir        = " << option_.package_dir
        << std::noboolalpha;  // the stream may be shared by later records
}

TarselResult ServiceUpdateScanImpl::Dispatch(UpdateScanReport& report) const {
    const int connect_mode = option_.connect_option.connect_mode;
    if (progress_bar_ != nullptr) {
        progress_bar_->SetStageCount(1);
        progress_bar_->SetStage(0, "Scanning...");
    }
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Try to call suitable scan interface by connection mode:" << connect_mode;
    TarselResult result(SUCCEED, "");
    if (const ScanPath scan_path = FindScanPath(connect_mode)) {
        result = scan_path(option_, report, progress_bar_);
    } else {
        result = TarselResult(GENERIC_FAILURE);
    }
    ReportOutcome(result, progress_bar_);
    return result;
}

}  // namespace service::detail
