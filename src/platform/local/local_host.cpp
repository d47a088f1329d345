#include "platform/local/local_host.h"

#include <optional>
#include <utility>

#include "platform/connection/connection.h"

namespace Vantix::local {

using VantixConnection::ActiveRun;
using VantixConnection::ConnectOption;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;

namespace {

struct Host {
    explicit Host(const std::string& folder) : root(folder) {}

    transport::SystemRoot root;
    mutable std::optional<std::vector<PresentDevice>> devices;
    mutable bool was_asked = false;
};

std::shared_ptr<const Host> ActiveHost() {
    const auto make = [] { return std::make_shared<const Host>(ActiveRun::Option().system_root); };
    std::shared_ptr<const void>* kept = ActiveRun::HostRootSlot();
    if (kept == nullptr) return make();
    if (*kept == nullptr) *kept = make();
    return std::static_pointer_cast<const Host>(*kept);
}

}  // namespace

std::shared_ptr<const transport::SystemRoot> HostRoot() {
    const std::shared_ptr<const Host> host = ActiveHost();
    return {host, &host->root};
}

std::shared_ptr<const std::vector<PresentDevice>> HostDevices() {
    const std::shared_ptr<const Host> host = ActiveHost();
    if (!host->root.IsThisMachine()) return nullptr;
    if (!host->was_asked) host->devices = PresentDevices();
    host->was_asked = true;
    if (!host->devices) return nullptr;
    return {host, &*host->devices};
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
