// One text of a FRU area: a byte that tells kind and length, and the text itself in one of four
// codings.
#pragma once

#include <cstddef>
#include <string>

#include "transport/ipmi/hex_text.h"

namespace Vantix::transport {

struct FruField {
    bool is_there = false;  ///< false at the end of the area's texts or where they are damaged
    std::string text;       ///< clean UTF-8
    std::size_t next = 0;   ///< where the next field starts
};

/// Reads the field at `at`; nothing behind `end` (at most the image's size) is touched. Text of
/// English areas is Latin-1 or UTF-8, of others UTF-16 (low byte first).
[[nodiscard]] FruField ReadFruField(const Bytes& image, std::size_t at, std::size_t end,
                                    bool is_english);

}  // namespace Vantix::transport
