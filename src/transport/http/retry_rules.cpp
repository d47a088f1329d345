#include "transport/http/retry_rules.h"

#include <curl/curl.h>

#include <algorithm>
#include <charconv>
#include <ctime>

namespace Vantix::transport {
namespace {

bool IsPassingStatus(int status) {
    switch (status) {
        case 408:
        case 425:
        case 429:
        case 500:
        case 502:
        case 503:
        case 504:
            return true;
        default:
            return false;
    }
}

bool IsBrokenOff(HttpErrorKind kind) {
    return kind == HttpErrorKind::kReset || kind == HttpErrorKind::kTruncated;
}

std::optional<WallTime> ParseHttpDate(const std::string& text) {
    const std::time_t seconds = curl_getdate(text.c_str(), nullptr);
    if (seconds == -1) {
        return std::nullopt;
    }
    return std::chrono::system_clock::from_time_t(seconds);
}

bool IsAllDigits(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

Verdict JudgeError(const HttpOutcome& outcome, const TryHistory& history,
                   const PoliteSettings& settings, bool may_wait) {
    if (IsBrokenOff(outcome.error.kind)) {
        return history.is_reset_repeated ? Verdict::kFinal : Verdict::kRepeatFresh;
    }
    if (outcome.error.kind == HttpErrorKind::kConnectTimeout) {
        return history.connect_timeouts < settings.connect_tries ? Verdict::kRepeatAtOnce
                                                                 : Verdict::kFinal;
    }
    const bool is_refused = outcome.error.kind == HttpErrorKind::kConnect;
    return is_refused && may_wait ? Verdict::kRepeatLater : Verdict::kFinal;
}

}  // namespace

Verdict JudgeOutcome(const HttpRequest& request, const HttpOutcome& outcome,
                     const TryHistory& history, const PoliteSettings& settings) {
    if (request.method != HttpMethod::kGet) {
        return Verdict::kFinal;
    }
    const int most_tries =
        std::min(request.max_tries, static_cast<int>(settings.retry_waits.size()) + 1);
    const bool may_wait = history.passing_failures < most_tries;
    if (!outcome.Answered()) {
        return JudgeError(outcome, history, settings, may_wait);
    }
    const int status = outcome.response.status;
    if (status == 403 && history.was_beside_others && !history.is_alone_repeated) {
        return Verdict::kRepeatAlone;
    }
    return IsPassingStatus(status) && may_wait ? Verdict::kRepeatLater : Verdict::kFinal;
}

bool IsSignOfDistress(const HttpOutcome& outcome) {
    if (!outcome.Answered()) {
        return IsBrokenOff(outcome.error.kind);
    }
    const int status = outcome.response.status;
    return status == 403 || status == 429 || status >= 500;
}

bool ConcernsHost(HttpErrorKind kind) {
    switch (kind) {
        case HttpErrorKind::kBadAddress:
        case HttpErrorKind::kResolve:
        case HttpErrorKind::kConnect:
        case HttpErrorKind::kConnectTimeout:
        case HttpErrorKind::kTlsHandshake:
        case HttpErrorKind::kUntrusted:
            return true;
        default:
            return false;
    }
}

std::optional<Milliseconds> ParseRetryAfter(const std::string& text, WallTime now) {
    if (IsAllDigits(text)) {
        int seconds = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), seconds);
        // More than fits is still a number: a very long wait, which the caller limits.
        return result.ec == std::errc() ? std::chrono::seconds(seconds) : std::chrono::hours(24);
    }
    const std::optional<WallTime> date = ParseHttpDate(text);
    if (!date) {
        return std::nullopt;
    }
    const auto wait = std::chrono::duration_cast<Milliseconds>(*date - now);
    return std::max(wait, Milliseconds(0));
}

Milliseconds WaitBeforeRepeat(const HttpOutcome& outcome, int passing_failures,
                              const PoliteSettings& settings, WallTime now) {
    const WallTime service_now = ParseHttpDate(outcome.response.Header("date")).value_or(now);
    const std::optional<Milliseconds> asked =
        ParseRetryAfter(outcome.response.Header("retry-after"), service_now);
    if (asked) {
        return std::min(*asked, settings.max_retry_after);
    }
    if (settings.retry_waits.empty()) {
        return Milliseconds(0);
    }
    const std::size_t last = settings.retry_waits.size() - 1;
    const auto index = static_cast<std::size_t>(std::max(1, passing_failures) - 1);
    return settings.retry_waits[std::min(index, last)];
}

}  // namespace Vantix::transport
