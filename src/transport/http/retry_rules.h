// The decisions of PoliteTransport as pure functions: is a failure passing, is it a sign of
// distress, how long to wait.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "transport/http/http_types.h"
#include "transport/http/polite_transport.h"

namespace Vantix::transport {

/// What happened to one request so far, its latest try included.
struct TryHistory {
    int passing_failures = 0;        ///< answers or refusals that call for waiting
    int connect_timeouts = 0;        ///< tries whose connection did not come about in time
    bool is_reset_repeated = false;  ///< the repetition after a reset is used up
    bool is_alone_repeated = false;  ///< the repetition after a parallel 403 is used up
    bool was_beside_others = false;  ///< the latest try shared the service with other requests
};

enum class Verdict {
    kFinal,
    kRepeatLater,   ///< after WaitBeforeRepeat()
    kRepeatAtOnce,  ///< the connection could not be opened in time
    kRepeatFresh,   ///< at once, on a new connection
    kRepeatAlone    ///< as soon as nothing else is under way
};

/// Whether and how `request` is sent again after `outcome`. Only a GET ever is.
[[nodiscard]] Verdict JudgeOutcome(const HttpRequest& request, const HttpOutcome& outcome,
                                   const TryHistory& history, const PoliteSettings& settings);

/// True for a reset or broken-off answer, 403, 429 and 5xx.
[[nodiscard]] bool IsSignOfDistress(const HttpOutcome& outcome);

/// True for failures that every other request to the same host would share.
[[nodiscard]] bool ConcernsHost(HttpErrorKind kind);

using WallTime = std::chrono::system_clock::time_point;

/// The wait that a Retry-After text asks for: seconds or an HTTP date (RFC 9110, 10.2.3) relative
/// to `now`; a date in the past is no wait. Nothing when the text is neither.
[[nodiscard]] std::optional<Milliseconds> ParseRetryAfter(const std::string& text, WallTime now);

/// The wait before the next try after `passing_failures` (at least 1) of them. Retry-After wins; a
/// date in it is compared with the service's own Date header where there is one, because the clocks
/// of management controllers are often wrong.
[[nodiscard]] Milliseconds WaitBeforeRepeat(const HttpOutcome& outcome, int passing_failures,
                                            const PoliteSettings& settings, WallTime now);

}  // namespace Vantix::transport
