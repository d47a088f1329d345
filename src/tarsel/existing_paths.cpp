#include "tarsel/existing_paths.h"

#include <filesystem>
#include <system_error>

#include "common/files/file_path.h"

namespace tarsel {
namespace {

namespace fs = std::filesystem;

fs::file_status StatusOf(const std::string& name) {
    std::error_code error;
    return fs::status(Vantix::FilePath(name), error);
}

}  // namespace

std::string CheckExistingFile(const std::string& name) {
    const fs::file_status status = StatusOf(name);
    if (!fs::exists(status)) return "File does not exist: " + name;
    return fs::is_directory(status) ? "File is actually a directory: " + name : "";
}

std::string CheckExistingFolder(const std::string& name) {
    const fs::file_status status = StatusOf(name);
    if (!fs::exists(status)) return "Directory does not exist: " + name;
    return fs::is_directory(status) ? "" : "Directory is actually a file: " + name;
}

}  // namespace tarsel
