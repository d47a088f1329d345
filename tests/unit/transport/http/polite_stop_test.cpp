// How PoliteTransport ends: cancellation, deadline, giving up, and the last requests after them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/transport/http/polite_transport_fixture.h"

namespace Vantix::transport {
namespace {

using std::chrono::seconds;
using ::testing::Contains;
using ::testing::Not;

// Nobody answers, and tests set when the scan is cancelled.
class PoliteStopTest : public PoliteTransportTest {
  protected:
    PoliteStopTest() {
        inner_.answer = [](const HttpRequest&, int) { return std::nullopt; };
        settings_.is_cancelled = [this] { return clock_.Now() >= cancelled_at_; };
    }

    void Run() {
        while (Polite().Step(seconds(60))) {
        }
    }

    [[nodiscard]] HttpErrorKind ErrorOf(const std::string& target) {
        return outcomes_[target].error.kind;
    }

    Clock::TimePoint cancelled_at_ = Clock::TimePoint::max();
};

// ---- cancellation
// ----------------------------------------------------------------------------------

TEST_F(PoliteStopTest, CancellationIsNoticedWithinATenthOfASecond) {
    Send(Get("/a"));
    cancelled_at_ = clock_.Now() + seconds(1);
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kCancelled);
    EXPECT_LE(clock_.Since(cancelled_at_), Milliseconds(100));
}

TEST_F(PoliteStopTest, CancellationEndsTheWaitBeforeARepetition) {
    inner_.answer = [](const HttpRequest&, int) { return Status(503); };
    Send(Get("/a"));
    cancelled_at_ = clock_.Now() + seconds(1);
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kCancelled);
    EXPECT_LE(clock_.Since(cancelled_at_), Milliseconds(100));
}

TEST_F(PoliteStopTest, CancellationReachesWhatWaitsAndWhatFlies) {
    for (int index = 0; index < 5; ++index) {
        Send(Get("/" + std::to_string(index)));
    }
    Polite().Step({});
    cancelled_at_ = clock_.Now();
    Run();
    EXPECT_EQ(inner_.sent.size(), 3U);
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(calls_["/" + std::to_string(index)], 1);
        EXPECT_EQ(ErrorOf("/" + std::to_string(index)), HttpErrorKind::kCancelled);
    }
}

TEST_F(PoliteStopTest, CancellationClosesTheStuckConnections) {
    Send(Get("/a"));
    Polite().Step({});
    cancelled_at_ = clock_.Now();
    Run();
    EXPECT_THAT(inner_.log, Contains("abort reads"));
    EXPECT_TRUE(inner_.in_flight.empty());
}

TEST_F(PoliteStopTest, NothingIsSentAfterACancellation) {
    cancelled_at_ = clock_.Now();
    Send(Get("/a"));
    Send(Post("/login"));
    Run();
    EXPECT_TRUE(inner_.sent.empty());
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kCancelled);
    EXPECT_EQ(ErrorOf("/login"), HttpErrorKind::kCancelled);
}

TEST_F(PoliteStopTest, PostUnderWayMayStillBeAnsweredAfterACancellation) {
    Send(Post("/login"));
    Send(Get("/a"));
    Polite().Step({});
    cancelled_at_ = clock_.Now();
    Polite().Step({});
    EXPECT_EQ(calls_["/a"], 1);
    EXPECT_EQ(calls_.count("/login"), 0U);
    inner_.answer = [](const HttpRequest&, int) { return Status(201); };
    Run();
    EXPECT_EQ(outcomes_["/login"].response.status, 201);
}

TEST_F(PoliteStopTest, PostUnderWayIsGivenUpAfterTheFinishTime) {
    Send(Post("/login"));
    Polite().Step({});
    cancelled_at_ = clock_.Now();
    Run();
    EXPECT_EQ(ErrorOf("/login"), HttpErrorKind::kCancelled);
    EXPECT_EQ(clock_.Since(cancelled_at_), seconds(3));
    EXPECT_THAT(inner_.log, Contains("abort everything"));
}

// ---- deadline
// --------------------------------------------------------------------------------------

TEST_F(PoliteStopTest, DeadlineEndsWhatWaitsAndWhatFlies) {
    settings_.deadline = seconds(30);
    settings_.max_in_flight = 1;
    Send(Get("/a"));
    Send(Get("/b"));
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kDeadline);
    EXPECT_EQ(ErrorOf("/b"), HttpErrorKind::kDeadline);
    EXPECT_EQ(clock_.Since(start_), seconds(30));
}

TEST_F(PoliteStopTest, NothingIsSentAfterTheDeadline) {
    settings_.deadline = seconds(30);
    Polite();
    clock_.Advance(seconds(31));
    Send(Get("/a"));
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kDeadline);
    EXPECT_TRUE(inner_.sent.empty());
}

TEST_F(PoliteStopTest, ZeroMeansNoDeadline) {
    settings_.deadline = seconds(0);
    inner_.answer = [this](const HttpRequest&, int) -> std::optional<HttpOutcome> {
        return clock_.Now() < start_ + std::chrono::hours(2) ? std::nullopt
                                                             : std::optional(Status(200));
    };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
}

// ---- AbandonAll
// ------------------------------------------------------------------------------------

TEST_F(PoliteStopTest, AbandonedRequestsFailWithTheNextStepNotAtOnce) {
    Send(Get("/a"));
    Polite().Step({});
    Polite().AbandonAll(seconds(5));
    EXPECT_TRUE(calls_.empty());
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kCancelled);
}

TEST_F(PoliteStopTest, LogOutPassesAfterACancellation) {
    cancelled_at_ = clock_.Now();
    Send(Get("/a"));
    Run();
    Polite().AbandonAll(seconds(5));
    inner_.answer = [](const HttpRequest&, int) { return Status(204); };
    Send(Delete("/session"));
    Run();
    EXPECT_EQ(outcomes_["/session"].response.status, 204);
}

TEST_F(PoliteStopTest, LogOutPassesAfterTheDeadline) {
    settings_.deadline = seconds(30);
    Send(Get("/a"));
    Run();
    Polite().AbandonAll(seconds(5));
    inner_.answer = [](const HttpRequest&, int) { return Status(204); };
    Send(Delete("/session"));
    Run();
    EXPECT_EQ(outcomes_["/session"].response.status, 204);
}

TEST_F(PoliteStopTest, LogOutEndsWithTheGrace) {
    Polite().AbandonAll(seconds(5));
    Send(Delete("/session"));
    Run();
    EXPECT_EQ(ErrorOf("/session"), HttpErrorKind::kDeadline);
    EXPECT_EQ(clock_.Since(start_), seconds(5));
    EXPECT_TRUE(inner_.in_flight.empty());
}

TEST_F(PoliteStopTest, NothingIsSentAfterTheGrace) {
    Polite().AbandonAll(seconds(5));
    clock_.Advance(seconds(6));
    Send(Delete("/session"));
    Run();
    EXPECT_EQ(ErrorOf("/session"), HttpErrorKind::kDeadline);
    EXPECT_TRUE(inner_.sent.empty());
}

TEST_F(PoliteStopTest, PostUnderWaySurvivesAbandonAll) {
    Send(Post("/login"));
    Polite().Step({});
    Polite().AbandonAll(seconds(5));
    inner_.answer = [](const HttpRequest&, int) { return Status(201); };
    Run();
    EXPECT_EQ(outcomes_["/login"].response.status, 201);
    EXPECT_THAT(inner_.log, Not(Contains("abort everything")));
}

TEST_F(PoliteStopTest, HandlerMayAbandonAll) {
    Polite().Submit(Get("/first"), [this](HttpOutcome&&) { Polite().AbandonAll(seconds(5)); });
    Send(Get("/a"));
    inner_.answer = [](const HttpRequest& request, int) -> std::optional<HttpOutcome> {
        return request.target == "/first" ? std::optional(Status(200)) : std::nullopt;
    };
    Run();
    EXPECT_EQ(ErrorOf("/a"), HttpErrorKind::kCancelled);
}

TEST_F(PoliteStopTest, LateAnswerOfAnAbandonedRequestIsIgnored) {
    Send(Get("/a"));
    Polite().Step({});
    HttpTransport::Handler late = inner_.in_flight.front().handler;
    Polite().AbandonAll(seconds(5));
    Run();
    late(Status(200));
    Run();
    EXPECT_EQ(calls_["/a"], 1);
}

TEST_F(PoliteStopTest, AnswerAfterTheTransportDiedIsIgnored) {
    Send(Get("/a"));
    Polite().Step({});
    polite_.reset();
    inner_.in_flight.front().handler(Status(200));
    EXPECT_TRUE(calls_.empty());
}

TEST_F(PoliteStopTest, AbortCallsNoHandler) {
    settings_.max_in_flight = 1;
    Send(Get("/a"));
    Send(Get("/b"));
    Polite().Step({});
    Polite().Abort(AbortScope::kEverything);
    Run();
    EXPECT_TRUE(calls_.empty());
}

}  // namespace
}  // namespace Vantix::transport
