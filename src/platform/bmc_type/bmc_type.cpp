#include "platform/bmc_type/bmc_type.h"

#include "common/result/result_codes.h"
#include "platform/connection/redfish_errors.h"
#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix::Agentless {

using redfish::RedfishChannel;

OssaTypeAcquire::OssaTypeAcquire(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

int OssaTypeAcquire::GetOssaType(int& type) {
    type = redfish::kBmcKindNone;
    RedfishChannel* channel = RedfishChannel::Of(connection_);
    if (channel == nullptr) return CONNECTION_FAILED;
    const redfish::Resource* manager = channel->Managed().manager;
    if (channel->Run().IsCancelled()) return INTERRUPTED_BY_USER;
    // Without a readable manager the root alone tells the kind, unless nothing can be asked at all.
    if (manager == nullptr && channel->IsLoginLost()) {
        return VantixConnection::CodeOfReadFailure(channel->FactsFailure());
    }
    type = redfish::BmcKindOf(redfish::ReadBmcFacts(channel->Snapshot(), manager));
    return SUCCEED;
}

std::string OssaTypeAcquire::OssaTypeToString(int type) {
    return redfish::BmcKindText(type);
}

}  // namespace Vantix::Agentless
