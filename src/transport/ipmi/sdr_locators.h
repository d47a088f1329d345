// The FRU locators of a controller's sensor data repository, read record by record.
//
// For drivers that know nothing but raw requests; ipmitool reads them itself (fru_locator.h).
#pragma once

#include <functional>
#include <string>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

/// Follows the chain of records (IPMI v2.0, 33.12) and writes its FRU Device Locator records (43.8)
/// of logical devices as ParseFruLocators reads them; what a controller does not answer ends the
/// reading. `ask` sends one request; at most a few thousand are made.
[[nodiscard]] std::string ReadFruLocatorText(
    const std::function<RawAnswer(const RawRequest&)>& ask);

}  // namespace Vantix::transport
