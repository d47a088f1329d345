// What a fault makes of the right answer, as far as status, headers and body go. Faults of the
// connection (reset, truncation, drip) leave the answer alone; the server carries those out.

#pragma once

#include "bmc_simulator/bmc_options.h"
#include "bmc_simulator/service_message.h"

namespace simulators {

[[nodiscard]] ServiceReply ApplyFault(const Fault& fault, ServiceReply right_reply);

}  // namespace simulators
