// Firmware of management modules and switches: from the records of the libraries to scan items.
//
// Deliberately not here: reading them, and the agentless flag of identity_conversion.h. Module
// items carry neither flag nor slot, although their identifiers are known as agentless.
#pragma once

#include <string>
#include <vector>

#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {

/// The shape that all module firmware has before it becomes an item.
struct ModuleFirmwareRecord {
    std::string MachineType;
    std::string SerialNumber;
    std::string SoftwareId;
    std::string Version;
    std::string Classification;
    std::string Description;
    std::string Name;
    std::string SecondName;  ///< of what else the module reports on; items do not show it
};

/// One item from one record; the description keeps only printable ASCII (0x20 to 0x7E).
[[nodiscard]] UpdateScanItem ConvertModuleFirmware(const ModuleFirmwareRecord& record);

/// The records of a chassis library (TolvInfo, SwitchInfo) in the shape above, in their order.
template <typename Info>
[[nodiscard]] std::vector<ModuleFirmwareRecord> ToModuleFirmware(const std::vector<Info>& list) {
    std::vector<ModuleFirmwareRecord> records;
    for (const Info& info : list) {
        records.push_back(ModuleFirmwareRecord{info.MachineType, info.SerialNumber, info.SoftwareId,
                                               info.Version, info.Classification, info.Description,
                                               info.Name, ""});
    }
    return records;
}

/// Writes what was read through a chassis module into the report: no operating system and no
/// architecture ("None"), BMC type "Tolv" (for its switches too, on purpose), machine type and
/// serial number of the first record (empty without one), the number of records as scan count, and
/// one item a record behind those already there.
void StoreChassisFirmware(UpdateScanReport& report,
                          const std::vector<ModuleFirmwareRecord>& records);

}  // namespace service::detail
