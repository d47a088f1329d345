// The components of a chassis management module, and of the I/O switch in one of its bays. Pure.
//
// A component belongs to the computer system that it is installed on, told by an association to
// that system or to a physical package of it. What no association places belongs to the module.
// The bay of a system is the number of the slot that holds its package, else a number that the
// system or package gives as its bay, else the number behind the word "bay" in its name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cim/cim_snapshot.h"
#include "platform/identities/software_identity.h"

namespace Vantix::cim {

struct ModuleComponents {
    std::string machine_type;
    std::string serial_number;
    std::vector<VantixOptions::SoftwareIdentity_> components;
};

[[nodiscard]] ModuleComponents ReadChassisModule(const CimSnapshot& snapshot);

/// Nothing when no switch is in that bay. `bay` is a decimal number.
[[nodiscard]] std::optional<ModuleComponents> ReadSwitch(const CimSnapshot& snapshot,
                                                         std::string_view bay);

}  // namespace Vantix::cim
