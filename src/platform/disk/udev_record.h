// What udev keeps of a device, in a file everybody may read. Pure.
#pragma once

#include <string>
#include <string_view>

namespace Vantix::disk {

/// The value of one property ("E:ID_REVISION=EX01CB6Q"); clean, empty when the record has none.
[[nodiscard]] std::string UdevValue(std::string_view record, std::string_view key);

}  // namespace Vantix::disk
