// The NVMe disks that sit in this machine.
#pragma once

#include <vector>

#include "platform/connection/run_context.h"
#include "platform/disk/disk_facts.h"
#include "platform/disk/disk_places.h"
#include "platform/disk/nvme_admin.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// One record a controller, in natural order. The kernel read model, serial number and revision
/// when its driver took the controller over, and does not notice an online update. So a live
/// controller is asked itself (`admin`; null: ask none) and what it says wins; another revision
/// than the kernel's is logged and told as a notice of `run`. Where the node is not to be opened
/// for want of rights, `root` lists it as denied. Controllers on a network (tcp, rdma, fc) and
/// software targets (loop) are left out. Stops early when `run` is cancelled.
[[nodiscard]] std::vector<DiskFacts> SurveyNvmeDisks(const transport::SystemRoot& root,
                                                     const DiskPlaces& places,
                                                     const NvmeAdmin* admin,
                                                     VantixConnection::RunContext& run);

}  // namespace Vantix::disk
