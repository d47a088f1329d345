// Logging in to an SSH server whose key has been checked (RFC 4252, 4256).
#pragma once

#include "transport/ssh/ssh_link.h"

namespace Vantix::transport {

/// Asks the server for its methods and tries at most three of them: key, keyboard-interactive,
/// password; only what there is a key or password for. A refused password ends the login, because
/// another try may lock the account.
[[nodiscard]] SshFailure LogIn(SshLink& link);

}  // namespace Vantix::transport
