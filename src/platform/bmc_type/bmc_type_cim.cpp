// The kind of a BMC over CIM.

#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type_forms.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/system_reader.h"
#include "platform/redfish/bmc_kind.h"

namespace Vantix::Agentless {

int BmcTypeOverCim(cim::CimChannel& channel, int& type) {
    const transport::CimFailure failure = channel.Need({cim::CimSource::kSystems});
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    if (failure && !failure.IsElsewhere()) return channel.Remember(failure).code;
    const transport::CimInstance* controller = cim::FindController(channel.Snapshot());
    // A BMC that answers is one, whatever it shows; a hypervisor is none.
    if (controller == nullptr && channel.Kind() != cim::CimTargetKind::kBmc) {
        return NO_APPLICABLE_HARDWARE;
    }
    type = redfish::BmcKindOf(cim::ReadControllerFacts(controller));
    return SUCCEED;
}

}  // namespace Vantix::Agentless
