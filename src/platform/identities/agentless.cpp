// The firmware inventory of a target, by kind of connection.

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/identities/agentless_forms.h"
#include "platform/identities/identities.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix::Agentless {

using VantixOptions::SoftwareIdentity_;

AgentlessSoftwareIdentity::AgentlessSoftwareIdentity(
    const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

int AgentlessSoftwareIdentity::GetPLDMSoftwareIdentities(std::vector<SoftwareIdentity_>& list) {
    return GetSoftwareIdentities(list, true);
}

int AgentlessSoftwareIdentity::GetSoftwareIdentities(std::vector<SoftwareIdentity_>& list,
                                                     bool all) {
    if (auto* channel = redfish::RedfishChannel::Of(connection_)) {
        return IdentitiesOverRedfish(*channel, list, all);
    }
    if (auto* channel = cim::CimChannel::Of(connection_)) {
        return IdentitiesOverCim(*channel, list, all);
    }
    return CONNECTION_FAILED;
}

std::string AgentlessSoftwareIdentity::GetInventoryList() {
    auto* channel = redfish::RedfishChannel::Of(connection_);
    return channel == nullptr ? std::string() : DevicesOverRedfish(*channel);
}

}  // namespace Vantix::Agentless
