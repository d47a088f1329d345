// Firmware of persistent-memory modules.
#pragma once

#include <vector>

#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"

/// Kept spelling of the class name. Both functions append to the list and return 0 or a result
/// code; a system without such modules is a success that appends nothing.
class PmemManger {
  public:
    /// Memory modules that the target's Redfish service reports (DSP0268, Memory).
    int GetSoftwareIdentity(const Vantix::VantixConnection::ConnectionInfo& connection,
                            std::vector<Vantix::VantixOptions::SoftwareIdentity_>& list);
    /// Modules of the local host, in the form of the other one (nvdimm_facts.h). A module whose
    /// firmware revision nobody tells is appended with an empty VersionString.
    int GetSoftwareIdentity(std::vector<Vantix::VantixOptions::SoftwareIdentity_>& list);
};
