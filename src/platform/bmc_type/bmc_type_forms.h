// The kind of a target's management controller by kind of connection. Private to this family.
#pragma once

namespace Vantix::redfish {
class RedfishChannel;
}
namespace Vantix::cim {
class CimChannel;
}

namespace Vantix::ipmi {
class IpmiChannel;
}

namespace Vantix::Agentless {

/// All return 0 and a number of the BMC kinds, or a result code and no kind.
int BmcTypeOverRedfish(redfish::RedfishChannel& channel, int& type);
int BmcTypeOverCim(cim::CimChannel& channel, int& type);
int BmcTypeOverIpmi(ipmi::IpmiChannel& channel, int& type);

}  // namespace Vantix::Agentless
