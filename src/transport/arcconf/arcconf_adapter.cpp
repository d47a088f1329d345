#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "transport/arcconf/arcconf_lines.h"
#include "transport/arcconf/arcconf_output.h"
#include "transport/text/ascii_case.h"

namespace Vantix::transport {
namespace {

std::optional<unsigned> HexNumber(std::string_view text) {
    unsigned number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
    return number;
}

// All parts of "0:d9:0:0" as numbers; none when one of them is no number.
std::vector<unsigned> HexParts(std::string_view text) {
    std::vector<unsigned> parts;
    while (true) {
        const std::size_t end = std::min(text.find_first_of(":."), text.size());
        const auto part = HexNumber(text.substr(0, end));
        if (!part) return {};
        parts.push_back(*part);
        if (end == text.size()) return parts;
        text.remove_prefix(end + 1);
    }
}

}  // namespace

std::string PciAddressText(std::string_view told) {
    constexpr std::array<unsigned, 4> kHighest = {0xffffffff, 0xff, 0x1f, 7};
    constexpr std::size_t kMostLetters = 24;
    if (told.size() > kMostLetters) return {};
    std::vector<unsigned> parts = HexParts(told);
    if (parts.size() == kHighest.size() - 1) parts.insert(parts.begin(), 0);
    if (parts.size() != kHighest.size()) return {};
    const bool is_possible = std::equal(parts.begin(), parts.end(), kHighest.begin(),
                                        [](unsigned part, unsigned most) { return part <= most; });
    if (!is_possible) return {};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04x:%02x:%02x.%x", parts[0], parts[1], parts[2],
                  parts[3]);
    return text.data();
}

ArcconfAdapter ParseArcconfAdapter(std::string_view output) {
    ArcconfAdapter adapter;
    const auto take = [](std::string& field, const std::string& value) {
        if (field.empty()) field = value;
    };
    ArcconfLines lines(output);
    while (const auto line = lines.Next()) {
        if (line->section != "controller information" || !line->has_value) continue;
        const std::string key = AsciiLowerText(line->key);
        if (key == "controller model") take(adapter.model, line->value);
        if (key.rfind("pci address", 0) == 0) {
            take(adapter.pci_address, PciAddressText(line->value));
        }
        // Batteries and expanders have firmware of their own under other titles.
        if (key == "firmware" && line->subsection == "controller version information") {
            take(adapter.firmware_version, line->value);
        }
    }
    return adapter;
}

}  // namespace Vantix::transport
