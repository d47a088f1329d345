// The face that protocol clients talk to: start exchanges, drive them, be called back.
//
// One target, one thread. Caching, retries, politeness, capture and fault injection are decorators
// of this interface.
#pragma once

#include <functional>

#include "transport/http/http_types.h"

namespace Vantix::transport {

/// What Abort() gives up.
enum class AbortScope {
    kReads,  ///< every GET
    kEverything
};

class HttpTransport {
  public:
    using Handler = std::function<void(HttpOutcome&&)>;

    virtual ~HttpTransport() = default;

    /// Starts an exchange. `handler` is called exactly once, from within Step(), never from here.
    virtual void Submit(HttpRequest request, Handler handler) = 0;

    /// Moves all exchanges on, waits at most `max_wait` when nothing is ready, and calls the
    /// handlers of those that ended. Handlers may Submit more. Returns false when nothing was left
    /// in flight on entry.
    virtual bool Step(Milliseconds max_wait) = 0;

    /// How many connections may be open at once (at least 1). Takes effect for later exchanges.
    virtual void SetMaxConnections(int count) = 0;

    /// Closes idle connections, so that the next exchange opens a new one.
    virtual void DropIdleConnections() = 0;

    /// Exchanges that still wait for their connection to open take an idle one instead; those half
    /// open are dropped. Returns how many. The default does nothing.
    virtual int PreferIdleConnections() { return 0; }

    /// Gives up exchanges of that scope that have not ended: their connections are closed, their
    /// handlers are never called. The default gives up nothing, which fits transports without I/O.
    virtual void Abort(AbortScope scope) { static_cast<void>(scope); }
};

/// Time as the retry and deadline rules see it; tests replace it.
class Clock {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;
    virtual ~Clock() = default;
    [[nodiscard]] virtual TimePoint Now() const = 0;
    /// Blocks for at most `duration`; may return early.
    virtual void Wait(Milliseconds duration) = 0;
};

/// The system's monotonic clock.
Clock& SystemClock();

}  // namespace Vantix::transport
