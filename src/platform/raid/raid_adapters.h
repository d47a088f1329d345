// Which RAID controllers the system itself sees: on PCI, without any tool. Private to this family.
#pragma once

#include <string>
#include <vector>

#include "platform/local/present_devices.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::raid {

struct RaidAdapter {
    std::string address;  ///< domain:bus:device.function
    std::string ids;      ///< "9005:028f": vendor and device, hexadecimal
    std::string driver;   ///< empty when none is bound
    /// Of the maker whose controllers arcconf reads.
    bool is_served = false;
    /// By its PCI class a RAID controller, which keeps its disks from the system. Without: a host
    /// adapter, which may do so.
    bool hides_disks = false;
};

struct RaidAdapters {
    bool is_bus_listed = false;  ///< false: this system shows no PCI devices at all
    std::vector<RaidAdapter> list;
};

/// RAID controllers of every maker, and host adapters of the maker that arcconf serves. Left out
/// are RAID controllers in name only: their driver shows the system each disk (AHCI, VMD).
[[nodiscard]] RaidAdapters FindRaidAdapters(const transport::SystemRoot& root);

/// The same among the devices of a system that lists them by calls.
[[nodiscard]] RaidAdapters RaidAdaptersAmong(const std::vector<local::PresentDevice>& devices);

}  // namespace Vantix::raid
