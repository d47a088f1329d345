#include "platform/config/config_text.h"

#include <charconv>
#include <string_view>

namespace Vantix {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\v\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<int> Number(std::string_view text) {
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::optional<int> FindConfigNumber(std::istream& text, const std::string& key) {
    std::optional<int> found;
    std::string line;
    for (bool is_first = true; std::getline(text, line); is_first = false) {
        std::string_view rest = line;
        if (is_first && rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
        rest = Trimmed(rest);
        const std::size_t equals = rest.find('=');
        if (rest.starts_with('#') || equals == std::string_view::npos) continue;
        if (Trimmed(rest.substr(0, equals)) == key)
            found = Number(Trimmed(rest.substr(equals + 1)));
    }
    return found;
}

}  // namespace Vantix
