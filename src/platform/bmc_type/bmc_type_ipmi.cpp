// The kind of a BMC over IPMI.

#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type_forms.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_facts.h"

namespace Vantix::Agentless {

int BmcTypeOverIpmi(ipmi::IpmiChannel& channel, int& type) {
    const transport::FruData& fru = channel.MainFru();
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    type = ipmi::BmcKindOf(channel.Device(), fru);
    return SUCCEED;
}

}  // namespace Vantix::Agentless
