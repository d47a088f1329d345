#include "platform/log/secret_patterns.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Vantix {
namespace {

constexpr std::array<std::string_view, 4> kHeaders = {
    "authorization:", "x-auth-token:", "cookie:", "set-cookie:"};
constexpr std::array<std::string_view, 5> kFieldEndings = {"password", "passwd", "passphrase",
                                                           "token", "secret"};
constexpr std::array<std::string_view, 2> kElements = {"password", "token"};

char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
}

std::string Lowered(const std::string& text) {
    std::string lowered = text;
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), Lower);
    return lowered;
}

// Puts the mask over [begin, end) of the text and of its lower-case copy, which stay equally long.
// Returns the position after the mask.
std::size_t Cover(std::size_t begin, std::size_t end, std::string& text, std::string& lowered) {
    const std::string_view mask(kSecretMask);
    text.replace(begin, end - begin, mask);
    lowered.replace(begin, end - begin, mask);
    return begin + mask.size();
}

std::size_t SkipBlanks(const std::string& text, std::size_t position) {
    const std::size_t next = text.find_first_not_of(" \t", position);
    return next == std::string::npos ? text.size() : next;
}

void MaskHeader(std::string_view header, std::string& text, std::string& lowered) {
    std::size_t found = lowered.find(header);
    while (found != std::string::npos) {
        const std::size_t begin = SkipBlanks(text, found + header.size());
        const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        const std::size_t next = begin < end ? Cover(begin, end, text, lowered) : begin;
        found = lowered.find(header, next);
    }
}

// Where a quoted text ends that began with `quote` (a quotation mark, after backslashes where the
// JSON is itself inside a quoted text).
std::size_t EndOfQuoted(const std::string& text, std::size_t begin, const std::string& quote) {
    std::size_t position = begin;
    while ((position = text.find(quote, position)) != std::string::npos) {
        std::size_t backslashes = 0;
        while (position > begin + backslashes && text[position - 1 - backslashes] == '\\') {
            ++backslashes;
        }
        if (backslashes % 2 == 0) return position;
        ++position;
    }
    return text.size();
}

// `position` stands right after the field's name. Returns where the search goes on.
std::size_t MaskFieldValue(std::size_t position, std::string& text, std::string& lowered) {
    const std::size_t quote_end = text.find_first_not_of('\\', position);
    if (quote_end == std::string::npos || text[quote_end] != '"') return position;
    const std::string quote = text.substr(position, quote_end + 1 - position);
    const std::size_t colon = SkipBlanks(text, quote_end + 1);
    if (colon >= text.size() || text[colon] != ':') return position;
    const std::size_t open = SkipBlanks(text, colon + 1);
    if (text.compare(open, quote.size(), quote) != 0) return position;
    const std::size_t begin = open + quote.size();
    return Cover(begin, EndOfQuoted(text, begin, quote), text, lowered);
}

void MaskFields(std::string_view ending, std::string& text, std::string& lowered) {
    std::size_t found = lowered.find(ending);
    while (found != std::string::npos) {
        const std::size_t next = MaskFieldValue(found + ending.size(), text, lowered);
        found = lowered.find(ending, next);
    }
}

void MaskElements(std::string_view name, std::string& text, std::string& lowered) {
    const std::string open = std::string(name) + ">";
    std::size_t found = lowered.find(open);
    while (found != std::string::npos) {
        const std::size_t begin = found + open.size();
        const std::size_t end = std::min(text.find('<', begin), text.size());
        const bool is_opening = found > 0 && (text[found - 1] == '<' || text[found - 1] == ':');
        const std::size_t next =
            is_opening && begin < end ? Cover(begin, end, text, lowered) : begin;
        found = lowered.find(open, next);
    }
}

void MaskUrlPasswords(std::string& text, std::string& lowered) {
    constexpr std::string_view kScheme = "://";
    std::size_t found = text.find(kScheme);
    while (found != std::string::npos) {
        const std::size_t begin = found + kScheme.size();
        const std::size_t end = std::min(text.find_first_of("/?# \t\r\n\"'<>", begin), text.size());
        const std::size_t at = text.rfind('@', end);
        const std::size_t colon = text.find(':', begin);
        std::size_t next = begin;
        if (at != std::string::npos && at > begin && at < end && colon < at) {
            next = Cover(colon + 1, at, text, lowered);
        }
        found = text.find(kScheme, next);
    }
}

}  // namespace

std::string MaskSecretPatterns(const std::string& text) {
    std::string masked = text;
    std::string lowered = Lowered(text);
    for (const std::string_view header : kHeaders) MaskHeader(header, masked, lowered);
    for (const std::string_view ending : kFieldEndings) MaskFields(ending, masked, lowered);
    for (const std::string_view name : kElements) MaskElements(name, masked, lowered);
    MaskUrlPasswords(masked, lowered);
    return masked;
}

}  // namespace Vantix
