// The disks of this machine, as two operations of the system ask for them.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"

namespace Vantix::disk {

/// The disk inventory: appends every disk of the active run's machine, and remembers in the run
/// that they were told. RAID controllers whose own disks nobody asked for in this run are told to
/// it (raid_unasked.h). Returns 0, also without any disk, or INTERRUPTED_BY_USER.
int AppendDisks(std::vector<VantixOptions::SoftwareIdentity_>& list);

/// The same, but nothing when AppendDisks told them in this run already: who asks both lists one
/// after the other gets each disk once.
int AppendDisksNotTold(std::vector<VantixOptions::SoftwareIdentity_>& list);

}  // namespace Vantix::disk
