#include "transport/http/retry_rules.h"

#include <gtest/gtest.h>

#include "unit/transport/http/scripted_transport.h"

namespace Vantix::transport {
namespace {

using std::chrono::seconds;

HttpOutcome OutcomeOf(int status, HttpErrorKind kind) {
    return kind == HttpErrorKind::kNone ? Status(status) : Failure(kind);
}

// ---- verdict
// ---------------------------------------------------------------------------------------

struct VerdictCase {
    const char* name;
    int status;
    HttpErrorKind kind;
    Verdict verdict;
};

class FirstVerdictTest : public ::testing::TestWithParam<VerdictCase> {};

TEST_P(FirstVerdictTest, AfterTheFirstTryOfALoneGet) {
    TryHistory history;
    history.passing_failures = 1;
    history.connect_timeouts = 1;
    const HttpOutcome outcome = OutcomeOf(GetParam().status, GetParam().kind);
    EXPECT_EQ(JudgeOutcome(Get("/a"), outcome, history, {}), GetParam().verdict);
}

constexpr HttpErrorKind kNone = HttpErrorKind::kNone;

INSTANTIATE_TEST_SUITE_P(
    RetryRules, FirstVerdictTest,
    ::testing::Values(VerdictCase{"Ok", 200, kNone, Verdict::kFinal},
                      VerdictCase{"Redirect", 307, kNone, Verdict::kFinal},
                      VerdictCase{"BadRequest", 400, kNone, Verdict::kFinal},
                      VerdictCase{"Unauthorized", 401, kNone, Verdict::kFinal},
                      VerdictCase{"ForbiddenAlone", 403, kNone, Verdict::kFinal},
                      VerdictCase{"NotFound", 404, kNone, Verdict::kFinal},
                      VerdictCase{"MethodNotAllowed", 405, kNone, Verdict::kFinal},
                      VerdictCase{"NotAcceptable", 406, kNone, Verdict::kFinal},
                      VerdictCase{"RequestTimeout", 408, kNone, Verdict::kRepeatLater},
                      VerdictCase{"TooEarly", 425, kNone, Verdict::kRepeatLater},
                      VerdictCase{"TooManyRequests", 429, kNone, Verdict::kRepeatLater},
                      VerdictCase{"InternalError", 500, kNone, Verdict::kRepeatLater},
                      VerdictCase{"NotImplemented", 501, kNone, Verdict::kFinal},
                      VerdictCase{"BadGateway", 502, kNone, Verdict::kRepeatLater},
                      VerdictCase{"Unavailable", 503, kNone, Verdict::kRepeatLater},
                      VerdictCase{"GatewayTimeout", 504, kNone, Verdict::kRepeatLater},
                      VerdictCase{"VersionNotSupported", 505, kNone, Verdict::kFinal},
                      VerdictCase{"Refused", 0, HttpErrorKind::kConnect, Verdict::kRepeatLater},
                      VerdictCase{"ConnectTimeout", 0, HttpErrorKind::kConnectTimeout,
                                  Verdict::kRepeatAtOnce},
                      VerdictCase{"Reset", 0, HttpErrorKind::kReset, Verdict::kRepeatFresh},
                      VerdictCase{"Truncated", 0, HttpErrorKind::kTruncated, Verdict::kRepeatFresh},
                      VerdictCase{"Timeout", 0, HttpErrorKind::kTimeout, Verdict::kFinal},
                      VerdictCase{"Untrusted", 0, HttpErrorKind::kUntrusted, Verdict::kFinal},
                      VerdictCase{"Handshake", 0, HttpErrorKind::kTlsHandshake, Verdict::kFinal},
                      VerdictCase{"Resolve", 0, HttpErrorKind::kResolve, Verdict::kFinal},
                      VerdictCase{"BadAddress", 0, HttpErrorKind::kBadAddress, Verdict::kFinal},
                      VerdictCase{"TooLarge", 0, HttpErrorKind::kTooLarge, Verdict::kFinal},
                      VerdictCase{"Protocol", 0, HttpErrorKind::kProtocol, Verdict::kFinal},
                      VerdictCase{"Deadline", 0, HttpErrorKind::kDeadline, Verdict::kFinal},
                      VerdictCase{"Cancelled", 0, HttpErrorKind::kCancelled, Verdict::kFinal},
                      VerdictCase{"Other", 0, HttpErrorKind::kOther, Verdict::kFinal}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(RetryRulesTest, PostAndDeleteAreAlwaysFinal) {
    for (const HttpOutcome& outcome :
         {Status(503), Status(429), Failure(HttpErrorKind::kReset),
          Failure(HttpErrorKind::kConnect), Failure(HttpErrorKind::kConnectTimeout)}) {
        EXPECT_EQ(JudgeOutcome(Post("/a"), outcome, {}, {}), Verdict::kFinal);
        EXPECT_EQ(JudgeOutcome(Delete("/a"), outcome, {}, {}), Verdict::kFinal);
    }
}

TEST(RetryRulesTest, FourthPassingFailureIsFinal) {
    TryHistory history;
    history.passing_failures = 3;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Status(503), history, {}), Verdict::kRepeatLater);
    history.passing_failures = 4;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Status(503), history, {}), Verdict::kFinal);
}

TEST(RetryRulesTest, MaxTriesOfTheRequestIsKept) {
    TryHistory history;
    history.passing_failures = 1;
    HttpRequest request = Get("/a");
    request.max_tries = 1;
    EXPECT_EQ(JudgeOutcome(request, Status(503), history, {}), Verdict::kFinal);
    EXPECT_EQ(JudgeOutcome(request, Failure(HttpErrorKind::kConnect), history, {}),
              Verdict::kFinal);
}

TEST(RetryRulesTest, MaxTriesBeyondTheWaitsChangesNothing) {
    TryHistory history;
    history.passing_failures = 4;
    HttpRequest request = Get("/a");
    request.max_tries = 100;
    EXPECT_EQ(JudgeOutcome(request, Status(503), history, {}), Verdict::kFinal);
}

TEST(RetryRulesTest, SecondResetIsFinal) {
    TryHistory history;
    history.is_reset_repeated = true;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Failure(HttpErrorKind::kReset), history, {}),
              Verdict::kFinal);
}

TEST(RetryRulesTest, SecondConnectTimeoutIsFinal) {
    TryHistory history;
    history.connect_timeouts = 2;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Failure(HttpErrorKind::kConnectTimeout), history, {}),
              Verdict::kFinal);
}

TEST(RetryRulesTest, ForbiddenBesideOthersIsRepeatedAloneOnce) {
    TryHistory history;
    history.was_beside_others = true;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Status(403), history, {}), Verdict::kRepeatAlone);
    history.is_alone_repeated = true;
    EXPECT_EQ(JudgeOutcome(Get("/a"), Status(403), history, {}), Verdict::kFinal);
}

// ---- distress
// --------------------------------------------------------------------------------------

TEST(RetryRulesTest, SignsOfDistress) {
    for (const int status : {403, 429, 500, 501, 502, 503, 504, 599}) {
        EXPECT_TRUE(IsSignOfDistress(Status(status))) << status;
    }
    EXPECT_TRUE(IsSignOfDistress(Failure(HttpErrorKind::kReset)));
    EXPECT_TRUE(IsSignOfDistress(Failure(HttpErrorKind::kTruncated)));
}

TEST(RetryRulesTest, NoSignsOfDistress) {
    for (const int status : {200, 201, 204, 301, 400, 401, 404, 405, 408, 425}) {
        EXPECT_FALSE(IsSignOfDistress(Status(status))) << status;
    }
    EXPECT_FALSE(IsSignOfDistress(Failure(HttpErrorKind::kTimeout)));
    EXPECT_FALSE(IsSignOfDistress(Failure(HttpErrorKind::kConnect)));
}

TEST(RetryRulesTest, FailuresThatConcernTheHost) {
    for (const HttpErrorKind kind : {HttpErrorKind::kBadAddress, HttpErrorKind::kResolve,
                                     HttpErrorKind::kConnect, HttpErrorKind::kConnectTimeout,
                                     HttpErrorKind::kTlsHandshake, HttpErrorKind::kUntrusted}) {
        EXPECT_TRUE(ConcernsHost(kind)) << static_cast<int>(kind);
    }
    for (const HttpErrorKind kind :
         {HttpErrorKind::kNone, HttpErrorKind::kTimeout, HttpErrorKind::kReset,
          HttpErrorKind::kTruncated, HttpErrorKind::kTooLarge, HttpErrorKind::kProtocol,
          HttpErrorKind::kDeadline, HttpErrorKind::kCancelled, HttpErrorKind::kOther}) {
        EXPECT_FALSE(ConcernsHost(kind)) << static_cast<int>(kind);
    }
}

// ---- waits
// -----------------------------------------------------------------------------------------

// Sun, 06 Nov 1994 08:49:37 GMT
const WallTime kNow = std::chrono::system_clock::from_time_t(784111777);

struct RetryAfterCase {
    const char* name;
    const char* text;
    std::optional<Milliseconds> wait;
};

class RetryAfterTest : public ::testing::TestWithParam<RetryAfterCase> {};

TEST_P(RetryAfterTest, IsRead) {
    EXPECT_EQ(ParseRetryAfter(GetParam().text, kNow), GetParam().wait);
}

INSTANTIATE_TEST_SUITE_P(
    RetryRules, RetryAfterTest,
    ::testing::Values(RetryAfterCase{"Seconds", "120", seconds(120)},
                      RetryAfterCase{"Zero", "0", seconds(0)},
                      RetryAfterCase{"LeadingZero", "007", seconds(7)},
                      RetryAfterCase{"Overflow", "99999999999999999999", std::chrono::hours(24)},
                      RetryAfterCase{"Date", "Sun, 06 Nov 1994 08:49:47 GMT", seconds(10)},
                      RetryAfterCase{"OldDate", "Sunday, 06-Nov-94 08:49:47 GMT", seconds(10)},
                      RetryAfterCase{"AsctimeDate", "Sun Nov  6 08:49:47 1994", seconds(10)},
                      RetryAfterCase{"PastDate", "Sun, 06 Nov 1994 08:00:00 GMT", seconds(0)},
                      RetryAfterCase{"Empty", "", std::nullopt},
                      RetryAfterCase{"Words", "soon", std::nullopt},
                      RetryAfterCase{"Negative", "-5", std::nullopt},
                      RetryAfterCase{"Fraction", "1.5", std::nullopt}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(RetryRulesTest, WaitsGrowWithTheFailures) {
    EXPECT_EQ(WaitBeforeRepeat(Status(503), 1, {}, kNow), seconds(3));
    EXPECT_EQ(WaitBeforeRepeat(Status(503), 2, {}, kNow), seconds(6));
    EXPECT_EQ(WaitBeforeRepeat(Status(503), 3, {}, kNow), seconds(12));
    EXPECT_EQ(WaitBeforeRepeat(Status(503), 9, {}, kNow), seconds(12));
}

TEST(RetryRulesTest, NoWaitsConfiguredMeansNoWait) {
    PoliteSettings settings;
    settings.retry_waits.clear();
    EXPECT_EQ(WaitBeforeRepeat(Status(503), 1, settings, kNow), seconds(0));
}

TEST(RetryRulesTest, RetryAfterWinsOverTheWaits) {
    EXPECT_EQ(WaitBeforeRepeat(StatusWith(503, "retry-after", "1"), 3, {}, kNow), seconds(1));
}

TEST(RetryRulesTest, RetryAfterIsLimited) {
    EXPECT_EQ(WaitBeforeRepeat(StatusWith(503, "retry-after", "3600"), 1, {}, kNow), seconds(60));
}

TEST(RetryRulesTest, UnreadableRetryAfterIsIgnored) {
    EXPECT_EQ(WaitBeforeRepeat(StatusWith(503, "retry-after", "soon"), 1, {}, kNow), seconds(3));
}

TEST(RetryRulesTest, DateIsComparedWithTheClockOfTheService) {
    HttpOutcome outcome = StatusWith(503, "retry-after", "Thu, 01 Jan 1970 00:01:05 GMT");
    outcome.response.headers["date"] = "Thu, 01 Jan 1970 00:01:00 GMT";
    EXPECT_EQ(WaitBeforeRepeat(outcome, 1, {}, kNow), seconds(5));
}

TEST(RetryRulesTest, DateWithoutAServiceClockIsComparedWithOurs) {
    const HttpOutcome outcome = StatusWith(503, "retry-after", "Sun, 06 Nov 1994 08:49:42 GMT");
    EXPECT_EQ(WaitBeforeRepeat(outcome, 1, {}, kNow), seconds(5));
}

}  // namespace
}  // namespace Vantix::transport
