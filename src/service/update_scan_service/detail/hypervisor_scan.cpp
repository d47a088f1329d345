#include "service/update_scan_service/detail/hypervisor_scan.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/esxi/esxi.h"
#include "platform/identities/identities.h"
#include "platform/log/log.h"
#include "platform/os/os.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/bmc_type.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/identity_log.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixConnection::ConnectionInfo;

constexpr int kOsInfoAttempts = 3;
constexpr std::uint32_t kOsInfoPauseMilliseconds = 60000;

class HypervisorHostScan {
  public:
    HypervisorHostScan(const UpdateScanOption& option, UpdateScanReport& report,
                       const ConnectionInfo& connection)
        : option_(option), report_(report), connection_(connection) {}

    [[nodiscard]] TarselResult Run() {
        TarselResult result = PrepareHost();
        if (result.code != 0) return result;
        Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start ESXI inventorying...";
        result = ReadOsInfo();
        if (result.IsSucceed()) result = ReadMachineType();
        if (result.IsSucceed()) result = ReadIdentities();
        if (!result.IsSucceed()) return result;
        ReadBmcType();
        FillReport();
        return TarselResult(SUCCEED, "");
    }

  private:
    // Any number but 0 ends the scan, even one whose low half reads as a success.
    [[nodiscard]] TarselResult PrepareHost() const {
        if (Vantix::Agentless::EXSIInventory(connection_).IsUnSpportedEXSIVersion()) {
            return TarselResult(ESXI_INTERNAL_ERROR,
                                "Tarsel do not support this installed VMWare ESXi Version.");
        }
        Vantix::Log(3, kScanLogSource, __LINE__).Stream()
            << "Do preconfig for EXSI server first, which host is " << connection_.host;
        const int code = CIMServerConfig(connection_).PrevConfig();
        if (code != 0) {
            Vantix::Log(3, kScanLogSource, __LINE__).Stream()
                << "Failed to do preconfig for EXSI server with error is " << code;
        }
        return TarselResult(code, "");
    }

    [[nodiscard]] TarselResult ReadOsInfo() {
        TarselResult result(SUCCEED, "");
        for (int attempt = 1; attempt <= kOsInfoAttempts; ++attempt) {
            result = TarselResult(SystemInfoScan::GetEsxiOSInfo(connection_, os_arch_));
            if (result.IsSucceed()) return result;
            Pause(attempt);
        }
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to get EXSI OS info with error is " << result;
        return result;
    }

    // The last failed attempt is followed by a pause too, on purpose. Only who has asked the run to
    // stop is not kept waiting.
    void Pause(int attempt) const {
        const Vantix::VantixConnection::RunContext& run = *option_.connect_option.run;
        if (run.IsCancelled()) return;
        run.Activity("no answer about the system, waiting 60 seconds (" + std::to_string(attempt) +
                     " of " + std::to_string(kOsInfoAttempts) + ")");
        Vantix::SleepMilliseconds(kOsInfoPauseMilliseconds);
    }

    [[nodiscard]] TarselResult ReadMachineType() {
        TraceBegin(kTraceMachineType);
        TarselResult result(SystemInfoScan::GetMachineType(connection_, machine_type_));
        TraceEnd(kTraceMachineType, result.code);
        if (!result.IsSucceed()) {
            Vantix::Log(1, kScanLogSource, __LINE__).Stream()
                << "Failed to get EXSI MT with error is " << result;
        }
        return result;
    }

    [[nodiscard]] TarselResult ReadIdentities() {
        TraceBegin(kTraceSoftwareIdentities);
        Vantix::Agentless::AgentlessSoftwareIdentity inventory(connection_);
        TarselResult result(inventory.GetPLDMSoftwareIdentities(identities_));
        TraceEnd(kTraceSoftwareIdentities, result.code);
        if (result.IsSucceed() && !identities_.empty()) return result;
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to get software ID with error is " << result;
        return TarselResult(GET_FIRMWARE_INFO_FAILED, "");
    }

    void ReadBmcType() {
        if (AcquireBmcType(connection_, bmc_type_)) return;
        Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Failed to get BMC type";
    }

    void FillReport() const {
        report_.SetOS(os_arch_.first);
        report_.SetArch(os_arch_.second);
        report_.SetBmcType(bmc_type_);
        report_.SetMT(machine_type_.first);
        report_.SetScope(machine_type_.second);
        report_.SetScanCount(static_cast<int>(identities_.size()));
        AppendSoftwareIdentities(report_, identities_);
        LogIdentities("[ESXI Software Identity Information]", identities_);
    }

    const UpdateScanOption& option_;
    UpdateScanReport& report_;
    const ConnectionInfo& connection_;
    std::pair<std::string, std::string> os_arch_;
    std::pair<std::string, std::string> machine_type_;
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities_;
    std::string bmc_type_;
};

}  // namespace

TarselResult HypervisorScan(const UpdateScanOption& option, UpdateScanReport& report,
                            DynamicProgressBar* /*progress_bar*/) {
    std::vector<ConnectionInfo> connections;
    const TarselResult fetched = FetchCIMConnectionList(option.connect_option, connections);
    if (!fetched.IsSucceed()) return fetched;
    if (connections.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Get connections list fail.";
        return TarselResult(GENERIC_FAILURE, "");
    }
    return HypervisorHostScan(option, report, connections.front()).Run();
}

}  // namespace service::detail
