#include "transport/sysroot/root_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace Vantix::transport {

RootFile::RootFile(const SystemRoot& root, std::string_view path) {
    const std::string resolved = root.Resolve(path);
    if (resolved.empty()) return;
    // Without O_NONBLOCK a pipe among the files would stop the scan.
    handle_ = ::open(root.HostPath(resolved).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat state = {};
    if (handle_ < 0 || (::fstat(handle_, &state) == 0 && S_ISREG(state.st_mode))) return;
    ::close(handle_);
    handle_ = -1;
}

RootFile::~RootFile() {
    if (handle_ >= 0) ::close(handle_);
}

std::string RootFile::Read(std::uint64_t offset, std::size_t size) const {
    constexpr std::uint64_t kFarthest = std::numeric_limits<std::int64_t>::max();
    if (!IsOpen() || offset > kFarthest) return {};
    std::string bytes(size, '\0');
    std::size_t count = 0;
    while (count < size) {
        const ssize_t step = ::pread(handle_, bytes.data() + count, size - count,
                                     static_cast<off_t>(offset + count));
        if (step < 0 && errno == EINTR) continue;
        if (step <= 0) break;
        count += static_cast<std::size_t>(step);
    }
    bytes.resize(count);
    return bytes;
}

}  // namespace Vantix::transport
