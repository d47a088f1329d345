// Machine type and serial number of the machine that the scan runs on.

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/local/machine_identity.h"
#include "platform/system_info/machine_type_forms.h"

namespace Vantix::system_info {

int MachineTypeOfLocalHost(std::pair<std::string, std::string>& mt_sn) {
    const auto root = local::HostRoot();
    const local::MachineIdentity identity = local::ReadMachineIdentity(*root);
    mt_sn = {identity.machine_type, identity.serial_number};
    if (mt_sn.first.empty()) {
        VantixConnection::ActiveRun::Option().run->AddNotice(
            local::WhyUnknown(*root, "machine type"));
    }
    local::ReportDenied(*root);
    return identity.is_told ? SUCCEED : GET_MACHINE_TYPE_FAILED;
}

}  // namespace Vantix::system_info
