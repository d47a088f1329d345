// The questions that a BMC answers, by kind of connection.

#include "platform/cim/cim_channel.h"
#include "platform/cim/system_reader.h"
#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_check/system_check.h"

namespace Vantix {

using cim::CimChannel;
using redfish::RedfishChannel;

namespace {

// Null when the service shows no controller or cannot be asked.
const transport::CimInstance* ControllerOver(CimChannel& channel) {
    static_cast<void>(channel.Need({cim::CimSource::kSystems}));
    return cim::FindController(channel.Snapshot());
}

}  // namespace

bool SystemCheck::IsTavroV3(const ConnectionInfo& connection) {
    if (RedfishChannel* channel = RedfishChannel::Of(connection)) {
        const redfish::Resource* manager = channel->Managed().manager;
        return redfish::IsThirdGenerationTavro(redfish::ReadBmcFacts(channel->Snapshot(), manager));
    }
    if (CimChannel* channel = CimChannel::Of(connection)) {
        return redfish::IsThirdGenerationTavro(cim::ReadControllerFacts(ControllerOver(*channel)));
    }
    return false;
}

std::string SystemCheck::GetReleaseName(const ConnectionInfo& connection) {
    if (RedfishChannel* channel = RedfishChannel::Of(connection)) {
        return redfish::ReadReleaseName(channel->Managed().manager);
    }
    CimChannel* channel = CimChannel::Of(connection);
    const transport::CimInstance* controller =
        channel == nullptr ? nullptr : ControllerOver(*channel);
    return controller == nullptr ? std::string() : controller->Text("ReleaseName");
}

}  // namespace Vantix
