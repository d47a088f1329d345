// What was read of a CIM service in one scan, as it came, and which class each list is of.
#pragma once

#include <vector>

#include "transport/cim_xml/cim_types.h"

namespace Vantix::cim {

using transport::CimInstance;

/// Subclasses come under their own class names: a list tells what its members are, their names do
/// not.
struct CimSnapshot {
    std::vector<CimInstance> systems;            ///< CIM_ComputerSystem
    std::vector<CimInstance> chassis;            ///< CIM_Chassis
    std::vector<CimInstance> packages;           ///< CIM_PhysicalPackage
    std::vector<CimInstance> slots;              ///< CIM_Slot
    std::vector<CimInstance> packages_in_slot;   ///< CIM_PackageInSlot: slot (Antecedent), package
    std::vector<CimInstance> system_packages;    ///< CIM_ComputerSystemPackage: package, system
    std::vector<CimInstance> software;           ///< CIM_SoftwareIdentity
    std::vector<CimInstance> installed;          ///< CIM_InstalledSoftwareIdentity
    std::vector<CimInstance> element_software;   ///< CIM_ElementSoftwareIdentity: software, element
    std::vector<CimInstance> operating_systems;  ///< CIM_OperatingSystem
    std::vector<CimInstance> processors;         ///< CIM_Processor
};

enum class CimSource {
    kSystems,
    kChassis,
    kPackages,
    kSlots,
    kPackagesInSlot,
    kSystemPackages,
    kSoftware,
    kInstalled,
    kElementSoftware,
    kOperatingSystems,
    kProcessors
};

}  // namespace Vantix::cim
