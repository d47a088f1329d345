#include "support/conversation_transport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Vantix::transport {

namespace {

const char* NameOf(HttpMethod method) {
    switch (method) {
        case HttpMethod::kGet:
            return "GET";
        case HttpMethod::kPost:
            return "POST";
        case HttpMethod::kDelete:
            return "DELETE";
    }
    return "?";
}

}  // namespace

ScriptedReply ScriptedReply::With(const std::string& name, const std::string& value) const {
    ScriptedReply reply = *this;
    reply.outcome.response.headers[name] = value;
    return reply;
}

ScriptedReply Json(const std::string& body, int status) {
    return Status(status, body).With("content-type", "application/json");
}

ScriptedReply Status(int status, const std::string& body) {
    ScriptedReply reply;
    reply.outcome.response.status = status;
    reply.outcome.response.body = body;
    return reply;
}

ScriptedReply Broken(HttpErrorKind kind) {
    ScriptedReply reply;
    reply.outcome.error = {kind, "scripted failure"};
    return reply;
}

ScriptedReply Silence() {
    ScriptedReply reply;
    reply.is_held = true;
    return reply;
}

ConversationTransport::~ConversationTransport() {
    for (const auto& [line, replies] : expected_) {
        if (!replies.empty()) {
            ADD_FAILURE() << "expected and not asked (" << replies.size() << " times): " << line;
        }
    }
}

ConversationTransport& ConversationTransport::On(const std::string& line,
                                                 const ScriptedReply& reply) {
    expected_[line].push_back(reply);
    return *this;
}

ConversationTransport& ConversationTransport::Always(const std::string& line,
                                                     const ScriptedReply& reply) {
    standing_[line] = reply;
    return *this;
}

ScriptedReply ConversationTransport::ReplyTo(const std::string& line) {
    const auto next = expected_.find(line);
    if (next != expected_.end() && !next->second.empty()) {
        ScriptedReply reply = std::move(next->second.front());
        next->second.pop_front();
        return reply;
    }
    const auto standing = standing_.find(line);
    if (standing != standing_.end()) return standing->second;
    ADD_FAILURE() << "unexpected request: " << line;
    return Broken(HttpErrorKind::kOther);
}

void ConversationTransport::Submit(HttpRequest request, Handler handler) {
    in_flight_.push_back({request.method, ReplyTo(LineOf(request)), std::move(handler)});
    requests_.push_back(std::move(request));
}

std::deque<ConversationTransport::Exchange>::iterator ConversationTransport::NextToEnd() {
    const auto may_end = [](const Exchange& exchange) { return !exchange.reply.is_held; };
    if (!is_newest_first_) return std::find_if(in_flight_.begin(), in_flight_.end(), may_end);
    const auto found = std::find_if(in_flight_.rbegin(), in_flight_.rend(), may_end);
    return found == in_flight_.rend() ? in_flight_.end() : std::prev(found.base());
}

// A client that waits for the silent peer for ever must fail its test, not hang it.
void ConversationTransport::Idle(Milliseconds max_wait) {
    constexpr int kMostIdleSteps = 1000000;
    if (clock_ != nullptr) clock_->Advance(max_wait);
    if (++idle_steps_ < kMostIdleSteps) return;
    ADD_FAILURE() << "nobody gives up waiting for a silent peer";
    for (auto& exchange : in_flight_) exchange.reply = Broken(HttpErrorKind::kOther);
}

bool ConversationTransport::Step(Milliseconds max_wait) {
    if (in_flight_.empty()) return false;
    const auto next = NextToEnd();
    if (next == in_flight_.end()) {
        Idle(max_wait);
        return true;
    }
    idle_steps_ = 0;
    Exchange exchange = std::move(*next);
    in_flight_.erase(next);
    exchange.handler(std::move(exchange.reply.outcome));
    return true;
}

void ConversationTransport::Abort(AbortScope scope) {
    std::erase_if(in_flight_, [scope](const Exchange& exchange) {
        return scope == AbortScope::kEverything || exchange.method == HttpMethod::kGet;
    });
}

std::vector<std::string> ConversationTransport::Lines() const {
    std::vector<std::string> lines;
    for (const auto& request : requests_) lines.push_back(LineOf(request));
    return lines;
}

int ConversationTransport::TimesAsked(const std::string& line) const {
    const auto lines = Lines();
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

HttpRequest ConversationTransport::Request(const std::string& line, int nth) const {
    for (const auto& request : requests_) {
        if (LineOf(request) == line && nth-- == 0) return request;
    }
    ADD_FAILURE() << "not asked so often: " << line;
    return {};
}

std::string ConversationTransport::LineOf(const HttpRequest& request) {
    return std::string(NameOf(request.method)) + " " + request.target;
}

std::string ConversationTransport::Header(const HttpRequest& request, const std::string& name) {
    for (const auto& [key, value] : request.headers) {
        if (key == name) return value;
    }
    return {};
}

}  // namespace Vantix::transport
