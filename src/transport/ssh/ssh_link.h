// One SSH connection: opening it, waiting on it, and telling why it ended.
//
// libssh is only ever called without blocking; Pump() is the one place that waits. Checks no key
// and logs nobody in.
#pragma once

#include <libssh/libssh.h>

#include <functional>
#include <memory>
#include <string>

#include "transport/ssh/ssh_target.h"
#include "transport/ssh/step_limit.h"

namespace Vantix::transport {

class SshLink {
  public:
    explicit SshLink(const SshTarget& target);
    ~SshLink();
    SshLink(const SshLink&) = delete;
    SshLink& operator=(const SshLink&) = delete;

    /// Connects and exchanges keys. Nothing of the user has been sent then.
    [[nodiscard]] SshFailure Open();

    /// Lets the session work until something happened or a moment has passed, and says why the step
    /// cannot go on: cancelled, out of time, silent, cut.
    [[nodiscard]] SshFailure Pump(const StepLimit& limit);

    /// Calls `step` until it gives something else than `again`; pumps in between. The failure when
    /// it does not come to that; what `step` gave stands in `outcome`.
    [[nodiscard]] SshFailure Repeat(const StepLimit& limit, int again,
                                    const std::function<int()>& step, int& outcome);

    /// From now on a quiet connection is asked for signs of life.
    void KeepAlive() { is_kept_alive_ = true; }

    [[nodiscard]] bool IsConnected() const;
    [[nodiscard]] ssh_session Session() const { return session_.get(); }
    [[nodiscard]] const SshTarget& Target() const { return target_; }
    [[nodiscard]] std::string Place() const;  ///< "HOST port N", clean
    /// libssh's words for its last error, clean.
    [[nodiscard]] std::string LastWords() const;

    /// What libssh did not do, with its words: the server "opens no channel"; or that the
    /// connection was cut, where that is the reason.
    [[nodiscard]] SshFailure Failed(SshProblem problem, const std::string& what) const;

  private:
    struct SessionEnd {
        void operator()(ssh_session session) const;
    };
    struct EventEnd {
        void operator()(ssh_event event) const { ssh_event_free(event); }
    };
    using Time = StepLimit::Clock::time_point;

    bool SetOptions();
    SshFailure Dial(const StepLimit& limit);
    SshFailure ExchangeKeys(const StepLimit& limit);
    [[nodiscard]] SshFailure MustStop(const StepLimit& limit) const;
    void Attach();
    SshFailure WatchLife();

    const SshTarget& target_;
    ssh_counter_struct counter_{};
    std::unique_ptr<ssh_session_struct, SessionEnd> session_;
    std::unique_ptr<ssh_event_struct, EventEnd> event_;
    bool is_kept_alive_ = false;
    uint64_t bytes_seen_ = 0;
    Time last_byte_;
    Time last_question_;
    Time total_end_ = Time::max();
};

}  // namespace Vantix::transport
