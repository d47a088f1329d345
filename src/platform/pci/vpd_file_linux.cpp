#include "platform/pci/vpd_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace Vantix::pci {
namespace {

class VpdFile {
  public:
    // A pipe or a link in its place must not hold up the scan or lead it elsewhere.
    explicit VpdFile(const std::string& path)
        : handle_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW)) {
    }
    ~VpdFile() {
        if (handle_ >= 0) ::close(handle_);
    }
    VpdFile(const VpdFile&) = delete;
    VpdFile& operator=(const VpdFile&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ >= 0; }
    [[nodiscard]] bool IsRegular() const {
        struct stat state = {};
        return ::fstat(handle_, &state) == 0 && S_ISREG(state.st_mode);
    }
    [[nodiscard]] std::optional<std::string> Read(std::size_t offset, std::size_t size) const {
        std::string bytes(size, '\0');
        ssize_t count = -1;
        do {
            count = ::pread(handle_, bytes.data(), size, static_cast<off_t>(offset));
        } while (count < 0 && errno == EINTR);
        if (count < 0) return std::nullopt;
        bytes.resize(static_cast<std::size_t>(count));
        return bytes;
    }

  private:
    int handle_;
};

}  // namespace

PieceReader OpenVpdFile(const transport::SystemRoot& root, const std::string& path) {
    errno = 0;
    const auto file = std::make_shared<const VpdFile>(root.HostPath(path));
    if (!file->IsOpen() && (errno == EACCES || errno == EPERM)) root.AddDenied(path);
    if (!file->IsOpen() || !file->IsRegular()) return {};
    return [file](std::size_t offset, std::size_t size) { return file->Read(offset, size); };
}

}  // namespace Vantix::pci
