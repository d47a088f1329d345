#include "platform/pci/pci_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>

#include "transport/text/text_cleaning.h"

namespace Vantix::pci {
namespace {

struct BaseClass {
    std::uint32_t code;
    const char* name;
};

// PCI Code and ID Assignment Specification, 1.1.
constexpr std::array<BaseClass, 22> kBaseClasses = {{
    {0x00, "Unclassified device"},
    {0x01, "Mass storage controller"},
    {0x02, "Network controller"},
    {0x03, "Display controller"},
    {0x04, "Multimedia controller"},
    {0x05, "Memory controller"},
    {0x06, "Bridge"},
    {0x07, "Communication controller"},
    {0x08, "Generic system peripheral"},
    {0x09, "Input device controller"},
    {0x0A, "Docking station"},
    {0x0B, "Processor"},
    {0x0C, "Serial bus controller"},
    {0x0D, "Wireless controller"},
    {0x0E, "Intelligent controller"},
    {0x0F, "Satellite communications controller"},
    {0x10, "Encryption controller"},
    {0x11, "Signal processing controller"},
    {0x12, "Processing accelerators"},
    {0x13, "Non-Essential Instrumentation"},
    {0x40, "Coprocessor"},
    {0xFF, "Unassigned class"},
}};

std::string BuiltInBaseClass(std::uint32_t code) {
    for (const BaseClass& known : kBaseClasses) {
        if (known.code == code) return known.name;
    }
    return {};
}

// Takes a number of exactly `digits` hexadecimal digits and the blanks behind it.
std::optional<std::uint32_t> TakeHex(std::string_view& line, std::size_t digits) {
    std::uint32_t number = 0;
    const std::string_view head = line.substr(0, digits);
    const char* end = head.data() + head.size();
    const auto [stop, error] = std::from_chars(head.data(), end, number, 16);
    if (head.size() < digits || error != std::errc() || stop != end) return std::nullopt;
    line.remove_prefix(digits);
    if (!line.empty() && line.front() != ' ') return std::nullopt;
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return number;
}

template <typename Names, typename Key>
void SetIfWanted(Names& names, const Key& key, std::string_view name) {
    const auto wanted = names.find(key);
    if (wanted != names.end() && wanted->second.empty()) {
        wanted->second = transport::CleanText(name);
    }
}

template <typename Names, typename Key>
std::string NameOf(const Names& names, const Key& key) {
    const auto known = names.find(key);
    return known == names.end() ? std::string() : known->second;
}

}  // namespace

// Which vendor, class or device the indented lines belong to.
struct PciNames::Place {
    std::optional<std::uint32_t> vendor;  ///< only when it is wanted
    std::optional<std::uint32_t> base_class;
    std::optional<std::uint32_t> device;
};

PciNames::PciNames(std::string_view id_file, const std::vector<PciIds>& wanted) {
    for (const PciIds& ids : wanted) Want(ids);
    Place place;
    TakeLines(id_file, place);
}

PciNames::PciNames(const std::function<std::string()>& next_piece,
                   const std::vector<PciIds>& wanted) {
    for (const PciIds& ids : wanted) Want(ids);
    Place place;
    std::string rest;
    for (std::string piece = next_piece(); !piece.empty(); piece = next_piece()) {
        rest += piece;
        const std::size_t whole_lines = rest.rfind('\n') + 1;  // none: 0
        TakeLines(std::string_view(rest).substr(0, whole_lines), place);
        rest.erase(0, whole_lines);
    }
    TakeLines(rest, place);
}

void PciNames::TakeLines(std::string_view text, Place& place) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        TakeLine(text.substr(0, end), place);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void PciNames::Want(const PciIds& ids) {
    vendors_.try_emplace(ids.vendor);
    devices_.try_emplace({ids.vendor, ids.device});
    subsystems_.try_emplace({ids.vendor, ids.device, ids.subsystem_vendor, ids.subsystem_device});
    base_classes_.try_emplace(ids.class_code >> 16U);
    subclasses_.try_emplace(ids.class_code >> 8U);
}

void PciNames::TakeLine(std::string_view line, Place& place) {
    if (line.empty() || line.front() == '#') return;
    if (line.front() != '\t') return TakeTopLine(line, place);
    if (!place.vendor && !place.base_class) return;
    line.remove_prefix(1);
    const bool is_deep = !line.empty() && line.front() == '\t';
    if (is_deep) line.remove_prefix(1);
    if (place.base_class) {
        const auto subclass = is_deep ? std::nullopt : TakeHex(line, 2);
        if (subclass) SetIfWanted(subclasses_, *place.base_class << 8U | *subclass, line);
        return;
    }
    const auto first = TakeHex(line, 4);
    if (!is_deep) {
        place.device = first;
        if (first) SetIfWanted(devices_, DeviceKey(*place.vendor, *first), line);
        return;
    }
    const auto second = first ? TakeHex(line, 4) : std::nullopt;
    if (!second || !place.device) return;
    SetIfWanted(subsystems_, SubsystemKey(*place.vendor, *place.device, *first, *second), line);
}

void PciNames::TakeTopLine(std::string_view line, Place& place) {
    place = Place();
    if (line.substr(0, 2) == "C ") {
        line.remove_prefix(2);
        place.base_class = TakeHex(line, 2);
        if (place.base_class) SetIfWanted(base_classes_, *place.base_class, line);
        return;
    }
    const auto vendor = TakeHex(line, 4);
    if (!vendor || vendors_.find(*vendor) == vendors_.end()) return;
    place.vendor = vendor;
    SetIfWanted(vendors_, *vendor, line);
}

std::string PciNames::Vendor(const PciIds& ids) const {
    return NameOf(vendors_, ids.vendor);
}

std::string PciNames::Device(const PciIds& ids) const {
    return NameOf(devices_, DeviceKey(ids.vendor, ids.device));
}

std::string PciNames::Subsystem(const PciIds& ids) const {
    return NameOf(subsystems_,
                  SubsystemKey(ids.vendor, ids.device, ids.subsystem_vendor, ids.subsystem_device));
}

std::string PciNames::Class(const PciIds& ids) const {
    std::string name = NameOf(subclasses_, ids.class_code >> 8U);
    if (name.empty()) name = NameOf(base_classes_, ids.class_code >> 16U);
    return name.empty() ? BuiltInBaseClass(ids.class_code >> 16U) : name;
}

}  // namespace Vantix::pci
