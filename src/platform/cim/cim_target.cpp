#include "platform/cim/cim_target.h"

#include "platform/connection/target_address.h"

namespace Vantix::cim {

using VantixConnection::ConnectOption;

namespace {

constexpr int kCimHttpsPort = 5989;
constexpr int kCimHttpPort = 5988;
constexpr int kHttpsPort = 443;

bool IsPortForCim(const ConnectOption& option) {
    return option.cim_port == 0 && TargetKindOf(option) != CimTargetKind::kBmc;
}

}  // namespace

CimTargetKind TargetKindOf(const ConnectOption& option) {
    switch (option.connect_mode) {
        case VantixConnection::kConnectModeChassis:
        case VantixConnection::kConnectModeIoSwitch:
            return CimTargetKind::kChassis;
        case VantixConnection::kConnectModeEsxi:
            return CimTargetKind::kHypervisor;
        default:
            return CimTargetKind::kBmc;
    }
}

int CimPortOf(const ConnectOption& option) {
    if (option.cim_port != 0) return option.cim_port;
    if (IsPortForCim(option) && option.port != 0) return option.port;
    return option.cim_plain_http ? kCimHttpPort : kCimHttpsPort;
}

int WebPortOf(const ConnectOption& option) {
    return IsPortForCim(option) || option.port == 0 ? kHttpsPort : option.port;
}

std::string CimTargetOf(const ConnectOption& option) {
    return VantixConnection::HostForUrl(option.target_address) + ":" +
           std::to_string(CimPortOf(option));
}

}  // namespace Vantix::cim
