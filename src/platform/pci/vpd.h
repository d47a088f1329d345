// Vital product data of a PCI device (PCI Local Bus 3.0, appendix I; same format in PCI Express).
//
// Pure, over raw bytes, also of a part of them; nothing outside them is touched. Deliberately not
// here: reading them from the device (vpd_reads.h).
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Vantix::pci {

/// The most that a device can hold: addresses have 15 bits.
inline constexpr std::size_t kMaxVpd = 32768;

struct Vpd {
    std::string identifier;                                     ///< product name, clean
    std::map<std::string, std::string, std::less<>> read_only;  ///< keyword ("PN") to clean text
    bool has_checksum = false;       ///< the read-only fields end with a checksum ("RV")
    bool is_checksum_right = false;  ///< and it fits
    bool is_finished = false;        ///< more bytes would not tell more
};

/// A field that does not fit into its list, and what stands behind it, is left out; of two fields
/// with one keyword the first is taken. Blank or foreign bytes give an empty reading.
[[nodiscard]] Vpd ParseVpd(std::string_view bytes);

/// The version of the firmware: the first of the keywords RM, LL, RL (microcode and ROM levels of
/// PCI 2.1), V0, V1, VA and then the other V ones (the maker's own; this is where makers put it)
/// whose text looks like a version ("21.80.16.89", "FFV21.80.16.89" without its first letters).
/// Empty when there is none or the checksum is wrong.
[[nodiscard]] std::string FirmwareVersionOf(const Vpd& vpd);

}  // namespace Vantix::pci
