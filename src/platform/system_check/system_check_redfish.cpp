// The questions that a Redfish service answers.

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_check/system_check.h"
#include "transport/redfish/json_fields.h"

namespace Vantix {

using redfish::RedfishChannel;
namespace json = transport::json;

// An old service without an update service is completed from its other resources, so that any of
// the collections with versions in them makes a service worth scanning.
bool SystemCheck::IsRedfishSupported(const ConnectionInfo& connection) {
    RedfishChannel* channel = RedfishChannel::Of(connection);
    if (channel == nullptr) return false;
    const auto& root = channel->Root();
    if (json::Text(root, "RedfishVersion").empty()) return false;
    for (const char* name : {"UpdateService", "Systems", "Managers", "Chassis"}) {
        if (!json::Link(root, name).empty()) return true;
    }
    return false;
}

bool SystemCheck::IsTavroV3(const ConnectionInfo& connection) {
    RedfishChannel* channel = RedfishChannel::Of(connection);
    if (channel == nullptr) return false;
    const redfish::Resource* manager = channel->Managed().manager;
    return redfish::IsThirdGenerationTavro(redfish::ReadBmcFacts(channel->Snapshot(), manager));
}

std::string SystemCheck::GetReleaseName(const ConnectionInfo& connection) {
    RedfishChannel* channel = RedfishChannel::Of(connection);
    return channel == nullptr ? std::string()
                              : redfish::ReadReleaseName(channel->Managed().manager);
}

bool SystemCheck::IsRedfishServiceStarting(const ConnectionInfo& connection,
                                           const std::string& path) {
    RedfishChannel* channel = RedfishChannel::Of(connection);
    return channel != nullptr && channel->IsStarting(path);
}

}  // namespace Vantix
