#include "transport/ipmi/fru_text.h"

#include <string_view>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kEndOfFields = 0xc1;
constexpr std::uint8_t kLengthBits = 0x3f;

enum Coding { kBinary = 0, kBcdPlus = 1, kSixBit = 2, kText = 3 };

void AppendUtf8(std::uint32_t character, std::string& text) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xc0 | character >> 6);
        text += static_cast<char>(0x80 | (character & 0x3f));
    } else {
        text += static_cast<char>(0xe0 | character >> 12);
        text += static_cast<char>(0x80 | (character >> 6 & 0x3f));
        text += static_cast<char>(0x80 | (character & 0x3f));
    }
}

bool IsUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8SequenceLength(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

std::string BinaryText(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += HexByte(byte);
    return text;
}

std::string BcdPlusText(const Bytes& bytes) {
    constexpr std::string_view kDigits = "0123456789 -.:,_";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0f];
    }
    return text;
}

/// Four characters in three bytes, the first in the lowest bits.
std::string SixBitText(const Bytes& bytes) {
    std::string text;
    std::uint32_t bits = 0;
    int count = 0;
    for (const std::uint8_t byte : bytes) {
        bits |= static_cast<std::uint32_t>(byte) << count;
        for (count += 8; count >= 6; count -= 6) {
            text += static_cast<char>(' ' + (bits & 0x3f));
            bits >>= 6;
        }
    }
    return text;
}

// The standard says Latin-1; makers write UTF-8 as well.
std::string EnglishText(const Bytes& bytes) {
    std::string text(bytes.begin(), bytes.end());
    if (IsUtf8(text)) return text;
    text.clear();
    for (const std::uint8_t byte : bytes) AppendUtf8(byte, text);
    return text;
}

std::string WideText(const Bytes& bytes) {
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const std::uint32_t character = bytes[i] | static_cast<std::uint32_t>(bytes[i + 1]) << 8;
        // A half of a pair cannot stand alone in UTF-8; cleaning shows it as a replacement.
        AppendUtf8(character, text);
    }
    return text;
}

std::string Decode(int coding, const Bytes& bytes, bool is_english) {
    switch (coding) {
        case kBinary:
            return BinaryText(bytes);
        case kBcdPlus:
            return BcdPlusText(bytes);
        case kSixBit:
            return SixBitText(bytes);
        default:
            return is_english ? EnglishText(bytes) : WideText(bytes);
    }
}

}  // namespace

FruField ReadFruField(const Bytes& image, std::size_t at, std::size_t end, bool is_english) {
    FruField field;
    if (at >= end || end > image.size() || image[at] == kEndOfFields) return field;
    const std::size_t length = image[at] & kLengthBits;
    const std::size_t start = at + 1;
    if (start + length > end) return field;
    const auto first = image.begin() + static_cast<std::ptrdiff_t>(start);
    const Bytes bytes(first, first + static_cast<std::ptrdiff_t>(length));
    field.is_there = true;
    field.text = CleanText(Decode(image[at] >> 6, bytes, is_english));
    field.next = start + length;
    return field;
}

}  // namespace Vantix::transport
