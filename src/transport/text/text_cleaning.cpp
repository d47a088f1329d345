#include "transport/text/text_cleaning.h"

#include <algorithm>
#include <utility>

namespace Vantix::transport {
namespace {

unsigned char ByteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

std::size_t AnnouncedLength(unsigned char lead) {
    if (lead < 0x80U) {
        return 1;
    }
    if (lead < 0xC2U || lead > 0xF4U) {
        return 0;  // a continuation byte, an overlong form, or beyond U+10FFFF
    }
    if (lead < 0xE0U) {
        return 2;
    }
    return lead < 0xF0U ? 3 : 4;
}

// Overlong forms, surrogates and code points beyond U+10FFFF show in the second byte.
bool IsSecondByteAllowed(unsigned char lead, unsigned char second) {
    switch (lead) {
        case 0xE0:
            return second >= 0xA0U;
        case 0xED:
            return second <= 0x9FU;
        case 0xF0:
            return second >= 0x90U;
        case 0xF4:
            return second <= 0x8FU;
        default:
            return true;
    }
}

std::string Trimmed(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

}  // namespace

std::size_t Utf8SequenceLength(std::string_view text, std::size_t at) {
    const unsigned char lead = ByteAt(text, at);
    const std::size_t length = AnnouncedLength(lead);
    if (length == 0 || length > text.size() - at) {
        return 0;
    }
    for (std::size_t index = 1; index < length; ++index) {
        if ((ByteAt(text, at + index) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    return length < 2 || IsSecondByteAllowed(lead, ByteAt(text, at + 1)) ? length : 0;
}

std::string CleanText(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    std::string clean;
    clean.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const unsigned char byte = ByteAt(text, at);
        const std::size_t length = Utf8SequenceLength(text, at);
        if (byte < 0x20U || byte == 0x7FU) {
            clean += ' ';
        } else if (length == 0) {
            clean += kReplacementCharacter;
        } else {
            clean += text.substr(at, length);
        }
        at += std::max<std::size_t>(length, 1);
    }
    return Trimmed(std::move(clean));
}

std::string CleanStart(std::string_view text, std::size_t characters) {
    const std::size_t first = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    // Four bytes are the longest character; what follows need not be looked at.
    std::string clean = CleanText(text.substr(first, 4 * characters + 4));
    std::size_t end = 0;
    for (std::size_t count = 0; count < characters && end < clean.size(); ++count) {
        end += std::max<std::size_t>(Utf8SequenceLength(clean, end), 1);
    }
    clean.erase(std::min(end, clean.size()));
    return clean;
}

}  // namespace Vantix::transport
