#include "transport/ssh/remote_process.h"

#include <algorithm>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

// Words of sshd for an account whose password has run out: no command is run then.
constexpr const char* kPasswordExpired = "assword change required";

bool IsNumber(const std::string& text) {
    const auto is_digit = [](char letter) { return letter >= '0' && letter <= '9'; };
    return !text.empty() && text.size() < 12 && std::all_of(text.begin(), text.end(), is_digit);
}

void Hand(const SshChannel::Sink& sink, const std::string& bytes) {
    if (sink && !bytes.empty()) sink(bytes);
}

}  // namespace

RemoteProcess::RemoteProcess(SshLink& link, SshChannel::Sink output, SshChannel::Sink error_output)
    : link_(link),
      mark_(RandomMark()),
      output_start_(mark_),
      error_start_(mark_),
      channel_(
          link,
          [this, sink = std::move(output)](std::string_view bytes) {
              Hand(sink, output_start_.Pass(bytes));
          },
          [this, sink = std::move(error_output)](std::string_view bytes) {
              Hand(sink, error_start_.Pass(bytes));
          }) {}

SshFailure RemoteProcess::Start(const std::string& command_line, const StepLimit& limit) {
    return channel_.StartCommand(WrapCommand(command_line, mark_), limit);
}

std::size_t RemoteProcess::NoiseBytes() const {
    return output_start_.NoiseBytes() + error_start_.NoiseBytes();
}

SshFailure RemoteProcess::NeverBegan() const {
    if (output_start_.HasBegun()) return {};
    const std::string& errors = error_start_.Noise();
    if (errors.find(kPasswordExpired) != std::string::npos) {
        return {SshProblem::kPasswordMustChange,
                "the account's password at " + link_.Place() + " must be changed first"};
    }
    const std::string said = CleanStart(errors.empty() ? output_start_.Noise() : errors);
    return {
        SshProblem::kCommandNotStarted,
        link_.Place() + " did not run the command under a POSIX shell; it said: \"" + said + "\""};
}

void RemoteProcess::EndGroup(const std::string& prefix, const std::string& input) {
    const std::string& group = output_start_.Word();
    if (!output_start_.HasBegun() || !IsNumber(group) || !link_.IsConnected()) return;
    StepLimit limit = StepLimit::In(link_.Target().limits.ending, SshProblem::kTimedOut, "");
    limit.is_last_act = true;
    SshChannel second(link_, nullptr, nullptr);
    if (second.StartCommand(EndGroupCommand(group, prefix), limit)) {
        channel_.SendSignal("TERM");
        channel_.SendSignal("KILL");
        static_cast<void>(link_.Pump(limit));
        return;
    }
    second.Write(input);
    second.EndInput();
    while (!second.IsClosed() && !second.HasResult() && !link_.Pump(limit)) {
    }
}

namespace {

using std::chrono::milliseconds;

// A process left behind may hold the streams open for ever.
constexpr milliseconds kGraceForStreams(2000);

class CommandRun {
  public:
    CommandRun(SshLink& link, const RemoteCommand& command)
        : link_(link),
          command_(command),
          limit_(StepLimit::In(command.time_limit, SshProblem::kDeadline,
                               "the command at " + link.Place() + " did not end within its limit")),
          process_(
              link, [this](std::string_view bytes) { Take(bytes, outcome_.output, is_cut_); },
              [this](std::string_view bytes) {
                  Take(bytes, outcome_.error_output, is_error_cut_);
              }) {}

    RemoteOutcome Run() {
        outcome_.failure = process_.Start(command_.command_line, limit_);
        if (!outcome_.failure) Follow();
        outcome_.noise_bytes = process_.NoiseBytes();
        outcome_.is_output_cut = is_cut_;
        outcome_.is_error_output_cut = is_error_cut_;
        return std::move(outcome_);
    }

  private:
    void Take(std::string_view bytes, std::string& text, bool& is_cut) const {
        const std::size_t room = command_.max_output_bytes - text.size();
        is_cut = is_cut || bytes.size() > room;
        text += bytes.substr(0, room);
    }

    void Follow() {
        SshChannel& channel = process_.Channel();
        while (!HasEnded()) {
            FeedInput();
            outcome_.failure = link_.Pump(limit_);
            if (outcome_.failure) break;
        }
        if (outcome_.failure || !channel.IsAtEnd()) {
            process_.EndGroup(command_.end_prefix, command_.end_input);
        }
        if (!outcome_.failure) outcome_.failure = process_.NeverBegan();
        if (outcome_.failure) return;
        outcome_.exit_status = channel.ExitStatus().value_or(-1);
        outcome_.exit_signal = channel.ExitSignal();
        if (!channel.HasResult()) {
            outcome_.failure = {SshProblem::kCommandNotStarted,
                                link_.Place() + " did not say how the command ended"};
        }
    }

    bool HasEnded() {
        SshChannel& channel = process_.Channel();
        if (channel.IsClosed() || (channel.IsAtEnd() && channel.HasResult())) return true;
        const auto now = StepLimit::Clock::now();
        if (!channel.HasResult() || channel.BytesRead() != bytes_before_) {
            bytes_before_ = channel.BytesRead();
            quiet_since_ = now;
        }
        return now - quiet_since_ >= kGraceForStreams;
    }

    void FeedInput() {
        if (is_input_ended_) return;
        input_at_ += process_.Channel().Write(std::string_view(command_.input).substr(input_at_));
        if (input_at_ < command_.input.size()) return;
        process_.Channel().EndInput();
        is_input_ended_ = true;
    }

    SshLink& link_;
    const RemoteCommand& command_;
    const StepLimit limit_;
    RemoteOutcome outcome_;
    bool is_cut_ = false;
    bool is_error_cut_ = false;
    RemoteProcess process_;
    std::size_t input_at_ = 0;
    bool is_input_ended_ = false;
    std::uint64_t bytes_before_ = 0;
    StepLimit::Clock::time_point quiet_since_ = StepLimit::Clock::now();
};

}  // namespace

RemoteOutcome RunRemoteCommand(SshLink& link, const RemoteCommand& command) {
    return CommandRun(link, command).Run();
}

}  // namespace Vantix::transport
