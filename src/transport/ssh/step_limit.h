// How long one step of a conversation with an SSH server may take, and what is said when it does
// not end in time.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "transport/ssh/ssh_problem.h"

namespace Vantix::transport {

struct StepLimit {
    using Clock = std::chrono::steady_clock;

    Clock::time_point until = Clock::time_point::max();
    SshFailure on_expiry;
    /// Ends what still runs at the server: neither cancellation nor the total limit stop it.
    bool is_last_act = false;

    /// Ends that long from now; 0: never.
    static StepLimit In(std::chrono::milliseconds duration, SshProblem problem, std::string text) {
        StepLimit limit;
        limit.Renew(duration);
        limit.on_expiry = {problem, std::move(text)};
        return limit;
    }

    void Renew(std::chrono::milliseconds duration) {
        if (duration.count() > 0) until = Clock::now() + duration;
    }
};

}  // namespace Vantix::transport
