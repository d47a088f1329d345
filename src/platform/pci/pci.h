// PCI devices of the local host.
#pragma once

#include <string>
#include <vector>

/// One device. On Linux the names come from the PCI id file (package pci.ids) below the root that
/// is read; without it, or where it does not know the device, both names are empty and labels and
/// ids stand for them. On Windows they are those of the driver's package, empty without driver.
struct PciInfo {
    std::string ShortName;  ///< name of the device, that is its chip: "EX710 Controller"
    /// Second part of the fall-back name: what the firmware calls the device ("Embedded NIC 1"),
    /// else its maker, else its address ("0000:3b:00.0").
    std::string Label2;
    /// First part of the fall-back name: its class ("Ethernet controller").
    std::string Label3;
    std::string IdPart1;  ///< vendor and device id, 4 + 4 lower-case hexadecimal digits
    /// Maker, device and, in brackets, the product built with it: "Example Networks EX710
    /// Controller (Dual Port Adapter)". Longer than the short name wherever that is known.
    std::string Description;
    /// Subsystem vendor and device id, in the same form; zeros where there is none.
    std::string IdPart2;
    std::string Slot;     ///< number of the slot; empty for devices of the board
    std::string Version;  ///< of its firmware; empty when neither kernel nor device tell
};

/// Replaces the list by every PCI device in the order of their addresses; virtual functions are
/// left out. Returns 0, or -1 when none can be read.
int GetPciInfo(std::vector<PciInfo>& devices);

/// The device at `pci_address` ("0000:3b:00.0", "3B:00.0" or "0:3b:0:0"), with the same record that
/// GetPciInfo gives. Returns 0 on success, else -1 and `device` stays as it is.
int GetPciInfoByAddress(const std::string& pci_address, PciInfo& device);
