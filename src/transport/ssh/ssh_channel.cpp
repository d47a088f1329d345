#include "transport/ssh/ssh_channel.h"

#include <algorithm>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kWriteAtOnce = 64 * 1024;

}  // namespace

SshChannel::SshChannel(SshLink& link, Sink output, Sink error_output)
    : link_(link), output_(std::move(output)), error_output_(std::move(error_output)) {}

SshChannel::~SshChannel() {
    if (channel_) ssh_remove_channel_callbacks(channel_.get(), &callbacks_);
}

void SshChannel::SetCallbacks() {
    ssh_callbacks_init(&callbacks_);
    callbacks_.userdata = this;
    callbacks_.channel_data_function = OnData;
    callbacks_.channel_eof_function = OnEof;
    callbacks_.channel_close_function = OnClose;
    callbacks_.channel_exit_status_function = OnExitStatus;
    callbacks_.channel_exit_signal_function = OnExitSignal;
    ssh_set_channel_callbacks(channel_.get(), &callbacks_);
}

SshFailure SshChannel::Open(const StepLimit& limit) {
    if (link_.IsConnected()) channel_.reset(ssh_channel_new(link_.Session()));
    if (!channel_) return link_.Failed(SshProblem::kCommandNotStarted, "gets no channel");
    SetCallbacks();
    int state = SSH_ERROR;
    const auto step = [this] { return ssh_channel_open_session(channel_.get()); };
    if (auto failure = link_.Repeat(limit, SSH_AGAIN, step, state)) return failure;
    if (state == SSH_OK) return {};
    return link_.Failed(SshProblem::kCommandNotStarted, "opens no channel");
}

SshFailure SshChannel::StartCommand(const std::string& command_line, const StepLimit& limit) {
    if (auto failure = Open(limit)) return failure;
    int state = SSH_ERROR;
    const auto step = [&] {
        return ssh_channel_request_exec(channel_.get(), command_line.c_str());
    };
    if (auto failure = link_.Repeat(limit, SSH_AGAIN, step, state)) return failure;
    if (state == SSH_OK) return {};
    return link_.Failed(SshProblem::kCommandNotStarted, "starts no commands");
}

SshFailure SshChannel::StartSubsystem(const std::string& name, const StepLimit& limit) {
    if (auto failure = Open(limit)) return failure;
    int state = SSH_ERROR;
    const auto step = [&] { return ssh_channel_request_subsystem(channel_.get(), name.c_str()); };
    if (auto failure = link_.Repeat(limit, SSH_AGAIN, step, state)) return failure;
    if (state == SSH_OK) return {};
    return link_.Failed(SshProblem::kCommandNotStarted, "has no subsystem " + name);
}

// Never more than the window: libssh would wait for it to open.
std::size_t SshChannel::Write(std::string_view bytes) {
    if (is_closed_ || !link_.IsConnected()) return 0;
    const std::size_t window = ssh_channel_window_size(channel_.get());
    const std::size_t length = std::min({bytes.size(), window, kWriteAtOnce});
    if (length == 0) return 0;
    const int written =
        ssh_channel_write(channel_.get(), bytes.data(), static_cast<uint32_t>(length));
    return written > 0 ? static_cast<std::size_t>(written) : 0;
}

void SshChannel::EndInput() {
    if (channel_ && !is_closed_) ssh_channel_send_eof(channel_.get());
}

void SshChannel::SendSignal(const char* name) {
    if (channel_ && !is_closed_) ssh_channel_request_send_signal(channel_.get(), name);
}

int SshChannel::OnData(ssh_session, ssh_channel, void* data, uint32_t length, int is_error_output,
                       void* self) {
    auto& channel = *static_cast<SshChannel*>(self);
    channel.bytes_read_ += length;
    const Sink& sink = is_error_output != 0 ? channel.error_output_ : channel.output_;
    if (sink) sink({static_cast<const char*>(data), length});
    return static_cast<int>(length);
}

void SshChannel::OnEof(ssh_session, ssh_channel, void* self) {
    static_cast<SshChannel*>(self)->has_ended_ = true;
}

void SshChannel::OnClose(ssh_session, ssh_channel, void* self) {
    static_cast<SshChannel*>(self)->is_closed_ = true;
}

void SshChannel::OnExitStatus(ssh_session, ssh_channel, int status, void* self) {
    static_cast<SshChannel*>(self)->exit_status_ = status;
}

void SshChannel::OnExitSignal(ssh_session, ssh_channel, const char* signal, int, const char*,
                              const char*, void* self) {
    auto& channel = *static_cast<SshChannel*>(self);
    channel.exit_signal_ = CleanStart(signal == nullptr ? "" : signal, 20);
    if (channel.exit_signal_.empty()) channel.exit_signal_ = "unknown";
}

}  // namespace Vantix::transport
