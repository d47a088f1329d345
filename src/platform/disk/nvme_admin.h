// Asks an NVMe controller itself who it is, past the kernel's memory of it.
//
// One command only, Identify Controller; nothing here changes a drive.
#pragma once

#include <string>

#include "platform/disk/device_answer.h"

namespace Vantix::disk {

class NvmeAdmin {
  public:
    NvmeAdmin() = default;
    virtual ~NvmeAdmin() = default;
    NvmeAdmin(const NvmeAdmin&) = delete;
    NvmeAdmin& operator=(const NvmeAdmin&) = delete;

    /// 4096 bytes. `node`: "/dev/nvme0". `device_number`: "239:0" as sysfs tells it; a node that is
    /// another device is not asked; empty when it is not known.
    [[nodiscard]] virtual DeviceAnswer IdentifyController(
        const std::string& node, const std::string& device_number) const = 0;
};

/// This machine's kernel. Lives as long as the program.
[[nodiscard]] const NvmeAdmin& KernelNvmeAdmin();

}  // namespace Vantix::disk
