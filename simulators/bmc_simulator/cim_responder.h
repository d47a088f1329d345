// The CIM-XML service of a simulated machine: one request in, its right answer out (DSP0200,
// DSP0201). Strict about what it is asked: headers, message, operation and parameters must be as
// the standards want them, because clients in the field meet servers that insist. Serves the
// classic read operations only; pulled enumerations are refused as small servers do. Knows no
// logins and no sockets.

#pragma once

#include <string>

#include "bmc_simulator/cim_repository.h"
#include "bmc_simulator/service_message.h"

namespace simulators {

/// The answer to a POST at the CIM path.
[[nodiscard]] ServiceReply AnswerCim(const CimRepository& repository,
                                     const ServiceRequest& request);

}  // namespace simulators
