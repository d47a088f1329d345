// The questions about a Redfish service itself.

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

bool SystemCheck::IsRedfishServiceStarting(const ConnectionInfo& connection,
                                           const std::string& path) {
    RedfishChannel* channel = RedfishChannel::Of(connection);
    return channel != nullptr && channel->IsStarting(path);
}

}  // namespace Vantix
