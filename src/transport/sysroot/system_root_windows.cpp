// On Windows only recorded trees are read this way; the machine itself has other sources. Links of
// such a tree are read where the file system keeps them.

#include "transport/sysroot/system_root.h"

#include <algorithm>
#include <fstream>
#include <utility>

#include "common/files/file_path.h"
#include "transport/sysroot/file_reading.h"

namespace Vantix::transport {
namespace {

namespace fs = std::filesystem;

std::string WithSlashes(const fs::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}

}  // namespace

FileReading ReadRegularFile(const std::string& path, std::size_t max_bytes) {
    FileReading reading;
    std::error_code error;
    if (!fs::is_regular_file(FilePath(path), error)) return reading;
    std::ifstream file(FilePath(path), std::ios::binary);
    std::string content(max_bytes, '\0');
    if (file) file.read(content.data(), static_cast<std::streamsize>(max_bytes));
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (file || file.eof()) reading.bytes = std::move(content);
    return reading;
}

SystemRoot::SystemRoot(const std::string& folder) {
    if (folder.empty() || folder == "/") return;
    std::error_code error;
    const fs::path real = fs::canonical(FilePath(folder), error);
    folder_ = error ? folder : WithSlashes(real);
    while (!folder_.empty() && folder_.back() == '/') folder_.pop_back();
}

// Paths of Linux would lead anywhere on this machine's current drive.
std::string SystemRoot::PlaceOf(std::string_view path) const {
    return IsThisMachine() ? std::string() : Resolve(path);
}

std::vector<std::string> SystemRoot::List(std::string_view path) const {
    std::vector<std::string> names;
    if (IsThisMachine()) return names;
    std::error_code error;
    fs::directory_iterator entry(FilePath(HostPath(path)), error);
    while (!error && entry != fs::directory_iterator() && names.size() < kMaxNames) {
        names.push_back(FileName(entry->path().filename()));
        entry.increment(error);
    }
    std::sort(names.begin(), names.end(), NaturalLess);
    return names;
}

bool SystemRoot::Exists(std::string_view path) const {
    std::error_code error;
    return !IsThisMachine() && fs::exists(FilePath(HostPath(path)), error);
}

std::string SystemRoot::LinkName(std::string_view path) const {
    std::error_code error;
    if (IsThisMachine()) return {};
    const fs::path target = fs::read_symlink(FilePath(HostPath(path)), error);
    return error ? std::string() : FileName(target.filename());
}

std::string SystemRoot::Resolve(std::string_view path) const {
    std::error_code error;
    if (IsThisMachine()) return {};
    const fs::path canonical = fs::canonical(FilePath(HostPath(path)), error);
    const std::string real = error ? std::string() : WithSlashes(canonical);
    if (real.compare(0, folder_.size(), folder_) != 0) return {};
    const std::string below = real.substr(folder_.size());
    return below.empty() || below.front() == '/' ? below : std::string();
}

}  // namespace Vantix::transport
