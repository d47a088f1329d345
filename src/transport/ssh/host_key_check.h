// Whether a server is the one it was before, told by its key.
#pragma once

#include <libssh/libssh.h>

#include <string>
#include <vector>

#include "transport/ssh/ssh_link.h"

namespace Vantix::transport {

/// Compares the key that the server has shown with the known-hosts file, by the target's rule. A
/// failure means that no login may be tried. `notices` gets what the user should see.
[[nodiscard]] SshFailure CheckHostKey(const SshLink& link, std::vector<std::string>& notices);

}  // namespace Vantix::transport
