// The disks of this machine, beside the drivers that serve it.

#include "platform/disk/disk_inventory.h"
#include "platform/system_info/system_info.h"

int SystemInfoScan::GetDiskDriverSoftwareIdentity(std::vector<SoftwareIdentity_>& disks) {
    return Vantix::disk::AppendDisksNotTold(disks);
}
