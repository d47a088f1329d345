// One channel of an SSH connection (RFC 4254): a command or a subsystem, its streams, its end.
//
// Both streams are taken in whatever order they come, while the connection is pumped, so that
// neither can stall the other. Knows nothing of what the bytes mean.
#pragma once

#include <libssh/callbacks.h>
#include <libssh/libssh.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "transport/ssh/ssh_link.h"

namespace Vantix::transport {

class SshChannel {
  public:
    using Sink = std::function<void(std::string_view)>;

    /// `link` must outlive the channel. The sinks are called from within Pump() of the link.
    SshChannel(SshLink& link, Sink output, Sink error_output);
    ~SshChannel();
    SshChannel(const SshChannel&) = delete;
    SshChannel& operator=(const SshChannel&) = delete;

    [[nodiscard]] SshFailure StartCommand(const std::string& command_line, const StepLimit& limit);
    [[nodiscard]] SshFailure StartSubsystem(const std::string& name, const StepLimit& limit);

    /// Hands over as much as the other side takes now; how many bytes that were.
    std::size_t Write(std::string_view bytes);
    void EndInput();
    /// Asks the server itself to signal the command, "TERM" for example.
    void SendSignal(const char* name);

    /// Nothing will come on either stream any more.
    [[nodiscard]] bool IsAtEnd() const { return has_ended_ || is_closed_; }
    [[nodiscard]] bool IsClosed() const { return is_closed_; }
    [[nodiscard]] std::optional<int> ExitStatus() const { return exit_status_; }
    [[nodiscard]] const std::string& ExitSignal() const { return exit_signal_; }
    [[nodiscard]] bool HasResult() const { return exit_status_ || !exit_signal_.empty(); }
    /// Bytes that came on both streams so far.
    [[nodiscard]] std::uint64_t BytesRead() const { return bytes_read_; }

    [[nodiscard]] SshLink& Link() const { return link_; }

  private:
    struct ChannelEnd {
        void operator()(ssh_channel channel) const { ssh_channel_free(channel); }
    };

    [[nodiscard]] SshFailure Open(const StepLimit& limit);
    void SetCallbacks();
    static int OnData(ssh_session session, ssh_channel channel, void* data, uint32_t length,
                      int is_error_output, void* self);
    static void OnEof(ssh_session session, ssh_channel channel, void* self);
    static void OnClose(ssh_session session, ssh_channel channel, void* self);
    static void OnExitStatus(ssh_session session, ssh_channel channel, int status, void* self);
    static void OnExitSignal(ssh_session session, ssh_channel channel, const char* signal, int core,
                             const char* message, const char* language, void* self);

    SshLink& link_;
    Sink output_;
    Sink error_output_;
    ssh_channel_callbacks_struct callbacks_{};
    std::unique_ptr<ssh_channel_struct, ChannelEnd> channel_;
    bool has_ended_ = false;
    bool is_closed_ = false;
    std::optional<int> exit_status_;
    std::string exit_signal_;
    std::uint64_t bytes_read_ = 0;
};

}  // namespace Vantix::transport
