#include "service/update_scan_service/detail/identity_log.h"

#include "platform/log/log.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {

void LogIdentities(const char* heading,
                   const std::vector<Vantix::VantixOptions::SoftwareIdentity_>& identities) {
    for (const Vantix::VantixOptions::SoftwareIdentity_& identity : identities) {
        Vantix::Log log(4, kScanLogSource, __LINE__);
        log.Stream() << heading << '\n';
        DumpSoftwareIdentity(log.Stream(), identity);
    }
}

}  // namespace service::detail
