#include "service/update_scan_service/detail/redfish_restart_wait.h"

#include "platform/config/config.h"
#include "platform/log/log.h"
#include "platform/os/os.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {

void WaitForRedfishRestart(Vantix::SystemCheck& system_check,
                           const Vantix::VantixConnection::ConnectionInfo& connection, int attempt,
                           std::int64_t start_seconds) {
    constexpr int kDefaultMinutes = 5;
    if (attempt < 2) return;
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Retry on REST again(the " << attempt << " times)";
    const int minutes =
        Vantix::GetGlobalConfigValue("BMC_REDFISH_WAIT_RESTARTING_TIME", kDefaultMinutes);
    while (system_check.IsRedfishServiceStarting(connection, "/redfish/v1/UpdateService") &&
           (Vantix::MonotonicSeconds() - start_seconds) / 60 < minutes) {
        Vantix::SleepMilliseconds(10000);
    }
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "The retry for REST finished.";
}

}  // namespace service::detail
