// Names of vendors, devices, subsystems and classes from the PCI id file (pci.ids).
//
// Pure: the file's text in, names out. One pass, keeping only the names of the ids that are asked
// for, because the file knows some 40,000.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/pci/pci_ids.h"

namespace Vantix::pci {

class PciNames {
  public:
    /// Damaged lines are passed over; an empty text gives no names but those of base classes.
    PciNames(std::string_view id_file, const std::vector<PciIds>& wanted);
    /// The same for a file that comes in pieces, cut anywhere; the empty one ends it.
    PciNames(const std::function<std::string()>& next_piece, const std::vector<PciIds>& wanted);

    /// Each empty when the file does not know the id.
    [[nodiscard]] std::string Vendor(const PciIds& ids) const;
    [[nodiscard]] std::string Device(const PciIds& ids) const;
    [[nodiscard]] std::string Subsystem(const PciIds& ids) const;
    /// The subclass ("Ethernet controller"), else the base class ("Network controller"), which is
    /// known without a file too.
    [[nodiscard]] std::string Class(const PciIds& ids) const;

  private:
    using DeviceKey = std::tuple<std::uint32_t, std::uint32_t>;
    using SubsystemKey = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;
    struct Place;
    void Want(const PciIds& ids);
    void TakeLines(std::string_view text, Place& place);
    void TakeLine(std::string_view line, Place& place);
    void TakeTopLine(std::string_view line, Place& place);

    // An id that is wanted has an entry, empty until its name is read.
    std::map<std::uint32_t, std::string> vendors_;
    std::map<DeviceKey, std::string> devices_;
    std::map<SubsystemKey, std::string> subsystems_;
    std::map<std::uint32_t, std::string> base_classes_;
    std::map<std::uint32_t, std::string> subclasses_;
};

}  // namespace Vantix::pci
