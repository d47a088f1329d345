// What a CIM service tells of the machine and of its management controller. Pure.
#pragma once

#include <string>
#include <utility>

#include "platform/cim/cim_snapshot.h"
#include "platform/redfish/bmc_kind.h"

namespace Vantix::cim {

/// By CIM_ComputerSystem.Dedicated, and by the words of the class name where that is silent.
[[nodiscard]] bool IsManagementController(const CimInstance& system);
[[nodiscard]] bool IsChassisManager(const CimInstance& system);
[[nodiscard]] bool IsSwitch(const CimInstance& system);

/// Model, else SKU, else PartNumber of a physical package; empty where they say nothing.
[[nodiscard]] std::string ModelOf(const CimInstance& package);

/// (machine type, serial number): of the chassis (a blade enclosure before others, then the main
/// chassis), else of the computer system itself or of its identifying information. Empty where
/// nobody tells.
[[nodiscard]] std::pair<std::string, std::string> ReadMachine(const CimSnapshot& snapshot);

/// The management controller's computer system; null when the service shows none.
[[nodiscard]] const CimInstance* FindController(const CimSnapshot& snapshot);

/// What the rules for BMC kinds judge by; `controller` may be null.
[[nodiscard]] redfish::BmcFacts ReadControllerFacts(const CimInstance* controller);

}  // namespace Vantix::cim
