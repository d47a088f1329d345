// What a release of Windows is called.
//
// Pure: numbers in, text out.
#pragma once

#include <cstdint>
#include <string>

namespace Vantix::local {

/// The edition's name in one word, by its build number ("windows2022", "windows11"); servers and
/// clients share build numbers. The highest known name for builds that are newer.
[[nodiscard]] std::string WindowsName(std::uint32_t build, bool is_server);

}  // namespace Vantix::local
