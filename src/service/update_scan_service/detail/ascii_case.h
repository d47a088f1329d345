// Letter case of ASCII texts, without the locale: the C library's conversions follow it and are
// undefined for negative characters.
//
// Deliberately not here: other alphabets. Letters outside ASCII stay as they are.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace service::detail {

[[nodiscard]] inline std::string AsciiUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return upper;
}

[[nodiscard]] inline std::string AsciiLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return lower;
}

}  // namespace service::detail
