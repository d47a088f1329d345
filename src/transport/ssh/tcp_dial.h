// A TCP connection to a host that is given by name or address, within a limit of time.
#pragma once

#include <libssh/libssh.h>

#include <functional>
#include <string>

#include "transport/ssh/ssh_problem.h"
#include "transport/ssh/step_limit.h"

namespace Vantix::transport {

using NativeSocket = socket_t;

struct Dialed {
    SshFailure failure;
    /// Non-blocking and the caller's to close; of no meaning with a failure.
    NativeSocket socket{};
};

/// Asked several times a second: the reason to stop, or none.
using StopQuestion = std::function<SshFailure()>;

/// Tries the host's addresses one after the other, each within its share of what is left of the
/// limit. Looking up a name is given up on expiry, too.
[[nodiscard]] Dialed DialTcp(const std::string& host, int port, const StepLimit& limit,
                             const StopQuestion& must_stop);

void CloseSocket(NativeSocket socket);

}  // namespace Vantix::transport
