#include "platform/table/display_width.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Sorted. Combining marks, joiners, direction marks, variation selectors.
constexpr std::array kZeroWidth = {
    Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD}, Range{0x0610, 0x061A},
    Range{0x064B, 0x065F}, Range{0x0E31, 0x0E31}, Range{0x0E34, 0x0E3A}, Range{0x0E47, 0x0E4E},
    Range{0x1AB0, 0x1AFF}, Range{0x1DC0, 0x1DFF}, Range{0x200B, 0x200F}, Range{0x202A, 0x202E},
    Range{0x2060, 0x2064}, Range{0x20D0, 0x20FF}, Range{0x302A, 0x302D}, Range{0x3099, 0x309A},
    Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F}, Range{0xFEFF, 0xFEFF}, Range{0xE0100, 0xE01EF}};

// Sorted. Hangul, kana, ideographs, full-width forms, emoji.
constexpr std::array kDoubleWidth = {
    Range{0x1100, 0x115F},   Range{0x231A, 0x231B},   Range{0x2329, 0x232A},
    Range{0x2E80, 0x303E},   Range{0x3041, 0x4DBF},   Range{0x4E00, 0xA4CF},
    Range{0xA960, 0xA97F},   Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},
    Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},
    Range{0x1F300, 0x1F64F}, Range{0x1F680, 0x1F6FF}, Range{0x1F900, 0x1F9FF},
    Range{0x20000, 0x3FFFD}};

constexpr std::uint32_t kInvalid = 0xFFFFFFFF;

struct Decoded {
    std::uint32_t character;  // kInvalid: one byte that is no UTF-8
    std::size_t bytes;
};

bool IsIn(std::span<const Range> ranges, std::uint32_t character) {
    const auto after = std::upper_bound(
        ranges.begin(), ranges.end(), character,
        [](std::uint32_t value, const Range& range) { return value < range.first; });
    return after != ranges.begin() && character <= std::prev(after)->last;
}

std::size_t SequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

bool IsCharacter(std::uint32_t value, std::size_t bytes) {
    constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    return value >= kSmallest[bytes] && value <= 0x10FFFF && !surrogate;
}

// `text` is not empty.
Decoded DecodeFirst(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = SequenceLength(lead);
    if (length == 1) return {lead, 1};
    if (length == 0 || text.size() < length) return {kInvalid, 1};

    std::uint32_t value = lead & (0x7FU >> length);
    for (const char next : text.substr(1, length - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0U) != 0x80U) return {kInvalid, 1};
        value = (value << 6) | (byte & 0x3FU);
    }
    if (!IsCharacter(value, length)) return {kInvalid, 1};
    return {value, length};
}

std::size_t WidthOf(std::uint32_t character) {
    if (IsIn(kZeroWidth, character)) return 0;
    return IsIn(kDoubleWidth, character) ? 2 : 1;
}

bool IsControl(std::uint32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const Decoded decoded = DecodeFirst(text);
        width += WidthOf(decoded.character);
        text.remove_prefix(decoded.bytes);
    }
    return width;
}

std::string WithoutControls(std::string_view text) {
    std::string cleaned;
    cleaned.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = DecodeFirst(text);
        if (IsControl(decoded.character)) {
            cleaned += ' ';
        } else {
            cleaned += text.substr(0, decoded.bytes);
        }
        text.remove_prefix(decoded.bytes);
    }
    return cleaned;
}
