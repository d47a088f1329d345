// Reads the small files that a remote run left.
#pragma once

#include <optional>
#include <string>

namespace Vantix::remote {

/// The content of a regular file of at most 4 MiB; nothing for links, folders, devices and files
/// that are larger or cannot be read.
[[nodiscard]] std::optional<std::string> ReadSmallFile(const std::string& path);

}  // namespace Vantix::remote
