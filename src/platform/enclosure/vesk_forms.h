// What an enclosure management module tells, by kind of connection. Private to this family.
//
// Unknown texts are empty; whether that is a failure is the caller's matter.
#pragma once

#include <string>
#include <vector>

#include "platform/enclosure/enclosure.h"

namespace Vantix::redfish {
class RedfishChannel;
}
namespace Vantix::ipmi {
class IpmiChannel;
}

namespace Vantix::enclosure {

struct ModuleFacts {
    std::string machine_type;
    std::string serial_number;
    std::string firmware_version;
};

ModuleFacts FactsOverRedfish(redfish::RedfishChannel& channel);
ModuleFacts FactsOverIpmi(ipmi::IpmiChannel& channel);

struct PowerSupplies {
    std::vector<PSUFwInfo> list;
    bool is_complete = false;
};

/// The power supplies that are there, in the order in which the service lists them. Reserved is the
/// maker. Over IPMI the version is the FRU's product version: power supplies have no other there.
PowerSupplies PowerSuppliesOverRedfish(redfish::RedfishChannel& channel);
PowerSupplies PowerSuppliesOverIpmi(ipmi::IpmiChannel& channel);

}  // namespace Vantix::enclosure
