// The command with which a machine asks its own BMC for an account of the Redfish service (DSP0270,
// "Get Bootstrap Account Credentials").
//
// Pure: makes the request, reads the answer. The answer holds a password.
#pragma once

#include <optional>
#include <string>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

/// "Credential bootstrapping is disabled", a completion code of this command alone.
inline constexpr int kBootstrappingDisabled = 0x80;

struct BootstrapCredentials {
    std::string user;
    std::string password;  ///< never logged
};

/// Asks for an account and leaves the BMC ready to give further ones.
[[nodiscard]] RawRequest BootstrapCredentialsRequest();

/// Nothing for a refusal, a short answer, and texts that are empty or not printable ASCII.
[[nodiscard]] std::optional<BootstrapCredentials> ParseBootstrapCredentials(
    const RawAnswer& answer);

}  // namespace Vantix::transport
