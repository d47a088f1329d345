#include "transport/smbios/smbios_table.h"

#include <algorithm>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kHeaderLength = 4;
constexpr std::uint8_t kEndOfTable = 127;

std::uint8_t ByteAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint8_t>(bytes[at]);
}

// Takes the strings behind a formatted area, with the empty one that ends them. False when the
// table ends within them.
bool TakeStrings(std::string_view& rest, std::vector<std::string>& strings) {
    for (;;) {
        const std::size_t length = rest.find('\0');
        if (length == std::string_view::npos) return false;
        const std::string_view text = rest.substr(0, length);
        rest.remove_prefix(length + 1);
        if (text.empty()) break;
        strings.emplace_back(text);
    }
    // Where there is no string at all, two zeros stand behind the formatted area.
    if (strings.empty() && !rest.empty() && rest.front() == '\0') rest.remove_prefix(1);
    return true;
}

}  // namespace

std::optional<std::uint8_t> SmbiosStructure::Byte(std::size_t offset) const {
    if (offset >= formatted.size()) return std::nullopt;
    return ByteAt(formatted, offset);
}

std::optional<std::uint16_t> SmbiosStructure::Word(std::size_t offset) const {
    const std::string_view bytes = Slice(offset, 2);
    if (bytes.size() < 2) return std::nullopt;
    return static_cast<std::uint16_t>(ByteAt(bytes, 0) | ByteAt(bytes, 1) << 8);
}

std::string SmbiosStructure::Text(std::size_t offset) const {
    const std::size_t number = Byte(offset).value_or(0);
    if (number == 0 || number > strings.size()) return {};
    return CleanText(strings[number - 1]);
}

std::string_view SmbiosStructure::Slice(std::size_t offset, std::size_t length) const {
    if (offset >= formatted.size()) return {};
    return std::string_view(formatted).substr(offset, length);
}

SmbiosStructures ReadSmbiosTable(std::string_view table, std::size_t most) {
    SmbiosStructures structures;
    bool is_sound = true;
    while (is_sound && table.size() >= kHeaderLength && structures.size() < most) {
        SmbiosStructure structure;
        structure.type = ByteAt(table, 0);
        const std::size_t length = ByteAt(table, 1);
        structure.handle = static_cast<std::uint16_t>(ByteAt(table, 2) | ByteAt(table, 3) << 8);
        if (structure.type == kEndOfTable) break;
        if (length < kHeaderLength || length > table.size()) break;
        structure.formatted = table.substr(0, length);
        table.remove_prefix(length);
        is_sound = TakeStrings(table, structure.strings);
        structures.push_back(std::move(structure));
    }
    return structures;
}

}  // namespace Vantix::transport
