// What is known of one physical disk, and the record made of it.
#pragma once

#include <string>
#include <string_view>

#include "platform/identities/software_identity.h"
#include "platform/redfish/slot_rules.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::disk {

/// Unknown texts are empty; all are clean.
struct DiskFacts {
    std::string node;    ///< the kernel's name: "nvme0", "sda", else the SCSI address
    std::string source;  ///< "NVMe controller", "SCSI disk", "ATA disk", "eMMC"
    std::string manufacturer, model, firmware, serial;
    redfish::Slot slot;
};

/// Field by field as a drive in a BMC's inventory, so that both look alike:
/// - Name, ElementName, ProductName: the model, else the node. Description "Drive firmware".
/// - VersionString: the firmware revision, empty when it is not told.
/// - PartNumber: the model number, because that is what disks are ordered by and the only such
///   number they tell. SoftwareID: the same, else the node.
/// - InstanceID: the node. Caption: the source. Classifications "10"; IsPLDMUpdateSupported "0".
/// - Slot number and type: the bay, else empty and 0.
[[nodiscard]] VantixOptions::SoftwareIdentity_ MakeIdentity(const DiskFacts& facts);

/// The file's text; empty also when it is far longer than any such attribute or holds neither
/// letter nor digit: then it is damaged.
[[nodiscard]] std::string Attribute(const transport::SystemRoot& root, std::string_view path);

/// The same rule for a text that is here already.
[[nodiscard]] std::string Plausible(std::string text);

}  // namespace Vantix::disk
