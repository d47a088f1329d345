// The inventory of a target by kind of connection. Private to this family.
#pragma once

#include <string>
#include <vector>

#include "platform/identities/software_identity.h"

namespace Vantix::redfish {
class RedfishChannel;
}
namespace Vantix::cim {
class CimChannel;
}

namespace Vantix::Agentless {

/// Append what could be read, without components that cannot be updated unless `all`; 0, or the
/// code of what kept the list from being complete.
int IdentitiesOverRedfish(redfish::RedfishChannel& channel,
                          std::vector<VantixOptions::SoftwareIdentity_>& list, bool all);
int IdentitiesOverCim(cim::CimChannel& channel, std::vector<VantixOptions::SoftwareIdentity_>& list,
                      bool all);

/// The devices of the target as text, one a line.
std::string DevicesOverRedfish(redfish::RedfishChannel& channel);

}  // namespace Vantix::Agentless
