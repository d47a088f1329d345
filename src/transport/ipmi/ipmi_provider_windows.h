// Windows' own IPMI driver, through its WMI provider: class Microsoft_IPMI in root\WMI, method
// RequestResponse.
#pragma once

#include <memory>
#include <string>

#include "transport/ipmi/raw_ipmi.h"

namespace Vantix::transport {

/// A RawIpmiOpener. The driver is for administrators, and has no instance where the firmware
/// describes no BMC to Windows. Never throws.
[[nodiscard]] std::unique_ptr<RawIpmi> OpenIpmiProvider(std::string& cause);

}  // namespace Vantix::transport
