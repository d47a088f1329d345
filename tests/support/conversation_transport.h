// A peer that follows a script: each expected request ("GET /redfish/v1/") and its answer.
//
//   ConversationTransport peer;
//   peer.On("GET /redfish/v1/", Json(R"({"Id":"Root"})"));
//
// A request that nobody expected fails the test and ends as an error, so that nothing hangs; so
// does an expected request that never came. No socket, no waiting, no knowledge of any protocol
// above HTTP.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "support/fake_clock.h"
#include "transport/http/http_transport.h"

namespace Vantix::transport {

struct ScriptedReply {
    HttpOutcome outcome;
    bool is_held = false;  ///< stays in flight for ever

    /// `name` in lower case.
    [[nodiscard]] ScriptedReply With(const std::string& name, const std::string& value) const;
};

/// An answer with a JSON body.
[[nodiscard]] ScriptedReply Json(const std::string& body, int status = 200);
/// An answer without a content type.
[[nodiscard]] ScriptedReply Status(int status, const std::string& body = {});
/// No answer at all.
[[nodiscard]] ScriptedReply Broken(HttpErrorKind kind);
/// In flight until the test ends or the request is given up.
[[nodiscard]] ScriptedReply Silence();

class ConversationTransport : public HttpTransport {
  public:
    ConversationTransport() = default;
    /// While only silent exchanges are in flight, `clock` runs on.
    explicit ConversationTransport(FakeClock& clock) : clock_(&clock) {}
    ConversationTransport(const ConversationTransport&) = delete;
    ConversationTransport& operator=(const ConversationTransport&) = delete;
    /// Fails the test for every expected request that did not come.
    ~ConversationTransport() override;

    /// The next request of that line gets `reply`. Several for one line answer in their order.
    ConversationTransport& On(const std::string& line, const ScriptedReply& reply);
    /// Every request of that line, once those of On() are used up, also none at all.
    ConversationTransport& Always(const std::string& line, const ScriptedReply& reply);
    /// The last request in flight ends first.
    void AnswerNewestFirst() { is_newest_first_ = true; }
    /// Forgets what was expected and did not come.
    void ExpectNothingMore() { expected_.clear(); }

    void Submit(HttpRequest request, Handler handler) override;
    /// Ends one exchange.
    bool Step(Milliseconds max_wait) override;
    void SetMaxConnections(int count) override { static_cast<void>(count); }
    void DropIdleConnections() override {}
    void Abort(AbortScope scope) override;

    /// All requests so far, in the order in which they were sent.
    [[nodiscard]] const std::vector<HttpRequest>& Requests() const { return requests_; }
    [[nodiscard]] std::vector<std::string> Lines() const;
    [[nodiscard]] int TimesAsked(const std::string& line) const;
    /// The `nth` (from 0) request of that line; an empty one, and a failed test, when there is
    /// none.
    [[nodiscard]] HttpRequest Request(const std::string& line, int nth = 0) const;
    [[nodiscard]] std::size_t InFlight() const { return in_flight_.size(); }

    [[nodiscard]] static std::string LineOf(const HttpRequest& request);
    /// The value of a request header; empty when it was not sent.
    [[nodiscard]] static std::string Header(const HttpRequest& request, const std::string& name);

  private:
    struct Exchange {
        HttpMethod method;
        ScriptedReply reply;
        Handler handler;
    };
    [[nodiscard]] ScriptedReply ReplyTo(const std::string& line);
    [[nodiscard]] std::deque<Exchange>::iterator NextToEnd();
    void Idle(Milliseconds max_wait);

    std::map<std::string, std::deque<ScriptedReply>> expected_;
    std::map<std::string, ScriptedReply> standing_;
    std::deque<Exchange> in_flight_;
    std::vector<HttpRequest> requests_;
    FakeClock* clock_ = nullptr;
    bool is_newest_first_ = false;
    int idle_steps_ = 0;
};

}  // namespace Vantix::transport
