#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {
namespace {

// The operations have fixed parameters; a thread's run is what it is in the middle of, not state
// that outlives a call.
thread_local ActiveRun* innermost = nullptr;

}  // namespace

ActiveRun::ActiveRun(const ConnectOption& option) : option_(option), outer_(innermost) {
    innermost = this;
}

ActiveRun::~ActiveRun() {
    innermost = outer_;
}

const ConnectOption& ActiveRun::Option() {
    thread_local const ConnectOption without_run;
    return innermost == nullptr ? without_run : innermost->option_;
}

std::shared_ptr<const void>* ActiveRun::HostRootSlot() {
    return innermost == nullptr ? nullptr : &innermost->host_root_;
}

}  // namespace Vantix::VantixConnection
