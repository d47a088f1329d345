#include "transport/arcconf/arcconf_lines.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "transport/text/ascii_case.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kMostCharacters = 200;
constexpr std::size_t kShortestRule = 10;

std::string_view TakeLine(std::string_view& rest) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return line;
}

bool IsRule(std::string_view line) {
    return line.size() >= kShortestRule && line.find_first_not_of('-') == std::string_view::npos;
}

bool IsPlaceholder(std::string_view value) {
    constexpr std::array<std::string_view, 5> kUnknown = {"not available", "not applicable",
                                                          "unknown", "n/a", "none"};
    const std::string lower = AsciiLowerText(value);
    return std::find(kUnknown.begin(), kUnknown.end(), lower) != kUnknown.end();
}

// The first colon with a blank before it parts key and value: keys have colons too.
void Split(const std::string& text, ArcconfLine& line) {
    std::size_t colon = text.find(" :");
    while (colon != std::string::npos && colon + 2 < text.size() && text[colon + 2] != ' ') {
        colon = text.find(" :", colon + 1);
    }
    line.has_value = colon != std::string::npos;
    line.key = CleanStart(text.substr(0, std::min(colon, text.size())), kMostCharacters);
    if (!line.has_value) return;
    line.value = CleanStart(text.substr(colon + 2), kMostCharacters);
    if (IsPlaceholder(line.value)) line.value.clear();
}

}  // namespace

std::optional<int> LeadingNumber(std::string_view text) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || number < 0) return std::nullopt;
    return number;
}

std::optional<int> NumberBehind(std::string_view text, std::string_view word) {
    const std::size_t at = AsciiLowerText(text).find(AsciiLowerText(word));
    if (at == std::string::npos) return std::nullopt;
    return LeadingNumber(text.substr(at + word.size()));
}

std::optional<ArcconfLine> ArcconfLines::Next() {
    while (!rest_.empty()) {
        const std::string_view raw = TakeLine(rest_);
        const std::string text = CleanText(raw);
        if (text.empty()) continue;
        if (IsRule(text)) {
            title_ = title_ == Title::kRead ? Title::kNone : Title::kOpen;
            continue;
        }
        ArcconfLine line;
        Split(text, line);
        TakeTitle(raw, line);
        line.section = section_;
        line.subsection = subsection_;
        return line;
    }
    return std::nullopt;
}

void ArcconfLines::TakeTitle(std::string_view raw, const ArcconfLine& line) {
    const bool is_title = title_ == Title::kOpen && !line.has_value;
    title_ = is_title ? Title::kRead : Title::kNone;
    if (!is_title) return;
    const bool is_indented = raw.front() == ' ' || raw.front() == '\t';
    if (!is_indented) section_ = AsciiLowerText(line.key);
    subsection_ = is_indented ? AsciiLowerText(line.key) : std::string();
}

}  // namespace Vantix::transport
