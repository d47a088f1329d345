#include "service/update_scan_service/detail/io_switch_scan.h"

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/log/log.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/detail/module_firmware.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {

TarselResult IoSwitchScan(const UpdateScanOption& option, UpdateScanReport& report,
                          DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start IOSwitch inventorying...";
    std::vector<Vantix::VantixConnection::ConnectionInfo> connections;
    const TarselResult fetched = FetchCIMConnectionList(option.connect_option, connections);
    if (!fetched.IsSucceed()) return fetched;
    if (connections.empty()) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream() << "Get connections list fail.";
        return TarselResult(GENERIC_FAILURE, "");
    }

    std::vector<SwitchInfo> components;
    TraceBegin(kTraceSwitchInventory);
    const TarselResult read(SystemInfoScan::GetSwitchSoftwareIdentity(
        connections.front(), std::to_string(option.bay_id), components));
    TraceEnd(kTraceSwitchInventory, read.code);
    if (read != SUCCEED) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Failed to GetSwitchSoftwareIdentity with error is " << read;
        return TarselResult(GENERIC_FAILURE, "");
    }
    StoreChassisFirmware(report, ToModuleFirmware(components));
    return TarselResult(SUCCEED, "");
}

}  // namespace service::detail
