#include "platform/log/secret_forms.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace Vantix {
namespace {

constexpr std::size_t kShortestEmbeddedSecret = 4;

std::string Hex(const char* format, unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// RFC 8259, section 7. Writers differ in whether they escape the slash.
std::string JsonEscaped(const std::string& secret, bool escape_slash) {
    std::string form;
    for (const char letter : secret) {
        switch (letter) {
            case '"':
                form += "\\\"";
                break;
            case '\\':
                form += "\\\\";
                break;
            case '\b':
                form += "\\b";
                break;
            case '\f':
                form += "\\f";
                break;
            case '\n':
                form += "\\n";
                break;
            case '\r':
                form += "\\r";
                break;
            case '\t':
                form += "\\t";
                break;
            case '/':
                form += escape_slash ? "\\/" : "/";
                break;
            default:
                if (static_cast<unsigned char>(letter) < 0x20) {
                    form += Hex("\\u%04x", static_cast<unsigned char>(letter));
                } else {
                    form += letter;
                }
        }
    }
    return form;
}

// Decodes one UTF-8 sequence at `position` and moves it on; a stray byte stands for itself.
std::uint32_t NextCodePoint(const std::string& text, std::size_t& position) {
    const auto first = static_cast<unsigned char>(text[position++]);
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
    std::uint32_t point = more == 0 ? first : first & (0x3FU >> more);
    for (int i = 0; i < more && position < text.size(); ++i) {
        point = (point << 6) | (static_cast<unsigned char>(text[position++]) & 0x3FU);
    }
    return point;
}

// The form of writers that keep JSON pure ASCII.
std::string JsonAscii(const std::string& secret, const char* unit_format) {
    const std::string escaped = JsonEscaped(secret, false);
    std::string form;
    for (std::size_t i = 0; i < escaped.size();) {
        const std::uint32_t point = NextCodePoint(escaped, i);
        if (point < 0x80) {
            form += static_cast<char>(point);
        } else if (point < 0x10000) {
            form += Hex(unit_format, point);
        } else {
            form += Hex(unit_format, 0xD800U + ((point - 0x10000U) >> 10));
            form += Hex(unit_format, 0xDC00U + ((point - 0x10000U) & 0x3FFU));
        }
    }
    return form;
}

std::string XmlEscaped(const std::string& secret, bool escape_quotes, const char* apostrophe) {
    std::string form;
    for (const char letter : secret) {
        if (letter == '&')
            form += "&amp;";
        else if (letter == '<')
            form += "&lt;";
        else if (letter == '>')
            form += "&gt;";
        else if (letter == '"' && escape_quotes)
            form += "&quot;";
        else if (letter == '\'' && escape_quotes)
            form += apostrophe;
        else
            form += letter;
    }
    return form;
}

// RFC 3986, section 2.3: everything but the unreserved letters.
std::string UrlEncoded(const std::string& secret, const char* byte_format, bool blank_as_plus) {
    constexpr std::string_view kUnreserved =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string form;
    for (const char letter : secret) {
        if (letter == ' ' && blank_as_plus)
            form += '+';
        else if (kUnreserved.find(letter) != std::string_view::npos)
            form += letter;
        else
            form += Hex(byte_format, static_cast<unsigned char>(letter));
    }
    return form;
}

// RFC 4648, section 4.
std::string Base64(const std::string& bytes) {
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string form;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = (group << 8) | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            form += k <= count ? kAlphabet[(group >> (18 - 6 * k)) & 0x3FU] : '=';
        }
    }
    return form;
}

// The letters of Base64(prefix + secret + anything) that depend on the secret alone, when the
// prefix has `offset` bytes modulo 3.
std::string Base64Core(const std::string& secret, std::size_t offset) {
    const std::string encoded = Base64(std::string(offset, '\0') + secret);
    const std::size_t bits = (offset + secret.size()) * 8;
    const std::size_t begin = (offset * 8 + 5) / 6;
    const std::size_t end = bits / 6;
    return begin < end ? encoded.substr(begin, end - begin) : std::string();
}

void KeepEachOnceLongestFirst(std::vector<std::string>& forms) {
    std::sort(forms.begin(), forms.end(), [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() > b.size() : a < b;
    });
    forms.erase(std::unique(forms.begin(), forms.end()), forms.end());
}

}  // namespace

std::vector<std::string> FormsOfSecret(const std::string& secret) {
    if (secret.empty()) return {};
    std::vector<std::string> forms = {secret,
                                      JsonEscaped(secret, false),
                                      JsonEscaped(secret, true),
                                      JsonAscii(secret, "\\u%04x"),
                                      JsonAscii(secret, "\\u%04X"),
                                      XmlEscaped(secret, false, ""),
                                      XmlEscaped(secret, true, "&apos;"),
                                      XmlEscaped(secret, true, "&#39;"),
                                      UrlEncoded(secret, "%%%02X", false),
                                      UrlEncoded(secret, "%%%02x", false),
                                      UrlEncoded(secret, "%%%02X", true),
                                      Base64(secret)};
    if (secret.size() >= kShortestEmbeddedSecret) {
        for (std::size_t offset = 0; offset < 3; ++offset) {
            forms.push_back(Base64Core(secret, offset));
        }
    }
    KeepEachOnceLongestFirst(forms);
    return forms;
}

}  // namespace Vantix
