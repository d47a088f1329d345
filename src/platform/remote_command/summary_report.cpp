#include <charconv>
#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "platform/remote_command/remote_command.h"
#include "platform/remote_command/small_file.h"
#include "transport/text/text_cleaning.h"

namespace {

constexpr std::size_t kMostMessageCharacters = 4000;

template <typename Number>
std::optional<Number> WholeNumber(std::string_view text, int base) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value, base);
    if (text.empty() || read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return value;
}

// Codes are 32 bits; hexadecimal ones are written without a sign.
std::optional<std::int32_t> ParseCode(std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        const auto bits = WholeNumber<std::uint32_t>(text.substr(2), 16);
        return bits ? std::optional(static_cast<std::int32_t>(*bits)) : std::nullopt;
    }
    return WholeNumber<std::int32_t>(text, 10);
}

}  // namespace

// The parser works without calling itself, so that nesting costs it nothing; the limit on the size
// is the limit on the tree.
bool SummaryReport::ExtractSummaryResult(const std::string& path, int& code, std::string& message) {
    using Vantix::transport::CleanStart;
    using Vantix::transport::CleanText;
    const std::optional<std::string> content = Vantix::remote::ReadSmallFile(path);
    if (!content) return false;
    pugi::xml_document document;
    if (!document.load_buffer(content->data(), content->size(), pugi::parse_default)) return false;
    const pugi::xml_node root = document.child("RESULT");
    const auto parsed = ParseCode(CleanText(root.child_value("CODE")));
    if (!parsed) return false;
    code = *parsed;
    message = CleanStart(root.child_value("MESSAGE"), kMostMessageCharacters);
    return true;
}
