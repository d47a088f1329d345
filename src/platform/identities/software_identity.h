// The record of one installed firmware or software component, as the inventories deliver it.
#pragma once

#include <cstdint>
#include <string>

namespace Vantix {
namespace VantixOptions {

/// All texts are clean UTF-8: cut at the first NUL, control bytes turned to blanks, trimmed.
/// Unknown values are empty. Field names follow CIM_SoftwareIdentity (DMTF CIM schema).
struct SoftwareIdentity_ {
    std::string Description;
    std::string ElementName;
    std::string ProductName;
    std::string Manufacturer;
    std::string Name;
    std::string Caption;
    std::string VersionString;
    std::string Classifications;  ///< decimal code of CIM_SoftwareIdentity.Classifications
    std::string ClassificationDescriptions;
    std::string IdentityInfoValue;
    std::string SoftwareID;
    std::string SubDeviceID;
    std::string ReleaseDate;
    std::string SoftwareStatus;
    std::string SoftwareRole;
    std::string IdentityInfoType;
    std::string IsPLDMUpdateSupported;  ///< "1", "0" or empty when the source does not tell
    std::string InstanceID;
    std::string AssociatedAdapterSlot;  ///< slot number of the carrying device; empty: none
    std::string LastUpdateError;
    std::string LastUpdateErrorString;
    std::int32_t SlotType = 0;           ///< code of the slot type name table; 0 is on board
    std::string SerialNumber;            ///< of the carrying device
    std::string PartNumber;              ///< of the carrying device
    std::string TargetOperatingSystems;  ///< decimal code of the first one it is meant for
};

}  // namespace VantixOptions
}  // namespace Vantix
