#include "service/update_scan_service/detail/target_system_info.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/log/log.h"
#include "platform/os/os.h"
#include "platform/system_check/system_check.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/bmc_type.h"
#include "service/update_scan_service/detail/redfish_restart_wait.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"

namespace service::detail {
namespace {

using namespace Vantix::VantixConnection;  // NOLINT(google-build-using-namespace): case names

constexpr ConnectCase kWalkOrder[] = {kConnectCaseRest, kConnectCaseCim, kConnectCaseIpmi,
                                      kConnectCaseLocal};
// Not the order of the walk, on purpose; a failure of the local case is never reported.
constexpr ConnectCase kReportOrder[] = {kConnectCaseIpmi, kConnectCaseRest, kConnectCaseCim};

TarselResult ReadOsInfo(TargetSystemInfo& info) {
    TraceBegin(kTraceOsInfo);
    TarselResult result(SystemInfoScan::GetOSInfo(info.os_arch, info.os_minor_version));
    TraceEnd(kTraceOsInfo, result.code);
    if (!result.IsSucceed()) {
        Vantix::Log(2, kScanLogSource, __LINE__).Stream()
            << "Failed to get OS info with error is " << result;
    }
    return result;
}

// What a failed look-up left behind is not taken over.
bool ReadMachineType(const ConnectionInfo& connection, TargetSystemInfo& info) {
    std::pair<std::string, std::string> mt_sn;
    TraceBegin(kTraceMachineType);
    const TarselResult result(SystemInfoScan::GetMachineType(connection, mt_sn));
    TraceEnd(kTraceMachineType, result.code);
    if (result.IsSucceed()) info.mt_sn = std::move(mt_sn);
    return result.IsSucceed();
}

std::string BmcTypeFromLists(const std::string& machine_type) {
    Vantix::SystemCheck system_check = MakeSystemCheck();
    if (system_check.IsCFCSystem(machine_type)) return "AMI";
    if (system_check.IsAMDSystem(machine_type)) return "AMI";
    if (system_check.IsGrantlySystem(machine_type)) return "Ossa2";
    return "Tavro";
}

TarselResult FetchConnections(ConnectCase connect_case, const ConnectOption& option,
                              std::vector<ConnectionInfo>& connections) {
    switch (connect_case) {
        case kConnectCaseRest:
            return GetRESTConnectionList(option, connections);
        case kConnectCaseCim:
            return FetchCIMConnectionList(option, connections);
        case kConnectCaseIpmi:
            return FetchIPMIConnectionList(option, connections);
        default:
            connections.assign(1, ConnectionInfo());  // the local host
            return TarselResult(SUCCEED);
    }
}

bool IsComplete(const TargetSystemInfo& info) {
    return !info.mt_sn.first.empty() && !info.bmc_type.empty();
}

TarselResult NothingTold() {
    return TarselResult(INTERNAL_ERROR, "Failed to get system info");
}

TarselResult AcquireFromLists(TargetSystemInfo& info) {
    const bool read = ReadMachineType(ConnectionInfo(), info);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Finished to get machine type with bool:" << read << "Machine type:" << info.mt_sn.first;
    info.bmc_type = BmcTypeFromLists(info.mt_sn.first);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Finished to get bmc type with bool:" << !info.bmc_type.empty();
    return read && IsComplete(info) ? TarselResult(SUCCEED, "") : NothingTold();
}

/// One walk over the kinds of connection. Counter and clock live no longer than the walk.
class ConnectCaseWalk {
  public:
    ConnectCaseWalk(const ConnectOption& option, TargetSystemInfo& info)
        : option_(option),
          info_(info),
          start_seconds_(Vantix::MonotonicSeconds()),
          system_check_(MakeSystemCheck()) {}

    [[nodiscard]] TarselResult Run() {
        for (const ConnectCase connect_case : kWalkOrder) {
            if (const std::optional<TarselResult> end = Visit(connect_case)) return *end;
        }
        return IsComplete(info_) ? TarselResult(SUCCEED, "") : FirstStoredFailure();
    }

  private:
    /// The result of the whole walk, when it ends here.
    [[nodiscard]] std::optional<TarselResult> Visit(ConnectCase connect_case) {
        Vantix::Log(3, kScanLogSource, __LINE__).Stream()
            << "Try to get system info on case:" << static_cast<std::int32_t>(connect_case);
        std::vector<ConnectionInfo> connections;
        const TarselResult fetched = FetchConnections(connect_case, option_, connections);
        if (RefusesForGood(connect_case, fetched)) {
            Vantix::Log(2, kScanLogSource, __LINE__).Stream()
                << "Failed to get connection info becasue of auth failed.";  // kept spelling
            return fetched;
        }
        if (!fetched.IsSucceed() || connections.empty()) {
            results_.insert_or_assign(connect_case, fetched);
            Vantix::Log(2, kScanLogSource, __LINE__).Stream()
                << "Failed to get connection info for case:"
                << static_cast<std::int32_t>(connect_case) << " with error is " << fetched;
            return std::nullopt;
        }
        if (connect_case == kConnectCaseRest && !RedfishAnswers(connections.front())) {
            return std::nullopt;
        }
        return Ask(connections.front());
    }

    // A wrong password stays wrong, and further attempts lock accounts; IPMI passwords may differ.
    [[nodiscard]] static bool RefusesForGood(ConnectCase connect_case,
                                             const TarselResult& fetched) {
        return (fetched == AUTHENTICATION_FAILED || fetched == KCS_CONNECT_FAILED) &&
               (connect_case == kConnectCaseRest || connect_case == kConnectCaseCim);
    }

    [[nodiscard]] bool RedfishAnswers(const ConnectionInfo& connection) {
        WaitForRedfishRestart(system_check_, connection, ++rest_attempts_, start_seconds_);
        info_.redfish_supported = system_check_.IsRedfishSupported(connection);
        if (!info_.redfish_supported) {
            Vantix::Log(2, kScanLogSource, __LINE__).Stream()
                << "Redfish is not supported, continue with next connect case.";
        }
        return info_.redfish_supported;
    }

    [[nodiscard]] std::optional<TarselResult> Ask(const ConnectionInfo& connection) {
        if (info_.mt_sn.first.empty()) {
            const bool read = ReadMachineType(connection, info_);
            Vantix::Log(3, kScanLogSource, __LINE__).Stream()
                << "Finished to get machine type with bool:" << read;
        }
        if (info_.bmc_type.empty()) {
            const bool read = AcquireBmcType(connection, info_.bmc_type);
            Vantix::Log(3, kScanLogSource, __LINE__).Stream()
                << "Finished to get bmc type with bool:" << read;
        }
        if (!IsComplete(info_)) return std::nullopt;
        Vantix::Log(3, kScanLogSource, __LINE__).Stream()
            << "Both machine type and BMC type have been got sucessfully.";  // kept spelling
        return TarselResult(SUCCEED, "");
    }

    [[nodiscard]] TarselResult FirstStoredFailure() const {
        for (const ConnectCase connect_case : kReportOrder) {
            const auto stored = results_.find(connect_case);
            if (stored != results_.end() && !stored->second.IsSucceed()) return stored->second;
        }
        return NothingTold();
    }

    const ConnectOption& option_;
    TargetSystemInfo& info_;
    const std::int64_t start_seconds_;
    Vantix::SystemCheck system_check_;
    int rest_attempts_ = 0;
    std::unordered_map<std::int32_t, TarselResult> results_ = {
        {kConnectCaseIpmi, TarselResult(SUCCEED)},
        {kConnectCaseRest, TarselResult(SUCCEED)},
        {kConnectCaseCim, TarselResult(SUCCEED)},
        {kConnectCaseLocal, TarselResult(SUCCEED)}};
};

}  // namespace

TarselResult AcquireTargetSystemInfo(const UpdateScanOption& option, TargetSystemInfo& info) {
    info.redfish_supported = false;
    const TarselResult os_info = ReadOsInfo(info);
    if (!os_info.IsSucceed()) return os_info;
    if (IsComplete(info)) {
        info.redfish_supported = info.bmc_type == "Tavro";
        return TarselResult(SUCCEED, "");
    }
    if (option.scan_type == "dd") return AcquireFromLists(info);
    return ConnectCaseWalk(option.connect_option, info).Run();
}

}  // namespace service::detail
