// PCI devices of the local host.
#pragma once

#include <string>
#include <vector>

struct PciInfo {
    std::string ShortName;
    std::string Label2;   ///< second part of the fall-back name
    std::string Label3;   ///< first part of the fall-back name
    std::string IdPart1;  ///< vendor and device id, hexadecimal
    std::string Description;
    std::string IdPart2;  ///< subsystem vendor and device id, hexadecimal
    std::string Slot;
    std::string Version;
};

/// Fills the list with every PCI device. Returns 0, or -1 when none can be read.
int GetPciInfo(std::vector<PciInfo>& devices);

/// The device at `pci_address` (domain:bus:device.function). Returns 0 on success.
int GetPciInfoByAddress(const std::string& pci_address, PciInfo& device);
