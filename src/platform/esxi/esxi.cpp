#include "platform/esxi/esxi.h"

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/hypervisor_reader.h"

using Vantix::cim::CimChannel;
using Vantix::cim::CimSource;

namespace Vantix::Agentless {

EXSIInventory::EXSIInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

bool EXSIInventory::IsUnSpportedEXSIVersion() {
    CimChannel* channel = CimChannel::Of(connection_);
    if (channel == nullptr) return false;
    // A host that cannot tell its version now is asked again, with patience, for its facts.
    static_cast<void>(channel->Need({CimSource::kOperatingSystems}));
    return !cim::HasCimService(cim::ReadHypervisor(channel->Snapshot()).version);
}

}  // namespace Vantix::Agentless

CIMServerConfig::CIMServerConfig(const Vantix::VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

int CIMServerConfig::PrevConfig() {
    CimChannel* channel = CimChannel::Of(connection_);
    if (channel == nullptr) return CONNECTION_FAILED;
    const auto failure = channel->Need({CimSource::kSoftware});
    if (channel->Run().IsCancelled()) return INTERRUPTED_BY_USER;
    // That the service answers was proven by the login; only a role without the right to read is
    // sure to fail later, anything else may pass.
    const bool is_barred = failure.problem == Vantix::transport::CimProblem::kForbidden ||
                           failure.problem == Vantix::transport::CimProblem::kUnauthorized ||
                           failure.problem == Vantix::transport::CimProblem::kLoginBarred;
    return is_barred ? channel->Remember(failure).code : SUCCEED;
}
