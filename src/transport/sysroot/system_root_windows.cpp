// On Windows only recorded trees are read this way; the machine itself has other sources. Links of
// such a tree are read where the file system keeps them.

#include "transport/sysroot/system_root.h"

#include <algorithm>
#include <fstream>

#include "common/files/file_path.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

namespace fs = std::filesystem;

std::string WithSlashes(const fs::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}

}  // namespace

SystemRoot::SystemRoot(const std::string& folder) {
    if (folder.empty() || folder == "/") return;
    std::error_code error;
    const fs::path real = fs::canonical(FilePath(folder), error);
    folder_ = error ? folder : WithSlashes(real);
    while (!folder_.empty() && folder_.back() == '/') folder_.pop_back();
}

std::string SystemRoot::HostPath(std::string_view path) const {
    return folder_ + std::string(path);
}

std::optional<std::string> SystemRoot::ReadBytes(std::string_view path,
                                                 std::size_t max_bytes) const {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (const auto known = read_.find(path); known != read_.end()) return known->second;
    }
    std::optional<std::string> bytes;
    std::error_code error;
    // Empty for this machine, and for a link out of the recorded one.
    const std::string place = Resolve(path);
    const fs::path file_path = FilePath(HostPath(place));
    if (!place.empty() && fs::is_regular_file(file_path, error)) {
        std::ifstream file(file_path, std::ios::binary);
        std::string content(max_bytes, '\0');
        if (file) file.read(content.data(), static_cast<std::streamsize>(max_bytes));
        content.resize(static_cast<std::size_t>(file.gcount()));
        if (file || file.eof()) bytes = std::move(content);
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    read_.emplace(path, bytes);
    return bytes;
}

std::string SystemRoot::ReadText(std::string_view path) const {
    const std::optional<std::string> bytes = ReadBytes(path);
    return bytes ? CleanText(*bytes) : std::string();
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

std::vector<std::string> SystemRoot::DeniedPaths() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {denied_.begin(), denied_.end()};
}

void SystemRoot::AddDenied(std::string_view path) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    denied_.emplace(path);
}

}  // namespace Vantix::transport
