// Machine type and serial number over CIM.

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/system_reader.h"
#include "platform/system_info/machine_type_forms.h"

namespace Vantix::system_info {

int MachineTypeOverCim(cim::CimChannel& channel, std::pair<std::string, std::string>& mt_sn) {
    const transport::CimFailure failure =
        channel.Need({cim::CimSource::kSystems, cim::CimSource::kChassis});
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    mt_sn = cim::ReadMachine(channel.Snapshot());
    if (!mt_sn.first.empty()) return SUCCEED;
    if (failure && !failure.IsElsewhere()) return channel.Remember(failure).code;
    return mt_sn.second.empty() ? GET_MACHINE_TYPE_FAILED : SUCCEED;
}

}  // namespace Vantix::system_info
