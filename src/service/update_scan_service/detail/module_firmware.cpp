#include "service/update_scan_service/detail/module_firmware.h"

namespace service::detail {
namespace {

// By value, not by the C library: modules send bytes of any code page, and what counts as printable
// must not depend on the locale.
std::string PrintableOnly(std::string text) {
    std::erase_if(text, [](char letter) { return letter < 0x20 || letter > 0x7E; });
    return text;
}

}  // namespace

UpdateScanItem ConvertModuleFirmware(const ModuleFirmwareRecord& record) {
    UpdateScanItem item;
    item.name = record.Name;
    item.softwareId = record.SoftwareId;
    item.version = record.Version;
    item.classification = record.Classification;
    item.description = PrintableOnly(record.Description);
    item.hasDevice = 1;
    return item;
}

void StoreChassisFirmware(UpdateScanReport& report,
                          const std::vector<ModuleFirmwareRecord>& records) {
    report.SetOS("None");
    report.SetArch("None");
    report.SetBmcType("Tolv");
    report.SetMT(records.empty() ? std::string() : records.front().MachineType);
    report.SetScope(records.empty() ? std::string() : records.front().SerialNumber);
    report.SetScanCount(static_cast<int>(records.size()));
    for (const ModuleFirmwareRecord& record : records) {
        report.PushScanItem(ConvertModuleFirmware(record));
    }
}

}  // namespace service::detail
