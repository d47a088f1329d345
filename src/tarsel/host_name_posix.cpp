#include "tarsel/host_name.h"

#include <unistd.h>

#include <array>

namespace tarsel {

std::string HostName() {
    constexpr std::size_t kLongestName = 256;
    // One byte more than is asked for: a name that was cut need not end in a zero.
    std::array<char, kLongestName + 1> name{};
    return gethostname(name.data(), kLongestName) == 0 ? std::string(name.data()) : std::string();
}

}  // namespace tarsel
