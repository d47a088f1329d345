#include "tarsel/target_text.h"

#include "platform/connection/target_address.h"
#include "tarsel/host_name.h"

namespace tarsel {
namespace {

std::string AddressText(const ScanArguments& arguments) {
    if (arguments.port == 0) return arguments.host;
    return Vantix::VantixConnection::HostForUrl(arguments.host) + ":" +
           std::to_string(arguments.port);
}

}  // namespace

std::string TargetText(const ScanArguments& arguments) {
    if (!IsOwnMachine(arguments.kind)) return AddressText(arguments);
    if (!arguments.system_root.empty()) return "the machine recorded in " + arguments.system_root;
    const std::string name = HostName();
    return name.empty() ? "this machine" : name;
}

std::string PeerText(const ScanArguments& arguments) {
    if (!IsOwnMachine(arguments.kind)) return AddressText(arguments);
    return arguments.host.empty() ? "this machine's BMC" : AddressText(arguments);
}

}  // namespace tarsel
