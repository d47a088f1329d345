// The kind of management controller, as several scan paths ask for it.
#pragma once

#include <string>

#include "platform/connection/connection.h"

namespace service::detail {

/// Stores the text of the controller's type. On failure logs the return value at level 2, leaves
/// `bmc_type` as it was and returns false; what follows from that is the caller's to say.
[[nodiscard]] bool AcquireBmcType(const Vantix::VantixConnection::ConnectionInfo& connection,
                                  std::string& bmc_type);

}  // namespace service::detail
