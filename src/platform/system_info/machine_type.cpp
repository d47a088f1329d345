// Machine type and serial number of a target.

#include "common/result/result_codes.h"
#include "platform/connection/redfish_errors.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_info/system_info.h"

using Vantix::redfish::RedfishChannel;

int SystemInfoScan::GetMachineType(const ConnectionInfo& connection,
                                   std::pair<std::string, std::string>& mt_sn) {
    mt_sn = {};
    RedfishChannel* channel = RedfishChannel::Of(connection);
    if (channel == nullptr) return GET_MACHINE_TYPE_FAILED;
    const Vantix::redfish::ManagedSystem& managed = channel->Managed();
    if (channel->Run().IsCancelled()) return INTERRUPTED_BY_USER;
    const auto& failure = channel->FactsFailure();
    const bool is_missing = failure.problem == Vantix::transport::RedfishProblem::kNotFound;
    if (managed.system == nullptr && failure && !is_missing) {
        channel->Remember(failure);
        return Vantix::VantixConnection::CodeOfReadFailure(failure);
    }
    mt_sn = {managed.machine_type, managed.serial_number};
    return SUCCEED;
}
