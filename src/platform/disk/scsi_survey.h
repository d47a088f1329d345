// The SCSI, SAS and SATA disks that the kernel shows.
#pragma once

#include <vector>

#include "platform/disk/disk_facts.h"
#include "platform/disk/disk_places.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// In the order of their SCSI addresses. Serial number: page 80h. Of ATA drives the whole model,
/// revision and serial number come from page 89h, else from udev's database; without either the
/// revision is what the translation left of it, and the log says so. What is no disk of this
/// machine (scsi_rules.h) is left out with a line in the log.
[[nodiscard]] std::vector<DiskFacts> SurveyScsiDisks(const transport::SystemRoot& root,
                                                     const DiskPlaces& places);

}  // namespace Vantix::disk
