// Firmware of the local host's disks, as in-band libraries see them.
//
// Every disk with firmware of its own in this machine that the kernel shows: NVMe, SAS, SATA, eMMC,
// single physical disks behind a RAID controller included. Deliberately not here: logical volumes,
// disks on networks and on USB, a hypervisor's disks, and disks that a RAID controller keeps to
// itself (raid.h).
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"

namespace Vantix {
namespace IBDISKSW {

class IBDiskSoftwareIdentity {
  public:
    /// Appends one identity a disk: NVMe, then SCSI addresses, then eMMC, in natural order. Name,
    /// SoftwareID and PartNumber are the model number, by which disks are ordered and matched;
    /// VersionString the firmware revision that runs; slot the bay where it is known, for an NVMe
    /// disk also its PCI slot. Returns 0 (also when there is no disk), or INTERRUPTED_BY_USER.
    int GetDiskSoftwareIdentity(std::vector<VantixOptions::SoftwareIdentity_>& list);
};

}  // namespace IBDISKSW
}  // namespace Vantix
