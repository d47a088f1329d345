#include "service/update_scan_service/detail/enclosure_scan.h"

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/enclosure/enclosure.h"
#include "platform/identities/identities.h"
#include "platform/log/log.h"
#include "service/update_scan_service/detail/identity_conversion.h"
#include "service/update_scan_service/detail/module_firmware.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

using Vantix::VantixConnection::ConnectionInfo;

TarselResult Connect(const UpdateScanOption& option, ConnectionInfo& connection) {
    TarselResult result = GetRESTConnection(option.connect_option, connection);
    if (!result.IsSucceed()) result = FetchVeskHttpsConnection(option.connect_option, connection);
    if (!result.IsSucceed()) result = FetchIPMIConnection(option.connect_option, connection);
    return result;
}

UpdateScanItem ConvertPowerSupply(const PSUFwInfo& supply) {
    constexpr int kPowerSupplySlot = 2;
    UpdateScanItem item;
    item.name = supply.Name;
    item.softwareId = supply.SoftwareId;
    item.version = supply.Version;
    item.description = supply.Name;
    item.slotNum = supply.SlotNum;
    item.slotType = std::to_string(kPowerSupplySlot);
    item.pldm = "1";
    item.hasDevice = 1;
    return item;
}

void AppendPowerSupplies(Vantix::VeskInventory& inventory, UpdateScanReport& report) {
    std::vector<PSUFwInfo> supplies;
    const int code = inventory.GetPSUFwInfo(supplies);
    // The log names the operation differently on purpose: its readers search for this text.
    Vantix::Log(2, kScanLogSource, __LINE__).Stream()
        << "veskInventory.GetPSUInfo return code:" << code;
    for (const PSUFwInfo& supply : supplies) report.PushScanItem(ConvertPowerSupply(supply));
}

void AppendIdentities(const ConnectionInfo& connection, UpdateScanReport& report) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities;
    Vantix::Agentless::AgentlessSoftwareIdentity(connection)
        .GetSoftwareIdentities(identities, true);
    AppendSoftwareIdentities(report, identities);
}

void AppendModuleFirmware(Vantix::VeskInventory& inventory, UpdateScanReport& report) {
    ModuleFirmwareRecord record;
    record.SoftwareId = "Vesk";
    record.Description = "Vesk Firmware";
    record.Name = "Vesk Firmware";
    record.SecondName = "PSU Firmware";
    const int code = inventory.GetFirmwareVersion(record.Version);
    // Written for code 0 as well, on purpose.
    Vantix::Log(1, kScanLogSource, __LINE__).Stream()
        << "Get Vesk version failed with error code:" << code;
    if (code == 0) report.PushScanItem(ConvertModuleFirmware(record));
}

void StorePlatform(UpdateScanReport& report, const std::string& machine_type,
                   const std::string& serial_number) {
    report.SetOS("None");
    report.SetArch("None");
    report.SetBmcType("Vesk");
    report.SetMT(machine_type);
    report.SetScope(serial_number);
    report.SetScanCount(static_cast<int>(report.GetScanResults().size()));
}

}  // namespace

TarselResult EnclosureScan(const UpdateScanOption& option, UpdateScanReport& report,
                           DynamicProgressBar* /*progress_bar*/) {
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Start Vesk inventorying...";
    ConnectionInfo connection;
    const TarselResult connected = Connect(option, connection);
    if (!connected.IsSucceed()) return connected;

    Vantix::VeskInventory inventory(connection);
    std::string machine_type;
    if (const int code = inventory.GetMachineType(machine_type); code != 0) {
        Vantix::Log(1, kScanLogSource, __LINE__).Stream()
            << "Get Vesk MT failed with error code:" << code;
        return TarselResult(GENERIC_FAILURE, "");
    }
    std::string serial_number;
    inventory.GetSerialNumber(serial_number);
    AppendPowerSupplies(inventory, report);
    if (connection.connect_case == Vantix::VantixConnection::kConnectCaseVeskRest) {
        AppendIdentities(connection, report);
    } else {
        AppendModuleFirmware(inventory, report);
    }
    StorePlatform(report, machine_type, serial_number);
    return TarselResult(SUCCEED, "");
}

}  // namespace service::detail
