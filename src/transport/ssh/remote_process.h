// A command at the server that can be talked to while it runs and ended when it must not go on.
#pragma once

#include <string>

#include "transport/ssh/command_wrapper.h"
#include "transport/ssh/remote_shell.h"
#include "transport/ssh/ssh_channel.h"

namespace Vantix::transport {

class RemoteProcess {
  public:
    /// The sinks get the command's own bytes alone.
    RemoteProcess(SshLink& link, SshChannel::Sink output, SshChannel::Sink error_output);

    [[nodiscard]] SshFailure Start(const std::string& command_line, const StepLimit& limit);

    [[nodiscard]] SshChannel& Channel() { return channel_; }

    /// Why nothing of the command came, although its streams have ended; no failure when it began.
    [[nodiscard]] SshFailure NeverBegan() const;
    [[nodiscard]] std::size_t NoiseBytes() const;

    /// Ends the command's process group over a channel of its own, within the target's limit for
    /// that; does nothing when the command has not begun or the connection is gone. Where the
    /// server opens no second channel, it is asked to signal the command itself.
    void EndGroup(const std::string& prefix, const std::string& input);

  private:
    SshLink& link_;
    const std::string mark_;
    StreamStart output_start_;
    StreamStart error_start_;
    SshChannel channel_;
};

/// Runs a command to its end, see RemoteShell::Execute.
[[nodiscard]] RemoteOutcome RunRemoteCommand(SshLink& link, const RemoteCommand& command);

}  // namespace Vantix::transport
