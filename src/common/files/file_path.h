// File names: UTF-8 texts everywhere in this system, paths of the operating system at its border.
//
// On Windows a narrow name would be read in the code page of the machine.
#pragma once

#include <filesystem>
#include <string>

namespace Vantix {

/// The path that a UTF-8 file name means.
[[nodiscard]] inline std::filesystem::path FilePath(const std::string& name) {
#ifdef _WIN32
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
#else
    return std::filesystem::path(name);
#endif
}

/// The UTF-8 file name of a path.
[[nodiscard]] inline std::string FileName(const std::filesystem::path& path) {
#ifdef _WIN32
    const std::u8string name = path.u8string();
    return std::string(name.begin(), name.end());
#else
    return path.string();
#endif
}

}  // namespace Vantix
