// The disks that sit in a Windows machine.
#pragma once

#include <vector>

#include "platform/connection/run_context.h"
#include "platform/disk/storage_requests.h"
#include "platform/identities/software_identity.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// One identity a disk (disk_facts.h): NVMe, then SCSI, SAS and SATA, then eMMC, each in the order
/// of Windows' numbers; InstanceID is "PhysicalDrive0". The same disks are left out as elsewhere
/// (scsi_rules.h), each with a line in the log; the way to a disk is told by its bus.
/// - NVMe: Identify Controller wins over what the driver shows; another revision than the driver's
///   is logged and told as a notice of `run`. A serial number comes from the controller alone,
///   because the driver shows an identifier in its place.
/// - ATA: whole model, revision and serial number come from the driver, which asks its disks
///   itself; behind a translation (SAS adapters, RAID controllers) from page 89h, for which `root`
///   lists the disk as denied where rights are missing.
/// The slot is not known. Stops early when `run` is cancelled.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> SurveyStorage(
    const StorageRequests& storage, const transport::SystemRoot& root,
    VantixConnection::RunContext& run);

}  // namespace Vantix::disk
