// The devices of this machine where the operating system hands them out by calls instead of files.
//
// Raw: which of them are of interest, and what their texts mean, is the families' concern.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vantix::local {

/// One device that is there now. Texts are clean UTF-8; what the system does not tell is empty.
struct PresentDevice {
    std::string instance_id;  ///< "PCI\VEN_8086&DEV_1572&SUBSYS_00018086&REV_02\4&1A2B3C4D&0&00E4"
    std::vector<std::string> hardware_ids;  ///< its own ids, the most exact first
    std::vector<std::string> compatible_ids;
    std::string class_name;    ///< "Net"
    std::string description;   ///< of the device by its driver, without driver by its bus
    std::string manufacturer;  ///< as the driver's package says; a text in brackets is no maker
    std::string service;     ///< the driver's own name ("fakenet"); empty for drivers without code
    std::string driver_key;  ///< where the system keeps its driver's settings; empty without one
    std::string driver_version;
    std::string driver_provider;
    std::string driver_package;            ///< "oem5.inf"
    std::string firmware_version;          ///< few devices tell it
    std::optional<std::uint32_t> bus;      ///< number of the bus; for PCI the segment above 8 bits
    std::optional<std::uint32_t> place;    ///< on the bus; for PCI device << 16 | function
    std::optional<std::uint32_t> slot;     ///< number of the slot that the device sits in
    std::optional<std::uint32_t> problem;  ///< Windows' code; 0 or nothing: works
    /// The way there, by its parents' places: "PCIROOT(0)#PCI(1C00)#PCI(0000)".
    std::vector<std::string> location_paths;
};

/// What the device is a child of: the first part of its instance id, in lower case ("pci").
[[nodiscard]] std::string BusOf(const PresentDevice& device);

/// Whether a driver is installed for the device, working or not, with code of its own or without.
[[nodiscard]] bool HasDriver(const PresentDevice& device);

/// Asks the system. Nothing where the kernel shows its devices as files; an empty list, with a line
/// in the log, where it should answer but does not.
[[nodiscard]] std::optional<std::vector<PresentDevice>> PresentDevices();

}  // namespace Vantix::local
