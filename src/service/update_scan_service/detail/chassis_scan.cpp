#include "service/update_scan_service/detail/chassis_scan.h"

#include <vector>

#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/module_firmware.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {

TarselResult ChassisScan(const UpdateScanOption& option, UpdateScanReport& report,
                         DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start Tolv inventorying...";
    std::vector<Vantix::VantixConnection::ConnectionInfo> connections;
    const TarselResult fetched = FetchCIMConnectionList(option.connect_option, connections);
    if (!fetched.IsSucceed()) return fetched;
    if (connections.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Get connections list fail.";
        return TarselResult(GENERIC_FAILURE, "");
    }

    std::vector<TolvInfo> components;
    TraceBegin(kTraceChassisInventory);
    const TarselResult read(
        SystemInfoScan::GetTolvSoftwareIdentity(connections.front(), components));
    TraceEnd(kTraceChassisInventory, read.code);
    if (read != SUCCEED) return TarselResult(GENERIC_FAILURE, "");
    StoreChassisFirmware(report, ToModuleFirmware(components));
    return TarselResult(SUCCEED, "");
}

}  // namespace service::detail
