// The firmware version of a PCI device, as its driver tells it to everybody: attributes below the
// device's folder, and the network driver's own word.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "transport/sysroot/system_root.h"

namespace Vantix::pci {

/// The firmware version that the driver of a network interface tells; empty when it tells none.
using NetFirmwareQuery = std::function<std::string(const std::string& interface)>;

/// In this order, the first that tells one: NVMe controller (firmware_rev), InfiniBand or RDMA
/// device (fw_ver), storage adapter (the attributes of its SCSI or Fibre Channel host), CXL memory
/// device, the device's own attributes (fw_version, firmware_version, and vbios_version, which is
/// its option ROM), network interface. `names` is what the device's folder `path` holds. A
/// `net_firmware` that is empty is not asked. Texts that stand for "unknown" count as none.
[[nodiscard]] std::string FirmwareVersionFromKernel(const transport::SystemRoot& root,
                                                    const std::string& path,
                                                    const std::vector<std::string>& names,
                                                    const NetFirmwareQuery& net_firmware);

/// "N/A", "unknown", "0.0.0" and the like.
[[nodiscard]] bool StandsForNoVersion(const std::string& text);

}  // namespace Vantix::pci
