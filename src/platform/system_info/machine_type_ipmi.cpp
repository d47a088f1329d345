// Machine type and serial number over IPMI: from the machine's own FRU.

#include "common/result/result_codes.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_facts.h"
#include "platform/system_info/machine_type_forms.h"

namespace Vantix::system_info {

int MachineTypeOverIpmi(ipmi::IpmiChannel& channel, std::pair<std::string, std::string>& mt_sn) {
    const transport::FruData& fru = channel.MainFru();
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    if (fru.IsEmpty() && channel.LastFailure()) return GET_MACHINE_TYPE_FAILED;
    mt_sn = {ipmi::MachineTypeOf(fru), ipmi::SerialNumberOf(fru)};
    return SUCCEED;
}

}  // namespace Vantix::system_info
