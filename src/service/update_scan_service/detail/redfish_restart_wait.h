// Patience with a Redfish service that restarts while it is being asked.
//
// Deliberately not here: the decision to ask again (target_system_info.cpp). Its list of connection
// kinds names Redfish once, so nothing is waited for today; the wait is kept for lists that name it
// again.
#pragma once

#include <cstdint>

#include "platform/connection/connection.h"
#include "platform/system_check/system_check.h"

namespace service::detail {

/// From the second attempt on, sleeps ten seconds at a time while the update service behind
/// `connection` is starting and fewer whole minutes than the setting
/// "BMC_REDFISH_WAIT_RESTARTING_TIME" (5 unless set) have passed since `start_seconds`, a reading
/// of the monotonic clock. The first attempt asks nothing and waits for nothing.
void WaitForRedfishRestart(Vantix::SystemCheck& system_check,
                           const Vantix::VantixConnection::ConnectionInfo& connection, int attempt,
                           std::int64_t start_seconds);

}  // namespace service::detail
