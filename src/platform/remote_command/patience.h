// How long one remote run may go on: the user's wish to stop and the deadline, as one question.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/connection/run_context.h"

namespace Vantix::remote {

/// Not for several threads.
class Patience {
  public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// `limit`: from now on; 0 for none.
    Patience(std::shared_ptr<const VantixConnection::RunContext> run, std::chrono::seconds limit,
             Now now = Clock::now)
        : run_(std::move(run)), now_(std::move(now)) {
        if (limit.count() > 0) end_ = now_() + limit;
    }

    /// True when nothing may be started or waited for any more.
    [[nodiscard]] bool IsOver() const {
        return (!is_cleaning_ && run_->IsCancelled()) || now_() >= end_;
    }

    /// True when it is over, and not because the user asked to stop.
    [[nodiscard]] bool IsOutOfTime() const {
        return !run_->IsCancelled() && !is_cleaning_ && now_() >= end_;
    }

    /// From now on only `limit` counts: what was begun must be put in order.
    void GrantCleaning(std::chrono::seconds limit) {
        is_cleaning_ = true;
        end_ = now_() + limit;
    }

  private:
    const std::shared_ptr<const VantixConnection::RunContext> run_;
    const Now now_;
    Clock::time_point end_ = Clock::time_point::max();
    bool is_cleaning_ = false;
};

}  // namespace Vantix::remote
