// Firmware of the local host's disks, as in-band libraries see them.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"

namespace Vantix {
namespace IBDISKSW {

class IBDiskSoftwareIdentity {
  public:
    /// Appends one identity a disk. Returns 0 (also when there is no disk) or a result code.
    int GetDiskSoftwareIdentity(std::vector<VantixOptions::SoftwareIdentity_>& list);
};

}  // namespace IBDISKSW
}  // namespace Vantix
