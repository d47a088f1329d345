// Soldered flash disks (eMMC).
#pragma once

#include <vector>

#include "platform/disk/disk_facts.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// The firmware revision is as the kernel tells it ("0x0a00000000000000"). SD cards are removable
/// media and left out with a line in the log; so are the boot and replay partitions, silently.
[[nodiscard]] std::vector<DiskFacts> SurveyFlashDisks(const transport::SystemRoot& root);

}  // namespace Vantix::disk
