// The file in which the maintenance operating system looks for the devices that the controller
// knows.
#pragma once

#include <string>

namespace service::detail {

inline constexpr char kDeviceListFile[] = "/tmp/devsw.list";

/// Makes the file hold `text` and nothing else. A file that cannot be opened is nobody's failure:
/// only the maintenance operating system reads it.
void WriteDeviceListFile(const std::string& path, const std::string& text);

}  // namespace service::detail
