// All PCI devices of one tree, each with its names, slot and firmware version.
//
// Puts together what the files beside it read. Knows the operating system through `PciHost` only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/pci/firmware_attributes.h"
#include "platform/pci/pci.h"
#include "platform/pci/pci_address.h"
#include "platform/pci/vpd_reads.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::pci {

struct PciHost {
    const transport::SystemRoot& root;
    NetFirmwareQuery net_firmware;  ///< empty: not asked
    /// Opens a VPD file of the tree; empty where it cannot be read (forbidden ones noted in root).
    std::function<PieceReader(const transport::SystemRoot& root, const std::string& path)> open_vpd;
    VpdLimits vpd_limits;
};

struct PciSurvey {
    std::vector<PciInfo> devices;     ///< by domain, bus, device, function
    std::vector<std::string> issues;  ///< what took too long: file and cause
};

/// Every device that tells its vendor and device id, without virtual functions; with `only` at most
/// that one.
[[nodiscard]] PciSurvey ReadPciDevices(const PciHost& host,
                                       const std::optional<PciAddress>& only = std::nullopt);

}  // namespace Vantix::pci
