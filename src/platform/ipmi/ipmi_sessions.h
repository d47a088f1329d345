// Sessions with one BMC through ipmitool, one after the other: which cipher suite and privilege
// level work, when to ask again, and when to stop asking.
//
// Knows no command's meaning; IpmiChannel asks the questions.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "transport/http/http_transport.h"
#include "transport/ipmi/ipmi_problem.h"
#include "transport/ipmi/ipmitool_command.h"
#include "transport/process/command_runner.h"

namespace Vantix::ipmi {

/// How often a BMC may say that it is busy before it is given up, and the wait after each time.
inline constexpr int kMostBusyAnswers = 3;
inline constexpr transport::Milliseconds kBusyPause{5000};

/// What became of one session.
struct SessionResult {
    /// Set when no session came about, or when it was broken off.
    transport::IpmiFailure failure;
    /// One text a line that was sent, absent where the session ended before; empty when there was
    /// no session.
    std::vector<std::optional<std::string>> texts;
    std::string error_output;
};

class IpmiSessions {
  public:
    /// `target` with an empty host is this machine's own BMC. `runner` and `clock` must outlive the
    /// object.
    IpmiSessions(const VantixConnection::ConnectOption& option, transport::IpmiTarget target,
                 transport::CommandRunner& runner, transport::Clock& clock);

    /// Carries out `lines` in one session. Never two at a time, with a pause between two; cipher
    /// suite 17, then 3; the administrator's level, then lower ones; a busy BMC is asked again.
    /// What worked is kept for the rest of the run. A refused login (which counts for the run),
    /// silence and cancelling end it at once; after two silent sessions nothing is sent any more.
    [[nodiscard]] SessionResult Run(const std::vector<std::string>& lines);

    /// Waits for that long, or until the run is cancelled.
    void Pause(transport::Milliseconds duration);

  private:
    [[nodiscard]] SessionResult RunOnce(const std::vector<std::string>& lines);
    [[nodiscard]] transport::Command CommandFor(const std::vector<std::string>& lines) const;
    [[nodiscard]] transport::Milliseconds TimeLeft() const;
    [[nodiscard]] transport::Milliseconds TimeToNextRun() const;
    void Note(const SessionResult& result);
    /// Whether another try with other settings, or later, makes sense.
    [[nodiscard]] bool PrepareNextTry(const transport::IpmiFailure& failure);
    bool NextCipher();
    bool NextPrivilege();
    [[nodiscard]] std::string MemoryKey(const char* what) const;
    void RecallSettings();

    VantixConnection::ConnectOption option_;
    transport::IpmiTarget target_;
    transport::CommandRunner& runner_;
    transport::Clock& clock_;
    transport::IpmiTry try_;
    transport::Clock::TimePoint start_;
    transport::Clock::TimePoint last_end_;
    bool has_run_ = false;
    bool has_worked_ = false;
    int silent_sessions_ = 0;
    int busy_answers_ = 0;
};

}  // namespace Vantix::ipmi
