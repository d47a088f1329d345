// A transport that a test drives by hand: no socket, no waiting.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_clock.h"
#include "transport/http/http_transport.h"

namespace Vantix::transport {

/// Notes what is sent and answers what `answer` tells; a request without an answer stays in flight
/// and lets the clock run on.
class ScriptedTransport : public HttpTransport {
  public:
    /// Gets the request and how often its target was sent before.
    using Answer = std::function<std::optional<HttpOutcome>(const HttpRequest&, int)>;

    struct Exchange {
        HttpRequest request;
        Handler handler;
        int earlier = 0;
        Clock::TimePoint sent_at;
    };

    explicit ScriptedTransport(FakeClock& clock) : clock_(clock) {}

    void Submit(HttpRequest request, Handler handler) override {
        const int earlier = TimesSent(request.target);
        sent.push_back({request.target, clock_.Now()});
        log.push_back("send " + request.target);
        in_flight.push_back({std::move(request), std::move(handler), earlier, clock_.Now()});
        most_in_flight = std::max(most_in_flight, in_flight.size());
    }

    bool Step(Milliseconds max_wait) override {
        if (in_flight.empty()) {
            return false;
        }
        std::vector<std::pair<Handler, HttpOutcome>> ready;
        for (auto next = in_flight.begin(); next != in_flight.end();) {
            std::optional<HttpOutcome> outcome = answer(next->request, next->earlier);
            if (!outcome) {
                ++next;
                continue;
            }
            ready.emplace_back(std::move(next->handler), std::move(*outcome));
            next = in_flight.erase(next);
        }
        if (ready.empty()) {
            clock_.Advance(max_wait);
        }
        for (auto& [handler, outcome] : ready) {
            handler(std::move(outcome));
        }
        return true;
    }

    void SetMaxConnections(int count) override { max_connections = count; }
    void DropIdleConnections() override { log.emplace_back("drop"); }
    int PreferIdleConnections() override {
        log.emplace_back("prefer idle");
        return 0;
    }
    void Abort(AbortScope scope) override {
        log.emplace_back(scope == AbortScope::kReads ? "abort reads" : "abort everything");
        std::erase_if(in_flight, [scope](const Exchange& exchange) {
            return scope == AbortScope::kEverything || exchange.request.method == HttpMethod::kGet;
        });
    }

    [[nodiscard]] int TimesSent(const std::string& target) const {
        return static_cast<int>(std::count_if(
            sent.begin(), sent.end(), [&](const auto& item) { return item.first == target; }));
    }

    Answer answer;
    std::vector<Exchange> in_flight;
    std::vector<std::pair<std::string, Clock::TimePoint>> sent;
    std::vector<std::string> log;
    std::size_t most_in_flight = 0;
    int max_connections = 0;

  private:
    FakeClock& clock_;
};

inline HttpOutcome Status(int status) {
    HttpOutcome outcome;
    outcome.response.status = status;
    return outcome;
}

inline HttpOutcome StatusWith(int status, const std::string& header, const std::string& value) {
    HttpOutcome outcome = Status(status);
    outcome.response.headers[header] = value;
    return outcome;
}

inline HttpOutcome Failure(HttpErrorKind kind) {
    HttpOutcome outcome;
    outcome.error = {kind, "scripted failure"};
    return outcome;
}

inline HttpRequest Get(const std::string& target) {
    HttpRequest request;
    request.target = target;
    return request;
}

inline HttpRequest Post(const std::string& target) {
    HttpRequest request = Get(target);
    request.method = HttpMethod::kPost;
    request.body = "{}";
    return request;
}

inline HttpRequest Delete(const std::string& target) {
    HttpRequest request = Get(target);
    request.method = HttpMethod::kDelete;
    return request;
}

}  // namespace Vantix::transport
