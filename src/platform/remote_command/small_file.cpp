#include "platform/remote_command/small_file.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "common/files/file_path.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kMostBytes = 4 * 1024 * 1024;

}  // namespace

std::optional<std::string> ReadSmallFile(const std::string& path) {
    std::error_code error;
    const fs::path file = FilePath(path);
    // Reading a pipe or a device may never end.
    if (!fs::is_regular_file(fs::symlink_status(file, error))) return std::nullopt;
    const std::uintmax_t size = fs::file_size(file, error);
    if (error || size > kMostBytes) return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::string content(static_cast<std::size_t>(size), '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (stream.gcount() != static_cast<std::streamsize>(content.size())) return std::nullopt;
    return content;
}

}  // namespace Vantix::remote
