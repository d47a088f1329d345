#include "service/update_scan_service/detail/bmc_connection_scan.h"

#include <iterator>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/estimate/estimate.h"
#include "platform/identities/identities.h"
#include "platform/log/log.h"
#include "platform/pmem/pmem.h"
#include "platform/progress/progress.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/bmc_type.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/identity_log.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/detail/version_normalization.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {

using Vantix::VantixConnection::ConnectionInfo;

BmcConnectionScan::BmcConnectionScan(const UpdateScanOption& option, UpdateScanReport& report,
                                     DynamicProgressBar* progress_bar,
                                     Vantix::SystemCheck& system_check)
    : option_(option), report_(report), progress_bar_(progress_bar), system_check_(system_check) {}

TarselResult BmcConnectionScan::Run(const ConnectionInfo& connection) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Run Ossa Scan with connect case:" << connection.connect_case;
    const TarselResult result = AcquireMachineType(connection);
    // Only Redfish tells the name; a scan over another connection must not keep an earlier one.
    report_.SetBmcReleaseName(connection.connect_case == Vantix::VantixConnection::kConnectCaseRest
                                  ? system_check_.GetReleaseName(connection)
                                  : std::string());
    if (result != SUCCEED) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to get Ossa MT with error is " << result;
        return result;
    }
    if (option_.info_only) {
        StorePlatform("", 0);
        return result;
    }
    if (!option_.is_zelvar && IsLegacySystem(system_check_, machine_type_)) {
        // The refusal leads to another connection, whose failure would be all that a user sees.
        option_.connect_option.run->AddNotice(
            "The system carries the Orvane brand and is not scanned; use the older Orvane update "
            "tool of its maker.");
        return TarselResult(LEGACY_SYSTEM_NOT_SUPPORTED, "");
    }
    return TakeInventory(connection);
}

TarselResult BmcConnectionScan::AcquireMachineType(const ConnectionInfo& connection) {
    std::pair<std::string, std::string> machine_type;
    TraceBegin(kTraceMachineType);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Get machine type.";
    const TarselResult result(SystemInfoScan::GetMachineType(connection, machine_type));
    TraceEnd(kTraceMachineType, result.code);
    machine_type_ = std::move(machine_type.first);
    serial_number_ = std::move(machine_type.second);
    return result;
}

TarselResult BmcConnectionScan::TakeInventory(const ConnectionInfo& connection) {
    std::string bmc_type;
    if (!AcquireBmcType(connection, bmc_type)) {
        Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Failed to get bmc type";
        return TarselResult(INTERNAL_ERROR, "Failed to get BMC type.");
    }
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "BMC type: " << bmc_type;
    StartTimer();

    TraceBegin(kTraceBmcInventory);
    Identities identities = ReadIdentities(connection);
    if (bmc_type == "Tavro" &&
        connection.connect_case == Vantix::VantixConnection::kConnectCaseCim) {
        AppendPersistentMemory(identities);
    }
    TraceEnd(kTraceBmcInventory, identities.empty() ? GET_FIRMWARE_INFO_FAILED : SUCCEED);
    if (identities.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to get scan with connect case:" << connection.connect_case;
        return TarselResult(GET_FIRMWARE_INFO_FAILED, "");
    }
    StorePlatform(bmc_type, static_cast<int>(identities.size()));
    AppendSoftwareIdentities(report_, identities);
    LogIdentities(kAgentlessIdentityHeading, identities);
    return TarselResult(SUCCEED, "");
}

void BmcConnectionScan::StartTimer() const {
    const int seconds =
        TimeEstimation::getInstance()->GetScanOOBTimeEstimation("None_None", machine_type_);
    if (progress_bar_ != nullptr) progress_bar_->SetTimerInterval(seconds * 10);
}

BmcConnectionScan::Identities BmcConnectionScan::ReadIdentities(
    const ConnectionInfo& connection) const {
    Identities identities;
    Vantix::Agentless::AgentlessSoftwareIdentity inventory(connection);
    const int code = inventory.GetPLDMSoftwareIdentities(identities);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Agentless SoftwareIdentity ret:" << code
        << " with connect case:" << connection.connect_case;
    if (identities.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to get GetPLDMSoftwareIdentities";
    }
    NormalizeVersions(identities, option_.is_cfc_system, option_.is_csp_system);
    return identities;
}

// CIM does not tell of persistent memory, so Redfish is asked for it; a target without Redfish
// goes without, in silence.
void BmcConnectionScan::AppendPersistentMemory(Identities& identities) const {
    std::vector<ConnectionInfo> connections;
    const TarselResult fetched = GetRESTConnectionList(option_.connect_option, connections);
    if (!fetched.IsSucceed() || connections.empty()) return;
    Identities modules;
    PmemManger().GetSoftwareIdentity(connections.front(), modules);
    if (modules.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Failed to get Ossa AEP driver.";
        return;
    }
    identities.insert(identities.end(), std::make_move_iterator(modules.begin()),
                      std::make_move_iterator(modules.end()));
}

void BmcConnectionScan::StorePlatform(const std::string& bmc_type, int scan_count) const {
    report_.SetBmcType(bmc_type);
    report_.SetMT(machine_type_);
    report_.SetScope(serial_number_);
    report_.SetScanCount(scan_count);
}

}  // namespace service::detail
