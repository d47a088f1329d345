// Operating system and architecture of a hypervisor host, over CIM.

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/hypervisor_reader.h"
#include "platform/system_info/system_info.h"

int SystemInfoScan::GetEsxiOSInfo(const ConnectionInfo& connection,
                                  std::pair<std::string, std::string>& os_arch) {
    using Vantix::cim::CimSource;
    os_arch = {};
    auto* channel = Vantix::cim::CimChannel::Of(connection);
    if (channel == nullptr) return CONNECTION_FAILED;
    const auto failure = channel->Need({CimSource::kOperatingSystems});
    if (channel->Run().IsCancelled()) return INTERRUPTED_BY_USER;
    if (failure) return channel->Remember(failure).code;
    // The processors only tell the architecture: without them the usual one is meant.
    static_cast<void>(channel->Need({CimSource::kProcessors}));
    const auto facts = Vantix::cim::ReadHypervisor(channel->Snapshot());
    if (facts.os.empty()) return GET_OS_TYPE_FAILED;
    os_arch = {facts.os, facts.architecture};
    return SUCCEED;
}
