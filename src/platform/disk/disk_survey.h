// All physical disks of one machine.
#pragma once

#include <vector>

#include "platform/connection/run_context.h"
#include "platform/disk/nvme_admin.h"
#include "platform/identities/software_identity.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// One identity a disk (disk_facts.h): NVMe, then SCSI, SAS and SATA, then eMMC, each in natural
/// order. A disk that is reached on several ways (two ports, two units) has one model and one
/// serial number on all of them and is told once. `admin` may be null. Deliberately not here: disks
/// that a RAID controller keeps to itself.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> SurveyDisks(
    const transport::SystemRoot& root, const NvmeAdmin* admin, VantixConnection::RunContext& run);

}  // namespace Vantix::disk
