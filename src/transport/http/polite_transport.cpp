#include "transport/http/polite_transport.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "transport/http/connection_budget.h"
#include "transport/http/retry_rules.h"

namespace Vantix::transport {
namespace {

// How late a cancellation may be noticed.
constexpr Milliseconds kLongestNap{100};

using TimePoint = Clock::TimePoint;

struct Job {
    HttpRequest request;
    HttpMethod method;
    HttpTransport::Handler handler;
    TryHistory history;
    TimePoint not_before{};
    bool was_sent = false;
};
using JobPointer = std::shared_ptr<Job>;

enum class Phase {
    kRunning,
    kStopped,  ///< cancelled or out of time: nothing new is sent
    kGrace     ///< after AbandonAll: the last requests, within their own time
};

}  // namespace

struct PoliteTransport::State : std::enable_shared_from_this<State> {
    State(HttpTransport& inner_transport, Clock& used_clock, PoliteSettings used_settings);

    void Submit(HttpRequest request, Handler handler);
    bool Step(Milliseconds max_wait);
    void AbandonAll(Milliseconds grace);
    void Abort(AbortScope scope);

    void CheckStop();
    void Stop(HttpErrorKind kind);
    void EndOfTime();
    void StopReads(const HttpError& error);
    void StopEverything(const HttpError& error);
    void StartReady();
    void PreferIdleConnections();
    void Send(const JobPointer& job);
    void Advance(Milliseconds max_wait);
    [[nodiscard]] Milliseconds Nap(Milliseconds max_wait) const;
    [[nodiscard]] bool MaySendMore() const;
    void TakeOutcome(const JobPointer& job, HttpOutcome&& outcome);
    void Count(Job& job, const HttpOutcome& outcome);
    [[nodiscard]] bool Repeat(const JobPointer& job, const HttpOutcome& outcome);
    void GiveUpWaiting(const HttpError& error);
    void End(const JobPointer& job, HttpOutcome&& outcome);
    bool Deliver();

    HttpTransport& inner;
    Clock& clock;
    PoliteSettings settings;
    std::deque<JobPointer> waiting;
    std::vector<JobPointer> flying;
    std::deque<std::pair<JobPointer, HttpOutcome>> finished;
    Phase phase = Phase::kRunning;
    HttpError stop_error;
    TimePoint deadline = TimePoint::max();
    Counts counts;
    ConnectionBudget budget;
    bool is_distressed = false;
    bool is_reuse_off = false;
    bool has_freed_connection = false;
    bool has_any_answer = false;
};

PoliteTransport::State::State(HttpTransport& inner_transport, Clock& used_clock,
                              PoliteSettings used_settings)
    : inner(inner_transport), clock(used_clock), settings(std::move(used_settings)) {
    settings.max_in_flight = std::max(1, settings.max_in_flight);
    if (settings.deadline.count() > 0) {
        deadline = clock.Now() + settings.deadline;
    }
}

void PoliteTransport::State::Submit(HttpRequest request, Handler handler) {
    const HttpMethod method = request.method;
    waiting.push_back(std::make_shared<Job>(
        Job{std::move(request), method, std::move(handler), TryHistory(), TimePoint(), false}));
}

bool PoliteTransport::State::Step(Milliseconds max_wait) {
    if (waiting.empty() && flying.empty() && finished.empty()) {
        return false;
    }
    CheckStop();
    StartReady();
    if (Deliver()) {
        return true;
    }
    Advance(max_wait);
    CheckStop();
    Deliver();
    return true;
}

void PoliteTransport::State::CheckStop() {
    if (phase == Phase::kRunning && settings.is_cancelled && settings.is_cancelled()) {
        Stop(HttpErrorKind::kCancelled);
    }
    if (clock.Now() >= deadline) {
        if (phase == Phase::kRunning) {
            Stop(HttpErrorKind::kDeadline);
        } else {
            EndOfTime();
        }
    }
    if (phase == Phase::kStopped) {
        GiveUpWaiting(stop_error);
    }
}

void PoliteTransport::State::Stop(HttpErrorKind kind) {
    const bool is_cancelled = kind == HttpErrorKind::kCancelled;
    stop_error = {kind, is_cancelled ? "interrupted" : "the time for the target is used up"};
    phase = Phase::kStopped;
    StopReads(stop_error);
    deadline = clock.Now() + settings.finish_time;
}

void PoliteTransport::State::EndOfTime() {
    if (phase == Phase::kGrace) {
        stop_error = {HttpErrorKind::kDeadline, "the time for the target is used up"};
    }
    phase = Phase::kStopped;
    deadline = TimePoint::max();
    StopEverything(stop_error);
}

void PoliteTransport::State::StopReads(const HttpError& error) {
    GiveUpWaiting(error);
    std::vector<JobPointer> kept;
    for (JobPointer& job : flying) {
        if (job->method == HttpMethod::kGet) {
            finished.emplace_back(std::move(job), HttpOutcome{error, {}});
        } else {
            kept.push_back(std::move(job));
        }
    }
    flying = std::move(kept);
    inner.Abort(AbortScope::kReads);
}

void PoliteTransport::State::StopEverything(const HttpError& error) {
    StopReads(error);
    if (flying.empty()) {
        return;
    }
    for (JobPointer& job : flying) {
        finished.emplace_back(std::move(job), HttpOutcome{error, {}});
    }
    flying.clear();
    inner.Abort(AbortScope::kEverything);
}

void PoliteTransport::State::AbandonAll(Milliseconds grace) {
    StopReads({HttpErrorKind::kCancelled, "given up"});
    phase = Phase::kGrace;
    deadline = clock.Now() + grace;
}

void PoliteTransport::State::Abort(AbortScope scope) {
    const auto is_meant = [scope](const JobPointer& job) {
        return scope == AbortScope::kEverything || job->method == HttpMethod::kGet;
    };
    std::erase_if(waiting, is_meant);
    std::erase_if(flying, is_meant);
    std::erase_if(finished, [&](const auto& item) { return is_meant(item.first); });
    inner.Abort(scope);
}

bool PoliteTransport::State::MaySendMore() const {
    const int limit = is_distressed ? 1 : settings.max_in_flight;
    const int in_flight = static_cast<int>(flying.size());
    return phase != Phase::kStopped && in_flight < limit &&
           budget.MaySend(in_flight, static_cast<int>(waiting.size()));
}

void PoliteTransport::State::StartReady() {
    const TimePoint now = clock.Now();
    auto next = waiting.begin();
    while (next != waiting.end() && MaySendMore()) {
        if ((*next)->not_before > now) {
            ++next;
            continue;
        }
        const JobPointer job = *next;
        next = waiting.erase(next);
        Send(job);
    }
    PreferIdleConnections();
}

// With nothing else to do, a connection that has become free serves a request sooner than one whose
// handshake is slow.
void PoliteTransport::State::PreferIdleConnections() {
    if (!has_freed_connection || !waiting.empty() || flying.empty()) return;
    has_freed_connection = false;
    if (budget.PrefersIdle()) budget.GaveUp(inner.PreferIdleConnections());
}

void PoliteTransport::State::Send(const JobPointer& job) {
    job->history.was_beside_others = !flying.empty();
    for (const JobPointer& other : flying) {
        other->history.was_beside_others = true;
    }
    flying.push_back(job);
    budget.Sent(static_cast<int>(flying.size()));
    counts.requests += 1;
    counts.repetitions += job->was_sent ? 1 : 0;
    counts.most_in_flight = std::max(counts.most_in_flight, static_cast<int>(flying.size()));
    job->was_sent = true;
    if (is_reuse_off) {
        inner.DropIdleConnections();
    }
    // Only a GET is ever sent again; the body of a POST need not be kept.
    HttpRequest request = job->method == HttpMethod::kGet ? job->request : std::move(job->request);
    inner.Submit(std::move(request), [weak = weak_from_this(), job](HttpOutcome&& outcome) {
        if (const std::shared_ptr<State> self = weak.lock()) {
            self->TakeOutcome(job, std::move(outcome));
        }
    });
}

void PoliteTransport::State::Advance(Milliseconds max_wait) {
    if (!flying.empty()) {
        inner.Step(Nap(max_wait));
    } else if (!waiting.empty()) {
        clock.Wait(Nap(max_wait));
    }
}

Milliseconds PoliteTransport::State::Nap(Milliseconds max_wait) const {
    const TimePoint now = clock.Now();
    Milliseconds nap = std::clamp(max_wait, Milliseconds(0), kLongestNap);
    const auto shorten = [&nap, now](TimePoint until) {
        if (until < now + nap) {
            nap = std::max(Milliseconds(0), std::chrono::ceil<Milliseconds>(until - now));
        }
    };
    shorten(deadline);
    if (MaySendMore()) {
        for (const JobPointer& job : waiting) {
            shorten(job->not_before);
        }
    }
    return nap;
}

void PoliteTransport::State::TakeOutcome(const JobPointer& job, HttpOutcome&& outcome) {
    const auto found = std::find(flying.begin(), flying.end(), job);
    if (found == flying.end()) {
        return;  // given up meanwhile
    }
    flying.erase(found);
    has_any_answer = has_any_answer || outcome.Answered();
    is_distressed = is_distressed || IsSignOfDistress(outcome);
    budget.Ended(outcome);
    has_freed_connection = has_freed_connection || outcome.Answered();
    // A refused login speaks of sessions, not of a service that is still starting.
    const bool is_read = job->method == HttpMethod::kGet;
    counts.unavailable += is_read && outcome.response.status == 503 ? 1 : 0;
    Count(*job, outcome);
    if (!Repeat(job, outcome)) {
        End(job, std::move(outcome));
    }
}

void PoliteTransport::State::Count(Job& job, const HttpOutcome& outcome) {
    const HttpErrorKind kind = outcome.error.kind;
    if (kind == HttpErrorKind::kConnectTimeout) {
        job.history.connect_timeouts += 1;
    } else if (kind == HttpErrorKind::kNone || kind == HttpErrorKind::kConnect) {
        job.history.passing_failures += 1;
    } else if (kind == HttpErrorKind::kReset || kind == HttpErrorKind::kTruncated) {
        // A service that breaks kept connections gets a new one each time from now on.
        is_reuse_off = is_reuse_off || outcome.response.is_reused_connection;
    }
}

bool PoliteTransport::State::Repeat(const JobPointer& job, const HttpOutcome& outcome) {
    const Verdict verdict = JudgeOutcome(job->request, outcome, job->history, settings);
    if (verdict == Verdict::kFinal) {
        return false;
    }
    const TimePoint now = clock.Now();
    job->not_before = now;
    if (verdict == Verdict::kRepeatLater) {
        const Milliseconds wait = WaitBeforeRepeat(outcome, job->history.passing_failures, settings,
                                                   std::chrono::system_clock::now());
        if (deadline != TimePoint::max() && wait >= deadline - now) {
            return false;  // what came is worth more than a deadline that is sure to be missed
        }
        job->not_before = now + wait;
        waiting.push_back(job);
        return true;
    }
    if (verdict == Verdict::kRepeatFresh) {
        job->history.is_reset_repeated = true;
        inner.DropIdleConnections();
    }
    job->history.is_alone_repeated =
        job->history.is_alone_repeated || verdict == Verdict::kRepeatAlone;
    waiting.push_front(job);
    return true;
}

void PoliteTransport::State::GiveUpWaiting(const HttpError& error) {
    for (JobPointer& job : waiting) {
        finished.emplace_back(std::move(job), HttpOutcome{error, {}});
    }
    waiting.clear();
}

void PoliteTransport::State::End(const JobPointer& job, HttpOutcome&& outcome) {
    const HttpError error = outcome.error;
    // A service that is being restarted refuses connections: a request that is never repeated must
    // not decide for those that wait to be.
    const bool is_final =
        job->request.method == HttpMethod::kGet || error.kind != HttpErrorKind::kConnect;
    finished.emplace_back(job, std::move(outcome));
    if (is_final && !has_any_answer && ConcernsHost(error.kind)) {
        GiveUpWaiting(error);
    }
}

bool PoliteTransport::State::Deliver() {
    const bool has_any = !finished.empty();
    while (!finished.empty()) {
        auto [job, outcome] = std::move(finished.front());
        finished.pop_front();
        const Handler handler = std::move(job->handler);
        handler(std::move(outcome));
    }
    return has_any;
}

PoliteTransport::PoliteTransport(HttpTransport& inner, Clock& clock, PoliteSettings settings)
    : state_(std::make_shared<State>(inner, clock, std::move(settings))) {}
PoliteTransport::~PoliteTransport() = default;

void PoliteTransport::Submit(HttpRequest request, Handler handler) {
    state_->Submit(std::move(request), std::move(handler));
}
bool PoliteTransport::Step(Milliseconds max_wait) {
    return state_->Step(max_wait);
}
void PoliteTransport::SetMaxConnections(int count) {
    state_->inner.SetMaxConnections(count);
}
void PoliteTransport::DropIdleConnections() {
    state_->inner.DropIdleConnections();
}
void PoliteTransport::Abort(AbortScope scope) {
    state_->Abort(scope);
}
bool PoliteTransport::IsDistressed() const {
    return state_->is_distressed;
}
void PoliteTransport::AbandonAll(Milliseconds grace) {
    state_->AbandonAll(grace);
}
PoliteTransport::Counts PoliteTransport::GetCounts() const {
    return state_->counts;
}

}  // namespace Vantix::transport
