#include "platform/disk/disk.h"

#include "platform/disk/disk_inventory.h"

namespace Vantix::IBDISKSW {

int IBDiskSoftwareIdentity::GetDiskSoftwareIdentity(
    std::vector<VantixOptions::SoftwareIdentity_>& list) {
    return disk::AppendDisks(list);
}

}  // namespace Vantix::IBDISKSW
