#include "platform/local/local_host.h"

#include <utility>

#include "platform/connection/connection.h"

namespace Vantix::local {

using VantixConnection::ActiveRun;
using VantixConnection::ConnectOption;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;

std::shared_ptr<const transport::SystemRoot> HostRoot() {
    const auto make = [] {
        return std::make_shared<const transport::SystemRoot>(ActiveRun::Option().system_root);
    };
    std::shared_ptr<const void>* kept = ActiveRun::HostRootSlot();
    if (kept == nullptr) return make();
    if (*kept == nullptr) *kept = make();
    return std::static_pointer_cast<const transport::SystemRoot>(*kept);
}

void ReportDenied(const transport::SystemRoot& root) {
    SourceStatus status;
    status.source = kPrivilegedSource;
    status.issues = root.DeniedPaths();
    if (status.issues.empty()) return;
    status.state = SourceState::kDenied;
    status.required = false;
    status.items_failed = static_cast<int>(status.issues.size());
    status.detail = "Run the scan as root to read them.";
    ActiveRun::Option().run->ReportSource(std::move(status));
}

}  // namespace Vantix::local
