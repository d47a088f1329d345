#include "transport/sysroot/root_file.h"

#include <fcntl.h>
#include <io.h>

#include <filesystem>

#include "common/files/file_path.h"

namespace Vantix::transport {

RootFile::RootFile(const SystemRoot& root, std::string_view path) {
    const std::string inside = root.Resolve(path);
    if (inside.empty()) return;
    std::error_code error;
    const std::filesystem::path file = FilePath(root.HostPath(inside));
    if (!std::filesystem::is_regular_file(file, error)) return;
    handle_ = _wopen(file.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

RootFile::~RootFile() {
    if (handle_ >= 0) _close(handle_);
}

std::string RootFile::Read(std::uint64_t offset, std::size_t size) const {
    std::string bytes(size, '\0');
    std::size_t done = 0;
    if (_lseeki64(handle_, static_cast<std::int64_t>(offset), SEEK_SET) < 0) return {};
    while (done < size) {
        const int count = _read(handle_, bytes.data() + done, static_cast<unsigned>(size - done));
        if (count < 0) return {};
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

}  // namespace Vantix::transport
