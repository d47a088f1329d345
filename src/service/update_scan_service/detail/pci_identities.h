// PCI devices of the local host as software identities.
//
// Deliberately not here: reading them (platform/pci), and merging them with what else is known of
// the host, which each scan does by rules of its own.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"
#include "platform/pci/pci.h"

namespace service::detail {

/// One identity from one device. The name is the description where that is longer than the short
/// name, else the short name, else labels and identifiers joined by dashes; a missing version
/// becomes "N/A"; a slot other than "0" sets slot number and slot type 7.
[[nodiscard]] Vantix::VantixOptions::SoftwareIdentity_ ConvertPciDevice(const PciInfo& device);

/// Appends one identity for each device of the host, leaving out those whose software identifier
/// and slot (both exact) are in the list already. Returns 0 when the list then holds anything, else
/// -1: hand in an empty list to learn whether the host told of any device.
[[nodiscard]] int GetPciSoftwareIdentity(
    std::vector<Vantix::VantixOptions::SoftwareIdentity_>& identities);

}  // namespace service::detail
