// What a failure to reach or use a Redfish service means to the user: one code, one sentence.
#pragma once

#include <string>

#include "common/result/tarsel_result.h"
#include "transport/redfish/redfish_answer.h"

namespace Vantix::VantixConnection {

/// The result of a connection that failed. `target` is host and port as the user would write them.
/// `user` is the account that was used. The message says what failed, where, and what to do.
TarselResult ResultOfConnectFailure(const transport::RedfishFailure& failure,
                                    const std::string& target, const std::string& user);

/// Whether another service of the same target may well answer: its host was reached, or refused
/// this one port.
bool MayOtherPortsAnswer(const transport::RedfishFailure& failure);

/// The result code of a resource that could not be read over an established connection.
int CodeOfReadFailure(const transport::RedfishFailure& failure);

}  // namespace Vantix::VantixConnection
