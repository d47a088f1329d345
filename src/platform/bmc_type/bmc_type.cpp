#include "platform/bmc_type/bmc_type.h"

#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type_forms.h"
#include "platform/cim/cim_channel.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix::Agentless {

OssaTypeAcquire::OssaTypeAcquire(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

int OssaTypeAcquire::GetOssaType(int& type) {
    type = redfish::kBmcKindNone;
    if (auto* channel = redfish::RedfishChannel::Of(connection_)) {
        return BmcTypeOverRedfish(*channel, type);
    }
    if (auto* channel = cim::CimChannel::Of(connection_)) return BmcTypeOverCim(*channel, type);
    // The local host's BMC is asked through its system interface.
    VantixConnection::ConnectionInfo connection = connection_;
    if (connection.connect_case == VantixConnection::kConnectCaseLocal) {
        connection.connect_case = VantixConnection::kConnectCaseIpmi;
    }
    if (const auto channel = ipmi::IpmiChannel::Of(connection)) {
        return BmcTypeOverIpmi(*channel, type);
    }
    return CONNECTION_FAILED;
}

std::string OssaTypeAcquire::OssaTypeToString(int type) {
    return redfish::BmcKindText(type);
}

}  // namespace Vantix::Agentless
