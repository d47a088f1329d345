#include "transport/http/polite_transport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/transport/http/polite_transport_fixture.h"

namespace Vantix::transport {
namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;

// ---- queue and limit -------------------------------------------------------------------------

TEST_F(PoliteTransportTest, NothingSubmittedMakesStepFalse) {
    EXPECT_FALSE(Polite().Step({}));
}

TEST_F(PoliteTransportTest, HandlerIsNotCalledFromSubmit) {
    Send(Get("/a"));
    EXPECT_TRUE(calls_.empty());
}

TEST_F(PoliteTransportTest, AnswerReachesItsHandlerOnce) {
    Send(Get("/a"));
    Run();
    EXPECT_EQ(calls_["/a"], 1);
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
}

TEST_F(PoliteTransportTest, NeverMoreInFlightThanAllowed) {
    for (int index = 0; index < 10; ++index) {
        Send(Get("/" + std::to_string(index)));
    }
    Run();
    EXPECT_EQ(inner_.most_in_flight, 3U);
    EXPECT_EQ(Polite().GetCounts().most_in_flight, 3);
    EXPECT_EQ(calls_.size(), 10U);
}

HttpOutcome AnswerAfterHandshake(int connect_ms, int response_ms) {
    HttpOutcome outcome = Status(200);
    outcome.response.connect_time = Milliseconds(connect_ms);
    outcome.response.response_time = Milliseconds(response_ms);
    return outcome;
}

TEST_F(PoliteTransportTest, ARequestStillConnectingTakesTheConnectionThatHasBecomeFree) {
    inner_.answer = [this](const HttpRequest& request, int) -> std::optional<HttpOutcome> {
        if (request.target == "/quick") return AnswerAfterHandshake(100, 10);
        const bool moved =
            std::find(inner_.log.begin(), inner_.log.end(), "prefer idle") != inner_.log.end();
        return moved ? std::optional(Status(200)) : std::nullopt;
    };
    Send(Get("/quick"));
    Send(Get("/connecting"));
    Run();
    EXPECT_EQ(calls_["/connecting"], 1);
}

TEST_F(PoliteTransportTest, WithCheapHandshakesNoRequestIsMoved) {
    inner_.answer = [](const HttpRequest&, int) { return AnswerAfterHandshake(3, 50); };
    Send(Get("/a"));
    Run();
    Send(Get("/b"));
    Run();
    EXPECT_THAT(inner_.log, ::testing::Not(::testing::Contains("prefer idle")));
}

TEST_F(PoliteTransportTest, UnavailableAnswersAreCounted) {
    inner_.answer = [](const HttpRequest&, int earlier) {
        return Status(earlier == 0 ? 503 : 200);
    };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(Polite().GetCounts().unavailable, 1U);
}

TEST_F(PoliteTransportTest, RequestsStartInTheOrderOfSubmission) {
    settings_.max_in_flight = 1;
    Send(Get("/a"));
    Send(Get("/b"));
    Send(Get("/c"));
    Run();
    EXPECT_THAT(inner_.log, ElementsAre("send /a", "send /b", "send /c"));
}

TEST_F(PoliteTransportTest, HandlerMaySubmitMore) {
    Polite().Submit(Get("/a"), [this](HttpOutcome&&) { Send(Get("/b")); });
    Run();
    EXPECT_EQ(outcomes_["/b"].response.status, 200);
}

TEST_F(PoliteTransportTest, ConnectionLimitIsPassedOn) {
    Polite().SetMaxConnections(2);
    EXPECT_EQ(inner_.max_connections, 2);
}

// ---- repetitions with waits --------------------------------------------------------------------

TEST_F(PoliteTransportTest, PassingFailureIsRepeatedAfterThreeSixAndTwelveSeconds) {
    inner_.answer = [](const HttpRequest&, int) { return Status(503); };
    Send(Get("/a"));
    Run();
    ASSERT_EQ(inner_.sent.size(), 4U);
    EXPECT_EQ(inner_.sent[1].second - start_, seconds(3));
    EXPECT_EQ(inner_.sent[2].second - start_, seconds(9));
    EXPECT_EQ(inner_.sent[3].second - start_, seconds(21));
    EXPECT_EQ(outcomes_["/a"].response.status, 503);
    EXPECT_EQ(calls_["/a"], 1);
    EXPECT_EQ(Polite().GetCounts().repetitions, 3U);
}

TEST_F(PoliteTransportTest, RetryAfterReplacesTheWait) {
    inner_.answer = [](const HttpRequest&, int earlier) {
        return earlier == 0 ? StatusWith(503, "retry-after", "7") : Status(200);
    };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(clock_.Since(start_), seconds(7));
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
}

TEST_F(PoliteTransportTest, RefusedConnectionIsRepeatedLikeA503) {
    inner_.answer = [](const HttpRequest&, int earlier) {
        return earlier < 3 ? Failure(HttpErrorKind::kConnect) : Status(200);
    };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(clock_.Since(start_), seconds(21));
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
}

TEST_F(PoliteTransportTest, RefusedPostDoesNotEndTheGetThatWaitsForItsRepetition) {
    inner_.answer = [](const HttpRequest& request, int earlier) {
        return request.target == "/login" || earlier == 0 ? Failure(HttpErrorKind::kConnect)
                                                          : Status(200);
    };
    HttpRequest post = Get("/login");
    post.method = HttpMethod::kPost;
    Send(Get("/a"));
    Send(post);
    Run();
    EXPECT_EQ(outcomes_["/login"].error.kind, HttpErrorKind::kConnect);
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
}

TEST_F(PoliteTransportTest, MaxTriesOfTheRequestLimitsTheRepetitions) {
    inner_.answer = [](const HttpRequest&, int) { return Status(500); };
    HttpRequest request = Get("/optional");
    request.max_tries = 2;
    Send(request);
    Run();
    EXPECT_EQ(inner_.TimesSent("/optional"), 2);
}

TEST_F(PoliteTransportTest, OthersGoOnWhileOneWaits) {
    inner_.answer = [](const HttpRequest& request, int earlier) {
        return request.target == "/slow" && earlier == 0 ? Status(503) : Status(200);
    };
    Send(Get("/slow"));
    Send(Get("/a"));
    Send(Get("/b"));
    Send(Get("/c"));
    Run();
    EXPECT_EQ(inner_.sent[3].first, "/c");
    EXPECT_EQ(inner_.sent[3].second, start_);
    EXPECT_EQ(inner_.sent[4].first, "/slow");
}

TEST_F(PoliteTransportTest, WaitBeyondTheDeadlineIsNotBegun) {
    settings_.deadline = seconds(2);
    inner_.answer = [](const HttpRequest&, int) { return Status(503); };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(outcomes_["/a"].response.status, 503);
    EXPECT_EQ(clock_.Since(start_), seconds(0));
}

class FinalStatusTest : public PoliteTransportTest, public ::testing::WithParamInterface<int> {};

TEST_P(FinalStatusTest, IsAskedOnce) {
    inner_.answer = [](const HttpRequest&, int) { return Status(GetParam()); };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/a"), 1);
    EXPECT_EQ(outcomes_["/a"].response.status, GetParam());
}

INSTANTIATE_TEST_SUITE_P(PoliteTransport, FinalStatusTest,
                         ::testing::Values(200, 301, 400, 401, 403, 404, 405, 410, 501, 505));

// ---- POST and DELETE ----------------------------------------------------------------------------

TEST_F(PoliteTransportTest, PostIsNeverRepeated) {
    inner_.answer = [](const HttpRequest&, int) { return Status(503); };
    Send(Post("/login"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/login"), 1);
}

TEST_F(PoliteTransportTest, PostIsNotRepeatedAfterAReset) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kReset); };
    Send(Post("/login"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/login"), 1);
    EXPECT_EQ(outcomes_["/login"].error.kind, HttpErrorKind::kReset);
}

TEST_F(PoliteTransportTest, DeleteIsNeverRepeated) {
    inner_.answer = [](const HttpRequest&, int) { return Status(500); };
    Send(Delete("/session"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/session"), 1);
}

TEST_F(PoliteTransportTest, BodyOfAPostReachesTheInnerTransport) {
    std::string body;
    inner_.answer = [&body](const HttpRequest& request, int) {
        body = request.body;
        return Status(201);
    };
    Send(Post("/login"));
    Run();
    EXPECT_EQ(body, "{}");
}

// ---- resets and dead hosts ----------------------------------------------------------------------

TEST_F(PoliteTransportTest, ResetGetIsRepeatedOnceAtOnceOnAFreshConnection) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kReset); };
    Send(Get("/a"));
    Run();
    EXPECT_THAT(inner_.log, ElementsAre("send /a", "drop", "send /a"));
}

TEST_F(PoliteTransportTest, RepetitionAfterAResetCanSucceed) {
    inner_.answer = [](const HttpRequest&, int earlier) {
        return earlier == 0 ? Failure(HttpErrorKind::kReset) : Status(200);
    };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
    EXPECT_EQ(clock_.Since(start_), seconds(0));
}

TEST_F(PoliteTransportTest, ResetOfAKeptConnectionEndsReuse) {
    inner_.answer = [](const HttpRequest& request, int earlier) {
        HttpOutcome outcome = Failure(HttpErrorKind::kReset);
        outcome.response.is_reused_connection = true;
        return request.target == "/a" && earlier == 0 ? outcome : Status(200);
    };
    settings_.max_in_flight = 1;
    Send(Get("/a"));
    Send(Get("/b"));
    Run();
    EXPECT_THAT(inner_.log, ElementsAre("send /a", "drop", "drop", "send /a", "drop", "send /b"));
}

TEST_F(PoliteTransportTest, ResetOfAFreshConnectionLeavesReuseOn) {
    inner_.answer = [](const HttpRequest& request, int earlier) {
        return request.target == "/a" && earlier == 0 ? Failure(HttpErrorKind::kReset)
                                                      : Status(200);
    };
    settings_.max_in_flight = 1;
    Send(Get("/a"));
    Send(Get("/b"));
    Run();
    EXPECT_THAT(inner_.log, ElementsAre("send /a", "drop", "send /a", "send /b"));
}

TEST_F(PoliteTransportTest, ConnectTimeoutIsTriedTwice) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kConnectTimeout); };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/a"), 2);
    EXPECT_EQ(outcomes_["/a"].error.kind, HttpErrorKind::kConnectTimeout);
}

TEST_F(PoliteTransportTest, DeadHostIsGivenUpForAllThatWait) {
    settings_.max_in_flight = 1;
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kConnectTimeout); };
    Send(Get("/a"));
    Send(Get("/b"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/b"), 0);
    EXPECT_EQ(outcomes_["/b"].error.kind, HttpErrorKind::kConnectTimeout);
}

TEST_F(PoliteTransportTest, HostThatAnsweredOnceIsNotGivenUp) {
    settings_.max_in_flight = 1;
    inner_.answer = [](const HttpRequest& request, int) {
        return request.target == "/b" ? Failure(HttpErrorKind::kConnectTimeout) : Status(200);
    };
    Send(Get("/a"));
    Send(Get("/b"));
    Send(Get("/c"));
    Run();
    EXPECT_EQ(outcomes_["/c"].response.status, 200);
}

TEST_F(PoliteTransportTest, UntrustedHostIsAskedOnce) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kUntrusted); };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/a"), 1);
}

TEST_F(PoliteTransportTest, SilentGetIsNotRepeated) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kTimeout); };
    Send(Get("/a"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/a"), 1);
}

}  // namespace
}  // namespace Vantix::transport
