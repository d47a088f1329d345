#include "platform/connection/https_target.h"

#include "platform/connection/target_address.h"

namespace Vantix::VantixConnection {

namespace {

constexpr int kHttpsPort = 443;

}  // namespace

int HttpsPortOf(const ConnectOption& option) {
    return option.port == 0 ? kHttpsPort : option.port;
}

std::string HttpsTargetOf(const ConnectOption& option) {
    return HostForUrl(option.target_address) + ":" + std::to_string(HttpsPortOf(option));
}

}  // namespace Vantix::VantixConnection
