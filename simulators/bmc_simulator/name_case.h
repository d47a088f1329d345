// Names of header fields and of CIM know no letter case.
#pragma once

#include <algorithm>
#include <string_view>

namespace simulators {

[[nodiscard]] inline char LowerLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

[[nodiscard]] inline bool SameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerLetter, LowerLetter);
}

}  // namespace simulators
