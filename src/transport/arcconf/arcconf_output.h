// Reads what arcconf says: controllers, one controller's facts, and the disks behind it.
//
// Pure: text in, values out. Anything may come in; texts that come out are clean and short. Knows
// the words of releases 1 to 4; what a release does not print stays empty.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

/// One line of "list" or "getversion".
struct ArcconfController {
    int id = 0;        ///< one-based; what the other commands take
    std::string slot;  ///< decimal; empty when not told
    std::string name;
};

struct ArcconfControllers {
    std::optional<int> found;  ///< how many it says there are; nothing: these are not its words
    std::vector<ArcconfController> controllers;  ///< each id once
};

/// "getconfig N AD".
struct ArcconfAdapter {
    std::string model;
    std::string pci_address;       ///< domain:bus:device.function as in sysfs; empty: not told
    std::string firmware_version;  ///< as told, with the build: "1.32[0]"
};

/// One disk of "getconfig N PD".
struct ArcconfDisk {
    std::string vendor;  ///< "ATA" for most disks that are not SAS
    std::string model;
    std::string part_number;
    std::string firmware_version;
    std::string serial_number;
    std::string bay;  ///< decimal: the slot in its enclosure, else the place at its connector
};

struct ArcconfDisks {
    bool has_section = false;        ///< false: no list of devices, not even an empty one
    bool is_whole = false;           ///< the program came to its last line
    std::vector<ArcconfDisk> disks;  ///< without enclosures; in the program's order
};

[[nodiscard]] ArcconfControllers ParseArcconfControllers(std::string_view output);
[[nodiscard]] ArcconfAdapter ParseArcconfAdapter(std::string_view output);
[[nodiscard]] ArcconfDisks ParseArcconfDisks(std::string_view output);

/// The release that the program names when it is run without a command ("Version 2.03 (B22476)");
/// empty when it names none.
[[nodiscard]] std::string ParseArcconfRelease(std::string_view output);

/// "0:d9:0:0" (domain, bus, device, function, hexadecimal) or "d9:0:0" as sysfs writes it:
/// "0000:d9:00.0". Empty when it is no PCI address.
[[nodiscard]] std::string PciAddressText(std::string_view told);

}  // namespace Vantix::transport
