#include "platform/ipmi/ipmi_target.h"

#include "platform/connection/target_address.h"

namespace Vantix::ipmi {

using VantixConnection::ConnectOption;

int IpmiPortOf(const ConnectOption& option) {
    return option.ipmi_port == 0 ? transport::kIpmiPort : option.ipmi_port;
}

transport::IpmiTarget IpmiTargetOf(const ConnectOption& option) {
    return {option.target_address, IpmiPortOf(option), option.user, option.password};
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
