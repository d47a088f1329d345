// Digits and letter case of ASCII texts, without the locale: the C library's calls follow it and
// are undefined for negative characters.
//
// Deliberately not here: other alphabets. Letters outside ASCII stay as they are.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace Vantix::transport {

[[nodiscard]] constexpr bool IsAsciiDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

[[nodiscard]] constexpr char AsciiLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

[[nodiscard]] inline std::string AsciiLowerText(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
    return lower;
}

}  // namespace Vantix::transport
