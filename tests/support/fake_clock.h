// Time that a test moves by hand: waiting costs nothing.
#pragma once

#include "transport/http/http_transport.h"

namespace Vantix::transport {

class FakeClock : public Clock {
  public:
    [[nodiscard]] TimePoint Now() const override { return now_; }
    void Wait(Milliseconds duration) override { Advance(duration); }
    void Advance(Milliseconds duration) { now_ += duration; }
    [[nodiscard]] Milliseconds Since(TimePoint start) const {
        return std::chrono::duration_cast<Milliseconds>(now_ - start);
    }

  private:
    TimePoint now_ = TimePoint() + std::chrono::hours(1);
};

}  // namespace Vantix::transport
