// Machine type and serial number over Redfish.

#include "common/result/result_codes.h"
#include "platform/connection/redfish_errors.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_info/machine_type_forms.h"

namespace Vantix::system_info {

int MachineTypeOverRedfish(redfish::RedfishChannel& channel,
                           std::pair<std::string, std::string>& mt_sn) {
    const redfish::ManagedSystem& managed = channel.Managed();
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    const auto& failure = channel.FactsFailure();
    const bool is_missing = failure.problem == transport::RedfishProblem::kNotFound;
    if (managed.system == nullptr && failure && !is_missing) {
        channel.Remember(failure);
        return VantixConnection::CodeOfReadFailure(failure);
    }
    mt_sn = {managed.machine_type, managed.serial_number};
    return SUCCEED;
}

}  // namespace Vantix::system_info
