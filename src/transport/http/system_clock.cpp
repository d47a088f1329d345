#include <thread>

#include "transport/http/http_transport.h"

namespace Vantix::transport {
namespace {

class MonotonicClock : public Clock {
  public:
    [[nodiscard]] TimePoint Now() const override { return std::chrono::steady_clock::now(); }
    void Wait(Milliseconds duration) override { std::this_thread::sleep_for(duration); }
};

}  // namespace

Clock& SystemClock() {
    static MonotonicClock clock;
    return clock;
}

}  // namespace Vantix::transport
