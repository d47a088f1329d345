// Keeps requests to one BMC few and patient: a limit of requests in flight, repetition of GETs that
// failed in passing, one request at a time after a sign of distress, and the target's deadline.
//
// POST and DELETE are never repeated. When a request fails for good before anything was ever
// answered and the cause concerns the host (not reachable, not trusted), those that still wait fail
// the same way at once, so that a dead host is given up after one round of tries.
//
// A decorator of HttpTransport. Knows nothing of logins or of what a body means.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "transport/http/http_transport.h"

namespace Vantix::transport {

struct PoliteSettings {
    int max_in_flight = 3;
    /// Waits before the second, third and fourth try of a GET answered 408, 425, 429, 500, 502, 503
    /// or 504. Retry-After (seconds or HTTP date, RFC 9110) replaces them, up to max_retry_after.
    std::vector<Milliseconds> retry_waits{Milliseconds(3000), Milliseconds(6000),
                                          Milliseconds(12000)};
    Milliseconds max_retry_after{60000};
    /// Tries of a request whose connection could not be opened in time (a dead host).
    int connect_tries = 2;
    Milliseconds deadline{1200000};      ///< for everything, from construction; 0: none
    std::function<bool()> is_cancelled;  ///< asked often; may be empty
    /// How long a POST or DELETE that is already under way may go on after a cancellation or the
    /// deadline: what it does (a login above all) must become known, so that it can be undone.
    Milliseconds finish_time{3000};
};

class PoliteTransport : public HttpTransport {
  public:
    /// `inner` and `clock` must outlive the object.
    PoliteTransport(HttpTransport& inner, Clock& clock, PoliteSettings settings);
    ~PoliteTransport() override;

    void Submit(HttpRequest request, Handler handler) override;
    bool Step(Milliseconds max_wait) override;
    void SetMaxConnections(int count) override;
    void DropIdleConnections() override;

    void Abort(AbortScope scope) override;

    /// True after a reset, 403, 429 or 5xx: from then on one request is in flight at a time.
    [[nodiscard]] bool IsDistressed() const;

    /// Fails what waits and every GET under way as kCancelled (their handlers are called by the
    /// next Step) and lets only requests submitted from now on pass, within `grace`: for the
    /// log-out after an interruption or a used-up deadline. A POST or DELETE under way may still be
    /// answered within `grace`. Cancellation is not asked any more.
    void AbandonAll(Milliseconds grace);

    struct Counts {
        std::uint64_t requests = 0;  ///< sent, repetitions included
        std::uint64_t repetitions = 0;
        std::uint64_t unavailable = 0;  ///< reads answered with 503
        int most_in_flight = 0;
    };
    [[nodiscard]] Counts GetCounts() const;

  private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace Vantix::transport
