// What the local host says of itself.

#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/local/machine_identity.h"
#include "platform/system_check/system_check.h"
#include "platform/system_info/system_info.h"

namespace Vantix {

bool SystemCheck::GetUEFIVersion(std::string& version) {
    const auto root = local::HostRoot();
    version = local::ReadFirmwareVersion(*root);
    if (version.empty()) {
        VantixConnection::ActiveRun::Option().run->AddNotice(
            local::WhyUnknown(*root, "UEFI or BIOS version"));
    }
    local::ReportDenied(*root);
    return !version.empty();
}

int SystemCheck::GetMachineType(std::pair<std::string, std::string>& mt_sn) {
    return SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn);
}

}  // namespace Vantix
