#include "platform/redfish/text_rules.h"

#include <algorithm>
#include <cstddef>

#include "transport/text/ascii_case.h"

namespace Vantix::redfish {
namespace {

bool IsCapital(char c) {
    return c >= 'A' && c <= 'Z';
}
bool IsSmall(char c) {
    return c >= 'a' && c <= 'z';
}
bool IsLetter(char c) {
    return IsCapital(c) || IsSmall(c);
}

std::string Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

constexpr std::string_view kDefaults[] = {
    "to be filled by o.e.m.",
    "to be filled by o.e.m",
    "to be filled by oem",
    "to be filled",
    "default string",
    "default",
    "not specified",
    "unspecified",
    "undefined",
    "not defined",
    "system serial number",
    "system product name",
    "system manufacturer",
    "system version",
    "system sku",
    "system model",
    "chassis serial number",
    "chassis part number",
    "base board serial number",
    "board serial number",
    "product name",
    "product part number",
    "serial number",
    "part number",
    "sku number",
    "sku",
    "oem",
    "o.e.m.",
    "n/a",
    "na",
    "none",
    "null",
    "nil",
    "unknown",
    "invalid",
    "empty",
    "not available",
    "not applicable",
    "not present",
    "not provided",
    "not set",
    "no asset tag",
    "-",
    "--",
    "0",
    "?",
};

constexpr std::string_view kNoVersions[] = {
    "n/a",
    "na",
    "none",
    "null",
    "nil",
    "unknown",
    "not present",
    "not available",
    "unavailable",
    "not applicable",
    "version not available",
    "version unavailable",
    "no version",
    "-",
    "--",
    "?",
    "",
};

template <std::size_t kSize>
bool IsListed(const std::string_view (&list)[kSize], std::string_view text) {
    return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

bool IsOneCharacterRepeated(std::string_view text) {
    return text.size() >= 3 && text.find_first_not_of(text.front()) == std::string_view::npos;
}

/// "0123456789", "123456", "01234567890123456789AB": digits that count up from 0 or 1, wrapping,
/// perhaps with hexadecimal letters at the end; or the ten digits counting down.
bool IsCountingDigits(std::string_view text) {
    if (text == "9876543210" || text == "987654321") return true;
    if (text.empty() || (text.front() != '0' && text.front() != '1')) return false;
    std::size_t run = 1;
    while (run < text.size() && transport::IsAsciiDigit(text[run]) &&
           (text[run - 1] - '0' + 1) % 10 == text[run] - '0') {
        ++run;
    }
    constexpr std::size_t kShortestFiller = 6;
    return run >= kShortestFiller &&
           text.substr(run).find_first_not_of("abcdef") == std::string_view::npos;
}

bool StartsNewWord(char before, char current) {
    return IsLetter(before) != IsLetter(current) || (IsSmall(before) && IsCapital(current));
}

}  // namespace

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (IsCapital(c)) c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
    return Lower(text).find(part) != std::string::npos;
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    char before = ' ';
    for (const char c : text) {
        const bool is_part = IsLetter(c) || transport::IsAsciiDigit(c);
        const bool was_part = IsLetter(before) || transport::IsAsciiDigit(before);
        if (is_part && (!was_part || StartsNewWord(before, c))) words.emplace_back();
        if (is_part) words.back() += Lower(std::string_view(&c, 1));
        before = c;
    }
    return words;
}

bool HasAnyWord(const std::vector<std::string>& words,
                std::initializer_list<std::string_view> wanted) {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
        return std::find(wanted.begin(), wanted.end(), word) != wanted.end();
    });
}

bool IsPlaceholder(std::string_view text) {
    const std::string plain = Lower(Trimmed(text));
    return plain.empty() || IsListed(kDefaults, plain) || IsOneCharacterRepeated(plain) ||
           IsCountingDigits(plain);
}

bool IsNoVersion(std::string_view text) {
    return IsListed(kNoVersions, Lower(Trimmed(text)));
}

std::string Known(std::string text) {
    return IsPlaceholder(text) ? std::string() : text;
}

std::string FirstOf(std::initializer_list<std::string> texts) {
    const auto found = std::find_if(texts.begin(), texts.end(),
                                    [](const std::string& text) { return !text.empty(); });
    return found == texts.end() ? std::string() : *found;
}

}  // namespace Vantix::redfish
