// The kind of a BMC over Redfish.

#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type_forms.h"
#include "platform/connection/redfish_errors.h"
#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix::Agentless {

int BmcTypeOverRedfish(redfish::RedfishChannel& channel, int& type) {
    const redfish::Resource* manager = channel.Managed().manager;
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    // Without a readable manager the root alone tells the kind, unless nothing can be asked at all.
    if (manager == nullptr && channel.IsLoginLost()) {
        return VantixConnection::CodeOfReadFailure(channel.FactsFailure());
    }
    type = redfish::BmcKindOf(redfish::ReadBmcFacts(channel.Snapshot(), manager));
    return SUCCEED;
}

}  // namespace Vantix::Agentless
