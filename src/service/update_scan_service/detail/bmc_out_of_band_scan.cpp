#include "service/update_scan_service/detail/bmc_out_of_band_scan.h"

#include <vector>

#include "common/result/result_codes.h"
#include "platform/broadcom_switch/broadcom_switch.h"
#include "platform/log/log.h"
#include "service/update_scan_service/detail/bmc_connection_scan.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixConnection::ConnectionInfo;

TarselResult ConnectionsListFailure() {
    Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Get connections list fail.";
    return TarselResult(GENERIC_FAILURE, "Get connections list fail.");
}

void ProbeSwitches(const ConnectionInfo& connection, UpdateScanReport& report) {
    Vantix::RedfishBroadComSwitch probe(connection);
    if (!probe.ExistUpdateableBroadcomSwitchDownStream()) return;
    report.SetSwitchDownstreamDevices("1");
    Vantix::Log(4, kScanLogSource, __LINE__).Stream()
        << "exist downstream devices behind broadcom switches.";
}

TarselResult ScanOverRest(BmcConnectionScan& scan, const ConnectionInfo& connection,
                          UpdateScanReport& report) {
    ProbeSwitches(connection, report);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Try scan via redfish.";
    return scan.Run(connection);
}

TarselResult ScanOverCim(BmcConnectionScan& scan, const UpdateScanOption& option,
                         std::vector<ConnectionInfo>& connections) {
    connections.clear();  // also ends the Redfish session, which many services allow only one of
    const TarselResult fetched = FetchCIMConnectionList(option.connect_option, connections);
    if (!fetched.IsSucceed()) return fetched;
    if (connections.empty()) return ConnectionsListFailure();
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Try cim scan.";
    return scan.Run(connections.front());
}

}  // namespace

TarselResult BmcOutOfBandScan(const UpdateScanOption& option, UpdateScanReport& report,
                              DynamicProgressBar* progress_bar) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start BMC inventorying...";
    report.SetOS("None");
    report.SetArch("None");

    std::vector<ConnectionInfo> connections;
    TarselResult result = GetRESTConnectionList(option.connect_option, connections);
    Vantix::SystemCheck system_check = MakeSystemCheck();
    BmcConnectionScan scan(option, report, progress_bar, system_check);

    const bool connected = result.IsSucceed() && !connections.empty();
    if (option.is_cfc_system || option.is_csp_system) {
        return connected ? ScanOverRest(scan, connections.front(), report)
                         : ConnectionsListFailure();
    }
    if (connected && system_check.IsRedfishSupported(connections.front())) {
        result = ScanOverRest(scan, connections.front(), report);
        if (result.IsSucceed()) return result;
    }
    if (!connections.empty() && system_check.IsTavroV3(connections.front())) return result;
    return ScanOverCim(scan, option, connections);
}

}  // namespace service::detail
