// Asks the disks of a Windows machine what they are: the requests that its storage drivers answer.
//
// Nothing here changes a disk; the only commands that reach one are INQUIRY and, by the NVMe
// driver, Identify Controller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/disk/device_answer.h"

namespace Vantix::disk {

class StorageRequests {
  public:
    StorageRequests() = default;
    virtual ~StorageRequests() = default;
    StorageRequests(const StorageRequests&) = delete;
    StorageRequests& operator=(const StorageRequests&) = delete;

    /// The numbers N of the disks that have a name \\.\PhysicalDriveN, in any order.
    [[nodiscard]] virtual std::vector<int> Disks() const = 0;

    /// The answer to one property query (storage_queries.h), at most `most_bytes` of it. Hardly
    /// a driver wants rights for it.
    [[nodiscard]] virtual DeviceAnswer Query(int disk, const std::string& query,
                                             std::size_t most_bytes) const = 0;

    /// One page of vital product data (SPC-4, INQUIRY), at most `most_bytes` of it. For
    /// administrators only.
    [[nodiscard]] virtual DeviceAnswer ReadPage(int disk, std::uint8_t page,
                                                std::size_t most_bytes) const = 0;
};

/// Those of the machine that this program runs on; null on systems that show disks another way.
/// Lives as long as the program.
[[nodiscard]] const StorageRequests* SystemStorage();

}  // namespace Vantix::disk
