#include "transport/sysroot/system_root.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "transport/sysroot/file_reading.h"

namespace Vantix::transport {
namespace {

class File {
  public:
    // Without O_NONBLOCK a pipe among the files would stop the scan.
    explicit File(const std::string& path)
        : handle_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~File() {
        if (handle_ >= 0) ::close(handle_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    [[nodiscard]] int Handle() const { return handle_; }
    [[nodiscard]] bool IsRegular() const {
        struct stat state = {};
        return ::fstat(handle_, &state) == 0 && S_ISREG(state.st_mode);
    }

  private:
    int handle_;
};

bool IsDenial(int error) {
    return error == EACCES || error == EPERM;
}

// What was read before an error is dropped: half an attribute is none.
std::optional<std::string> ReadAll(int handle, std::size_t max_bytes) {
    constexpr std::size_t kFirstStep = 4096;
    std::string bytes;
    while (bytes.size() < max_bytes) {
        const std::size_t before = bytes.size();
        bytes.resize(std::min(before + std::max(before, kFirstStep), max_bytes));
        const ssize_t count = ::read(handle, bytes.data() + before, bytes.size() - before);
        if (count < 0 && errno == EINTR) {
            bytes.resize(before);
            continue;
        }
        bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count < 0) return std::nullopt;
        if (count == 0) break;
    }
    return bytes;
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&::free)> real(::realpath(path.c_str(), nullptr), ::free);
    return real == nullptr ? std::string() : std::string(real.get());
}

}  // namespace

FileReading ReadRegularFile(const std::string& path, std::size_t max_bytes) {
    errno = 0;
    const File file(path);
    FileReading reading;
    if (file.Handle() >= 0 && file.IsRegular()) reading.bytes = ReadAll(file.Handle(), max_bytes);
    reading.is_denied = !reading.bytes && IsDenial(errno);
    return reading;
}

SystemRoot::SystemRoot(const std::string& folder) {
    const std::string real = folder.empty() ? "/" : RealPath(folder);
    folder_ = real.empty() ? folder : real;
    while (!folder_.empty() && folder_.back() == '/') folder_.pop_back();
}

std::string SystemRoot::PlaceOf(std::string_view path) const {
    if (IsThisMachine()) return std::string(path);
    errno = 0;
    std::string place = Resolve(path);
    if (place.empty() && IsDenial(errno)) AddDenied(path);
    return place;
}

std::vector<std::string> SystemRoot::List(std::string_view path) const {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseFolder> folder(::opendir(HostPath(path).c_str()));
    if (folder == nullptr) {
        if (IsDenial(errno)) AddDenied(path);
        return names;
    }
    while (names.size() < kMaxNames) {
        const dirent* entry = ::readdir(folder.get());
        if (entry == nullptr) break;
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end(), NaturalLess);
    return names;
}

bool SystemRoot::Exists(std::string_view path) const {
    return ::access(HostPath(path).c_str(), F_OK) == 0;
}

std::string SystemRoot::LinkName(std::string_view path) const {
    char target[PATH_MAX];
    const ssize_t length = ::readlink(HostPath(path).c_str(), target, sizeof(target));
    if (length <= 0) return {};
    std::string_view name(target, static_cast<std::size_t>(length));
    while (!name.empty() && name.back() == '/') name.remove_suffix(1);
    return std::string(name.substr(name.rfind('/') + 1));
}

std::string SystemRoot::Resolve(std::string_view path) const {
    const std::string real = RealPath(HostPath(path));
    if (real.compare(0, folder_.size(), folder_) != 0) return {};
    const std::string below = real.substr(folder_.size());
    return below.empty() || below.front() == '/' ? below : std::string();
}

}  // namespace Vantix::transport
