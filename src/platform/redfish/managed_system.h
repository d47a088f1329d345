// Which of a service's resources are the server itself, its BMC and its facts.
//
// A service may list settings, capability templates, accelerator boards or the nodes of one chassis
// beside the server. Deliberately not here: what kind of BMC it is (bmc_kind.h).
#pragma once

#include <string>

#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// The pointers lead into the snapshot and live as long as it. Unknown texts are empty.
struct ManagedSystem {
    const Resource* system = nullptr;   ///< nullptr: the service has no computer system
    const Resource* manager = nullptr;  ///< nullptr: no manager readable
    const Resource* chassis = nullptr;  ///< the chassis that stands for a missing system
    std::string machine_type;           ///< Model, else SKU, else PartNumber
    std::string serial_number;
    std::string bios_version;
    std::string manager_version;
    std::string notice;  ///< one sentence for the user where the choice was not clear; else empty
};

/// Chooses the computer system that the BMC manages: best the one that the manager links to, that
/// links back, and that has a BIOS; of equals the first, with a notice that lists them. Facts are
/// those of that system only, never of its chassis; a service without any computer system gets
/// them from its enclosure. `system_id` (compared with Id, case ignored) decides alone: when no
/// system has it there is no system, no fact, and a notice.
[[nodiscard]] ManagedSystem FindManagedSystem(const ServerSnapshot& snapshot,
                                              const std::string& system_id = {});

/// Whether the resource describes a computer system, not its settings or a template for one.
[[nodiscard]] bool IsComputerSystem(const Resource& resource);

/// Whether the body is an error answer instead of a resource.
[[nodiscard]] bool IsErrorDocument(const boost::json::object& body);

/// The Id of a resource, else the last segment of its path.
[[nodiscard]] std::string IdOf(const Resource& resource);

}  // namespace Vantix::redfish
