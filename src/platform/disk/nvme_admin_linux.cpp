#include "platform/disk/nvme_admin.h"

#include <fcntl.h>
#include <linux/nvme_ioctl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace Vantix::disk {
namespace {

using State = DeviceAnswer::State;

class Node {
  public:
    explicit Node(const std::string& path)
        : handle_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~Node() {
        if (handle_ >= 0) ::close(handle_);
    }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    [[nodiscard]] int Handle() const { return handle_; }

    /// "major:minor"; empty when it is no character device.
    [[nodiscard]] std::string DeviceNumber() const {
        struct stat state = {};
        if (::fstat(handle_, &state) != 0 || !S_ISCHR(state.st_mode)) return {};
        return std::to_string(major(state.st_rdev)) + ":" + std::to_string(minor(state.st_rdev));
    }

  private:
    int handle_;
};

DeviceAnswer Failure(int error) {
    const bool is_denied = error == EACCES || error == EPERM;
    return {
        is_denied ? State::kDenied : State::kFailed, {}, std::generic_category().message(error)};
}

DeviceAnswer Ask(const Node& node) {
    constexpr std::uint8_t kIdentify = 0x06;
    constexpr std::uint32_t kController = 0x01;
    std::string data(4096, '\0');
    nvme_admin_cmd command = {};
    command.opcode = kIdentify;
    command.addr = reinterpret_cast<std::uintptr_t>(data.data());
    command.data_len = static_cast<std::uint32_t>(data.size());
    command.cdw10 = kController;
    // No timeout of our own: when one passes, the kernel resets the controller.
    const int status = ::ioctl(node.Handle(), NVME_IOCTL_ADMIN_CMD, &command);
    if (status < 0) return Failure(errno);
    if (status > 0) return {State::kFailed, {}, "NVMe status " + std::to_string(status)};
    return {State::kRead, std::move(data), {}};
}

class KernelAdmin : public NvmeAdmin {
  public:
    DeviceAnswer IdentifyController(const std::string& path,
                                    const std::string& device_number) const override {
        const Node node(path);
        if (node.Handle() < 0) return Failure(errno);
        const std::string found = node.DeviceNumber();
        if (found.empty() || (!device_number.empty() && found != device_number)) {
            return {State::kFailed, {}, "the node is another device"};
        }
        return Ask(node);
    }
};

}  // namespace

const NvmeAdmin& KernelNvmeAdmin() {
    static const KernelAdmin admin;
    return admin;
}

}  // namespace Vantix::disk
