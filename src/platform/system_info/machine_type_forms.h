// The forms of a question by kind of connection. Private to this family.
#pragma once

#include <string>
#include <utility>

namespace Vantix::redfish {
class RedfishChannel;
}
namespace Vantix::cim {
class CimChannel;
}

namespace Vantix::ipmi {
class IpmiChannel;
}

namespace Vantix::system_info {

/// All return 0 or a result code and fill (machine type, serial number).
int MachineTypeOverRedfish(redfish::RedfishChannel& channel,
                           std::pair<std::string, std::string>& mt_sn);
int MachineTypeOverCim(cim::CimChannel& channel, std::pair<std::string, std::string>& mt_sn);
int MachineTypeOverIpmi(ipmi::IpmiChannel& channel, std::pair<std::string, std::string>& mt_sn);
/// Fails only where nothing describes the machine; tells the user why its type is not known.
int MachineTypeOfLocalHost(std::pair<std::string, std::string>& mt_sn);

}  // namespace Vantix::system_info
