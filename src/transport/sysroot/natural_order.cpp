#include <algorithm>
#include <cctype>

#include "transport/sysroot/system_root.h"
#include "transport/text/ascii_case.h"

namespace Vantix::transport {
namespace {

// The digits at the front without leading zeros, and how long the front was.
std::string_view LeadingNumber(std::string_view text, std::size_t& length) {
    length = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsAsciiDigit) -
                                      text.begin());
    std::string_view digits = text.substr(0, length);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

}  // namespace

bool NaturalLess(std::string_view left, std::string_view right) {
    const std::string_view whole_left = left;
    const std::string_view whole_right = right;
    while (!left.empty() && !right.empty()) {
        std::size_t left_length = 1;
        std::size_t right_length = 1;
        if (IsAsciiDigit(left.front()) && IsAsciiDigit(right.front())) {
            const std::string_view left_number = LeadingNumber(left, left_length);
            const std::string_view right_number = LeadingNumber(right, right_length);
            if (left_number.size() != right_number.size()) {
                return left_number.size() < right_number.size();
            }
            if (left_number != right_number) return left_number < right_number;
        } else if (left.front() != right.front()) {
            return left.front() < right.front();
        }
        left.remove_prefix(left_length);
        right.remove_prefix(right_length);
    }
    if (left.empty() != right.empty()) return left.empty();
    return whole_left < whole_right;  // 01 and 1
}

}  // namespace Vantix::transport
