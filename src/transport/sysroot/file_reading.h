// One file as the operating system gives it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Vantix::transport {

struct FileReading {
    std::optional<std::string> bytes;  ///< nothing when it cannot be read or is no regular file
    bool is_denied = false;            ///< nothing for want of rights
};

/// At most `max_bytes` of the file at `path`, a path of the operating system; never waits for a
/// writer.
[[nodiscard]] FileReading ReadRegularFile(const std::string& path, std::size_t max_bytes);

}  // namespace Vantix::transport
