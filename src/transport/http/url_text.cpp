#include "transport/http/url_text.h"

#include <cctype>

namespace Vantix::transport {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsHexDigit(char letter) {
    return std::isxdigit(static_cast<unsigned char>(letter)) != 0;
}

bool IsControlOrBlank(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte <= 0x20 || byte == 0x7F;
}

bool MustEncode(std::string_view text, std::size_t index) {
    const char letter = text[index];
    if (letter == '%') {
        const bool is_encoded_byte =
            index + 2 < text.size() && IsHexDigit(text[index + 1]) && IsHexDigit(text[index + 2]);
        return !is_encoded_byte;
    }
    return IsControlOrBlank(letter) || static_cast<unsigned char>(letter) >= 0x80 ||
           std::string_view("\"<>\\^`{|}").find(letter) != std::string_view::npos;
}

}  // namespace

std::string UrlHost(std::string_view host) {
    if (host.find(':') == std::string_view::npos) {
        return std::string(host);
    }
    std::string text = "[";
    for (const char letter : host) {
        text += letter;
        if (letter == '%') {
            text += "25";
        }
    }
    return text + "]";
}

bool IsHostText(std::string_view host) {
    for (const char letter : host) {
        if (IsControlOrBlank(letter) ||
            std::string_view("/?#@\\[]\"<>").find(letter) != std::string_view::npos) {
            return false;
        }
    }
    return !host.empty();
}

std::string EncodeTarget(std::string_view target) {
    std::string encoded;
    encoded.reserve(target.size() + 8);
    if (target.empty() || target.front() != '/') {
        encoded += '/';
    }
    for (std::size_t index = 0; index < target.size(); ++index) {
        if (!MustEncode(target, index)) {
            encoded += target[index];
            continue;
        }
        const auto byte = static_cast<unsigned char>(target[index]);
        encoded += '%';
        encoded += kHexDigits[byte >> 4U];
        encoded += kHexDigits[byte & 0x0FU];
    }
    return encoded;
}

}  // namespace Vantix::transport
