// The two text forms of Windows: UTF-8, as everywhere in this system, and UTF-16, as its calls want
// it.
#pragma once

#include <string>

namespace Vantix {

/// Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::wstring WideOf(const std::string& utf8);
[[nodiscard]] std::string Utf8Of(const std::wstring& wide);

}  // namespace Vantix
