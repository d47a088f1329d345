// Asks an NVMe controller itself who it is, past the kernel's memory of it.
//
// One command only, Identify Controller; nothing here changes a drive.
#pragma once

#include <string>

namespace Vantix::disk {

struct IdentifyAnswer {
    enum class State { kRead, kDenied, kFailed };
    State state = State::kFailed;
    std::string data;   ///< 4096 bytes when read
    std::string cause;  ///< when not read
};

class NvmeAdmin {
  public:
    NvmeAdmin() = default;
    virtual ~NvmeAdmin() = default;
    NvmeAdmin(const NvmeAdmin&) = delete;
    NvmeAdmin& operator=(const NvmeAdmin&) = delete;

    /// `node`: "/dev/nvme0". `device_number`: "239:0" as sysfs tells it; a node that is another
    /// device is not asked; empty when it is not known.
    [[nodiscard]] virtual IdentifyAnswer IdentifyController(
        const std::string& node, const std::string& device_number) const = 0;
};

/// This machine's kernel. Lives as long as the program.
[[nodiscard]] const NvmeAdmin& KernelNvmeAdmin();

}  // namespace Vantix::disk
