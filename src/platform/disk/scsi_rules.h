// What counts as a disk of this machine. Pure.
//
// A disk is a piece of hardware with firmware of its own that sits in this machine. The kernel
// shows much more under the same names. Judged by what the device tells, never by its driver alone:
// RAID controllers show volumes and single physical disks through one driver.
#pragma once

#include <string>
#include <vector>

namespace Vantix::disk {

struct ScsiClues {
    std::string device_type;  ///< "0" disk, "20" zoned disk, ...; empty when not told
    std::string device_path;  ///< with all links followed; empty when not known
    std::string model;
    std::string raid_level;        ///< as some controllers' drivers tell it: "RAID 1", "N/A"
    bool is_raid_device = false;   ///< the kernel's RAID class lists it
    std::vector<int> naa_formats;  ///< see UnitNames
    std::string wwid;              ///< "naa.5000c500...", "t10.ATA ..."
};

/// One short reason, empty when it is a disk of this machine. Left out are
/// - devices of other types;
/// - disks on a network (iSCSI, Fibre Channel): firmware of another machine;
/// - what hangs on USB: removable media, a BMC's virtual media, bridges that tell their own
///   revision for that of the disk;
/// - a hypervisor's paravirtual disks (virtio, VMBus) and whatever calls itself virtual;
/// - logical volumes of RAID controllers and storage systems. They are told by the driver's
///   raid_level, the kernel's RAID class, an extended NAA name (6), which physical disks do not
///   have, or a model that says so.
[[nodiscard]] std::string WhyNoDisk(const ScsiClues& clues);

}  // namespace Vantix::disk
