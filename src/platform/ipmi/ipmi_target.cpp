#include "platform/ipmi/ipmi_target.h"

#include <filesystem>

#include "platform/connection/target_address.h"
#include "platform/ipmi/local_ipmi.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::ipmi {

using VantixConnection::ConnectOption;

int IpmiPortOf(const ConnectOption& option) {
    return option.ipmi_port == 0 ? transport::kIpmiPort : option.ipmi_port;
}

transport::IpmiTarget IpmiTargetOf(const ConnectOption& option) {
    return {option.target_address, IpmiPortOf(option), option.user, option.password};
}

bool HasLocalIpmiDevice(const ConnectOption& option, const std::string& root_folder) {
    if (!transport::SystemRoot(option.system_root).IsThisMachine()) return false;
    // Elsewhere the asking itself tells; below another folder only nodes can be.
    if (!ShowsIpmiDeviceAsNode() && root_folder == "/") return true;
    for (const char* name : {"dev/ipmi0", "dev/ipmi/0", "dev/ipmidev/0"}) {
        std::error_code ignored;
        if (std::filesystem::exists(std::filesystem::path(root_folder) / name, ignored))
            return true;
    }
    return false;
}

std::string IpmiTargetText(const ConnectOption& option) {
    if (option.target_address.empty()) return "this machine's BMC";
    return VantixConnection::HostForUrl(option.target_address) + ":" +
           std::to_string(IpmiPortOf(option));
}

std::string IpmiSilenceKey(const ConnectOption& option) {
    return "IPMI silence " + IpmiTargetText(option);
}

}  // namespace Vantix::ipmi
