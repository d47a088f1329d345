#include "platform/connection/inband_target.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/connection/target_address.h"
#include "platform/ipmi/bootstrap_account.h"
#include "platform/ipmi/local_ipmi.h"
#include "platform/local/local_host.h"
#include "platform/local/smbios_tables.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"
#include "transport/smbios/host_interface.h"

namespace Vantix::VantixConnection {

using transport::RedfishHostInterface;
using transport::SystemRoot;

namespace {

constexpr const char* kInbandTargetLog = "inband_target";
constexpr const char* kNoAccountKey = "no account from the BMC";
constexpr const char* kNetworkFolder = "/sys/class/net";

// The tree of the run where there is one, so that the table is read once.
std::shared_ptr<const SystemRoot> RootOf(const ConnectOption& option) {
    if (ActiveRun::HostRootSlot() != nullptr) return local::HostRoot();
    return std::make_shared<const SystemRoot>(option.system_root);
}

// An address of one link says nothing without the network device it lies behind.
std::string WithZone(const RedfishHostInterface& interface, const SystemRoot& root) {
    const std::string& address = interface.service_address;
    const bool is_of_one_link = address.compare(0, 5, "fe80:") == 0;
    if (!is_of_one_link) return address;
    if (interface.mac_address.empty()) return {};
    for (const std::string& name : root.List(kNetworkFolder)) {
        const std::string path = std::string(kNetworkFolder) + "/" + name + "/address";
        if (root.ReadText(path) == interface.mac_address) return address + "%" + name;
    }
    return {};
}

// What firmware wrote is used only where a user could have given it.
std::string UsableAddress(const RedfishHostInterface& interface, const SystemRoot& root) {
    for (const std::string& text : {WithZone(interface, root), interface.service_host_name}) {
        const auto parsed = ParseTargetAddress(text).address;
        if (parsed && parsed->host == text) return text;
    }
    return {};
}

TarselResult NoAddress(const SystemRoot& root, RunContext& run) {
    const std::vector<std::string> denied = root.DeniedPaths();
    const bool is_forbidden = std::any_of(denied.begin(), denied.end(), [](const auto& path) {
        return path.find("/sys/firmware/dmi/") == 0;
    });
    const TarselResult result(
        CONNECTION_FAILED,
        is_forbidden ? "Only root may read where the BMC of this machine is reached; run the scan "
                       "as root, or give the BMC's address."
                     : "This machine does not tell where its BMC is reached (its firmware has no "
                       "Redfish host interface record); give the BMC's address.");
    Log(2, kInbandTargetLog, __LINE__).Stream() << result;
    // Where another kind of connection fails too, its failure may be the one that is reported.
    run.AddNotice(result.message);
    return result;
}

}  // namespace

bool IsInband(const ConnectOption& option) {
    return option.connect_mode == kConnectModeInbandBmc || option.connect_mode == kConnectModeAmd ||
           option.connect_mode == kConnectModeAmdSecond ||
           option.connect_mode == kConnectModeAmdThird;
}

TarselResult FillInbandAddress(ConnectOption& option) {
    if (!IsInband(option) || !option.target_address.empty()) return TarselResult(SUCCEED, "");
    const auto root = RootOf(option);
    for (const auto& interface : transport::ReadRedfishHostInterfaces(local::ReadSmbios(*root))) {
        const std::string address = UsableAddress(interface, *root);
        if (address.empty()) continue;
        option.target_address = address;
        if (option.port == 0) option.port = interface.service_port;
        Log(3, kInbandTargetLog, __LINE__).Stream()
            << "The BMC of this machine is at " << HostForUrl(address) << ", port " << option.port;
        return TarselResult(SUCCEED, "");
    }
    return NoAddress(*root, *option.run);
}

TarselResult FillInbandAccount(ConnectOption& option) {
    if (!IsInband(option) || !option.user.empty()) return TarselResult(SUCCEED, "");
    BmcAccount account = option.run->KeptAccount();
    if (account.user.empty()) {
        const std::string refused = option.run->Recall(kNoAccountKey);
        if (!refused.empty()) return TarselResult(KCS_CONNECT_FAILED, refused);
        const TarselResult result = ipmi::GetBootstrapAccount(option, ipmi::SystemIpmiRunner(),
                                                              transport::SystemClock(), account);
        if (result == KCS_CONNECT_FAILED) option.run->Remember(kNoAccountKey, result.message);
        if (!result.IsSucceed()) {
            // The scan of an AMD platform goes on and has another failure to report.
            const bool is_result = option.connect_mode == kConnectModeInbandBmc;
            if (!is_result) option.run->AddNotice(result.message);
            return result;
        }
        option.run->KeepAccount(account);
    }
    option.user = account.user;
    option.password = account.password;
    return TarselResult(SUCCEED, "");
}

}  // namespace Vantix::VantixConnection
