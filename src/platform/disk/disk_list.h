// The list that is made of all disks that were found.
#pragma once

#include <vector>

#include "platform/disk/disk_facts.h"
#include "platform/identities/software_identity.h"

namespace Vantix::disk {

/// One identity a disk, in the same order. A disk that is reached on several ways (two ports, two
/// units) has one model and one serial number on all of them and is told once.
[[nodiscard]] std::vector<VantixOptions::SoftwareIdentity_> EachOnce(
    const std::vector<DiskFacts>& disks);

}  // namespace Vantix::disk
