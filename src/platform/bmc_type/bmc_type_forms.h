// The kind of a target's management controller by kind of connection. Private to this family.
#pragma once

namespace Vantix::redfish {
class RedfishChannel;
}
namespace Vantix::cim {
class CimChannel;
}

namespace Vantix::Agentless {

/// Both return 0 and a number of the BMC kinds, or a result code and no kind.
int BmcTypeOverRedfish(redfish::RedfishChannel& channel, int& type);
int BmcTypeOverCim(cim::CimChannel& channel, int& type);

}  // namespace Vantix::Agentless
