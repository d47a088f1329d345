// What a failed IPMI session means to the user: one code, one sentence.
#pragma once

#include "common/result/tarsel_result.h"
#include "platform/connection/connection.h"
#include "transport/ipmi/ipmi_problem.h"

namespace Vantix::ipmi {

/// AUTHENTICATION_FAILED for a refused account, code 63 when no session could be agreed on,
/// CONNECTION_FAILED when nobody answered or ipmitool is not there, TIMEOUT, code 47 interrupted.
TarselResult ResultOfIpmiFailure(const transport::IpmiFailure& failure,
                                 const VantixConnection::ConnectOption& option);

}  // namespace Vantix::ipmi
