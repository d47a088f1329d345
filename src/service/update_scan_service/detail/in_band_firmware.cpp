#include "service/update_scan_service/detail/in_band_firmware.h"

#include <iterator>

#include "common/result/result_codes.h"
#include "platform/identities/identities.h"
#include "platform/log/log.h"
#include "platform/pmem/pmem.h"
#include "service/update_scan_service/detail/ascii_case.h"
#include "service/update_scan_service/detail/device_list_file.h"
#include "service/update_scan_service/detail/scan_trace.h"
#include "service/update_scan_service/detail/system_lists.h"
#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {

using Vantix::VantixConnection::ConnectionInfo;

namespace {

using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;

void MoveBehind(Identities& identities, Identities& added) {
    identities.insert(identities.end(), std::make_move_iterator(added.begin()),
                      std::make_move_iterator(added.end()));
}

void ReadOverCim(const ConnectionInfo& connection, Identities& identities) {
    Identities read;
    Vantix::Agentless::AgentlessSoftwareIdentity inventory(connection);
    const int code = inventory.GetPLDMSoftwareIdentities(read);
    Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Cim scan ret:" << code;
    MoveBehind(identities, read);
}

}  // namespace

InBandFirmware::InBandFirmware(const UpdateScanOption& option, const std::string& os,
                               UpdateScanReport& report)
    : option_(option), os_(os), report_(report), rest_result_(SUCCEED), cim_result_(SUCCEED) {}

TarselResult InBandFirmware::Read(const std::string& bmc_type, Identities& identities) {
    return AsciiUpper(bmc_type) == "TAVRO" ? ReadTavro(identities) : ReadOther(identities);
}

TarselResult InBandFirmware::ReadTavro(Identities& identities) {
    rest_result_ = GetRESTConnection(option_.connect_option, rest_);
    Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Rest conn ret:" << rest_result_;
    Vantix::SystemCheck system_check = MakeSystemCheck();
    const bool redfish_valid = rest_result_.IsSucceed() && system_check.IsRedfishSupported(rest_);
    Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Whitley Redfish valid:" << redfish_valid;
    if (redfish_valid) ReadOverRedfish(system_check, identities);
    if (identities.empty()) {
        const bool is_v3 = rest_result_.IsSucceed() && system_check.IsTavroV3(rest_);
        Vantix::Log(3, kScanLogSource, __LINE__).Stream() << "Is Tavro_V3 system:" << is_v3;
        if (!is_v3) ReadOverFirstCim(identities);
    }
    if (!redfish_valid) AppendPersistentMemory(identities);
    if (!identities.empty()) return TarselResult(SUCCEED);
    if (!cim_result_.IsSucceed()) return cim_result_;
    return rest_result_.IsSucceed() ? TarselResult(GET_FIRMWARE_INFO_FAILED) : rest_result_;
}

void InBandFirmware::ReadOverRedfish(Vantix::SystemCheck& system_check, Identities& identities) {
    if (rest_.connect_case == Vantix::VantixConnection::kConnectCaseRest) {
        report_.SetBmcReleaseName(system_check.GetReleaseName(rest_));
    }
    Vantix::Log(3, kScanLogSource, __LINE__).Stream()
        << "Rest connection is available, try to get softwareidentity from redfish first.";
    Vantix::Agentless::AgentlessSoftwareIdentity inventory(rest_);
    const int code = inventory.GetPLDMSoftwareIdentities(identities);
    Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Redfish scan ret:" << code;
    redfish_found_something_ = !identities.empty();
    if (os_ != "PLATFORM") return;
    const std::string devices = inventory.GetInventoryList();
    Vantix::Log(4, kScanLogSource, __LINE__).Stream() << "devsw.list:" << devices;
    WriteDeviceListFile(kDeviceListFile, devices);
}

void InBandFirmware::ReadOverFirstCim(Identities& identities) {
    std::vector<ConnectionInfo> connections;
    cim_result_ = FetchCIMConnectionList(option_.connect_option, connections);
    Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "Cim conn ret:" << cim_result_;
    if (cim_result_.IsSucceed() && !connections.empty()) {
        ReadOverCim(connections.front(), identities);
    }
}

void InBandFirmware::AppendPersistentMemory(Identities& identities) const {
    Identities modules;
    PmemManger reader;
    if (rest_result_.IsSucceed()) reader.GetSoftwareIdentity(rest_, modules);
    if (modules.empty()) reader.GetSoftwareIdentity(modules);
    if (modules.empty()) {
        Vantix::Log(2, kScanLogSource, __LINE__).Stream() << "There is no AEP fw info";
    }
    MoveBehind(identities, modules);
}

TarselResult InBandFirmware::ReadOther(Identities& identities) const {
    std::vector<ConnectionInfo> connections;
    if (FetchCIMConnectionList(option_.connect_option, connections).IsSucceed()) {
        for (const ConnectionInfo& connection : connections) ReadOverCim(connection, identities);
    }
    return TarselResult(identities.empty() ? GET_FIRMWARE_INFO_FAILED : SUCCEED);
}

}  // namespace service::detail
