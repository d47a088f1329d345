#include "transport/redfish/redfish_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/conversation_transport.h"

namespace Vantix::transport {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

RedfishAnswer Read(ScriptedReply reply) {
    return ReadAnswer("GET", "/redfish/v1/Systems", std::move(reply.outcome));
}

std::string ErrorBody(const std::string& id, const std::string& text) {
    return R"({"error":{"code":"Base.1.0.GeneralError","@Message.ExtendedInfo":[{"MessageId":")" +
           id + R"(","Message":")" + text + R"("}]}})";
}

TEST(RedfishAnswerTest, ObjectWithSuccessIsTheResource) {
    const RedfishAnswer answer = Read(Json(R"({"Id":"1"})"));
    ASSERT_TRUE(answer.Ok());
    EXPECT_TRUE(answer.body.contains("Id"));
    EXPECT_EQ(answer.warning, "");
}

TEST(RedfishAnswerTest, WrongContentTypeWithValidJsonIsAccepted) {
    EXPECT_TRUE(Read(Status(200, R"({"Id":"1"})").With("content-type", "text/html")).Ok());
}

TEST(RedfishAnswerTest, NoContentIsASuccessWithoutBody) {
    const RedfishAnswer answer = Read(Status(204));
    EXPECT_TRUE(answer.Ok());
    EXPECT_THAT(answer.body, IsEmpty());
}

TEST(RedfishAnswerTest, TransportFailureKeepsItsKindAndNamesTheRequest) {
    const RedfishAnswer answer = Read(Broken(HttpErrorKind::kTruncated));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kNotReached);
    EXPECT_EQ(answer.failure.transport, HttpErrorKind::kTruncated);
    EXPECT_EQ(answer.failure.text, "GET /redfish/v1/Systems: scripted failure");
}

TEST(RedfishAnswerTest, HtmlPageTellsRequestStatusTypeAndBeginning) {
    const RedfishAnswer answer =
        Read(Status(200, "<html><title>Log in</title>").With("content-type", "text/html"));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kBadBody);
    EXPECT_EQ(answer.failure.status, 200);
    EXPECT_THAT(answer.failure.text, HasSubstr("GET /redfish/v1/Systems"));
    EXPECT_THAT(answer.failure.text, HasSubstr("200"));
    EXPECT_THAT(answer.failure.text, HasSubstr("text/html"));
    EXPECT_THAT(answer.failure.text, HasSubstr("<html><title>Log in</title>"));
}

TEST(RedfishAnswerTest, QuoteOfABadBodyEndsAfterEightyCharacters) {
    const RedfishAnswer answer = Read(Status(200, "<" + std::string(79, 'a') + "TOO FAR"));
    EXPECT_THAT(answer.failure.text, HasSubstr("<" + std::string(79, 'a')));
    EXPECT_THAT(answer.failure.text, Not(HasSubstr("TOO FAR")));
}

TEST(RedfishAnswerTest, QuoteOfABadBodyIsOneCleanLine) {
    const RedfishAnswer answer = Read(Status(200, "<p>\r\n\x1b[31m\x80</p>"));
    EXPECT_EQ(answer.failure.text.find_first_of("\r\n\x1b"), std::string::npos);
    EXPECT_THAT(answer.failure.text, HasSubstr("\xEF\xBF\xBD</p>"));
}

TEST(RedfishAnswerTest, HtmlPageOfAFailureStatusIsQuotedToo) {
    const RedfishAnswer answer = Read(Status(403, "<h1>Forbidden</h1>"));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kForbidden);
    EXPECT_THAT(answer.failure.text,
                HasSubstr("GET /redfish/v1/Systems answered 403 (<h1>Forbidden</h1>)"));
}

TEST(RedfishAnswerTest, ServerErrorWithoutAnyBodyIsReadable) {
    const RedfishAnswer answer = Read(Status(500));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kStatus);
    EXPECT_EQ(answer.failure.text, "GET /redfish/v1/Systems answered 500");
}

TEST(RedfishAnswerTest, EmptyBodyWithSuccessIsABadBody) {
    EXPECT_EQ(Read(Status(200)).failure.problem, RedfishProblem::kBadBody);
}

TEST(RedfishAnswerTest, NullBodyIsABadBody) {
    EXPECT_EQ(Read(Json("null")).failure.problem, RedfishProblem::kBadBody);
}

TEST(RedfishAnswerTest, ArrayTextAndNumberAreBadBodies) {
    for (const char* body : {"[]", "\"text\"", "7", "true"}) {
        EXPECT_EQ(Read(Json(body)).failure.problem, RedfishProblem::kBadBody) << body;
    }
}

TEST(RedfishAnswerTest, CutOffJsonIsABadBody) {
    EXPECT_EQ(Read(Json(R"({"Id":"1","Na)")).failure.problem, RedfishProblem::kBadBody);
}

TEST(RedfishAnswerTest, TwoDocumentsInOneBodyAreABadBody) {
    EXPECT_EQ(Read(Json(R"({"error":{}}{"Members":[]})")).failure.problem,
              RedfishProblem::kBadBody);
}

TEST(RedfishAnswerTest, ErrorDocumentWithSuccessStatusIsAFailure) {
    const RedfishAnswer answer = Read(Json(ErrorBody("Base.1.0.InternalError", "broken inside")));
    EXPECT_FALSE(answer.Ok());
    EXPECT_THAT(answer.failure.text, HasSubstr("broken inside"));
    EXPECT_THAT(answer.body, IsEmpty());
}

TEST(RedfishAnswerTest, MembersAndErrorTogetherAreAResource) {
    const RedfishAnswer answer = Read(Json(R"({"Members":[],"error":{"code":"c"}})"));
    EXPECT_TRUE(answer.Ok());
    EXPECT_TRUE(answer.body.contains("Members"));
}

TEST(RedfishAnswerTest, CleanedBodyIsAResourceWithAWarning) {
    const RedfishAnswer answer = Read(Json("{\"Id\":\"a\rb\xff\"}"));
    ASSERT_TRUE(answer.Ok());
    EXPECT_THAT(answer.warning, HasSubstr("GET /redfish/v1/Systems"));
}

TEST(RedfishAnswerTest, MessageIdsOfASuccessAreKept) {
    const RedfishAnswer answer = Read(Json(
        R"({"Id":"1","@Message.ExtendedInfo":[{"MessageId":"Base.1.0.PasswordChangeRequired"}]})"));
    EXPECT_TRUE(answer.Ok());
    EXPECT_THAT(answer.message_ids, ElementsAre("Base.1.0.PasswordChangeRequired"));
}

TEST(RedfishAnswerTest, WordsOfTheServiceStandInTheFailure) {
    EXPECT_THAT(Read(Json(ErrorBody("A.B", "tell this"), 400)).failure.text,
                HasSubstr("answered 400 (tell this)"));
}

TEST(RedfishAnswerTest, MessageIdStandsWhereThereAreNoWords) {
    EXPECT_THAT(Read(Json(ErrorBody("A.B", ""), 400)).failure.text, HasSubstr("(A.B)"));
}

struct StatusRow {
    int status;
    RedfishProblem problem;
};

class RedfishAnswerStatusTest : public ::testing::TestWithParam<StatusRow> {};

TEST_P(RedfishAnswerStatusTest, StatusAloneNamesTheProblem) {
    const RedfishAnswer answer = Read(Json(R"({"error":{}})", GetParam().status));
    EXPECT_EQ(answer.failure.problem, GetParam().problem);
    EXPECT_EQ(answer.failure.status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    All, RedfishAnswerStatusTest,
    ::testing::Values(
        StatusRow{400, RedfishProblem::kStatus}, StatusRow{401, RedfishProblem::kUnauthorized},
        StatusRow{403, RedfishProblem::kForbidden}, StatusRow{404, RedfishProblem::kNotFound},
        StatusRow{405, RedfishProblem::kStatus}, StatusRow{410, RedfishProblem::kNotFound},
        StatusRow{429, RedfishProblem::kStatus}, StatusRow{500, RedfishProblem::kStatus},
        StatusRow{501, RedfishProblem::kStatus}, StatusRow{503, RedfishProblem::kStatus}),
    [](const auto& row) { return "Status" + std::to_string(row.param.status); });

TEST(RedfishAnswerTest, ForbiddenForWantOfALicenceIsALicenceProblem) {
    const RedfishAnswer answer =
        Read(Json(ErrorBody("Vendor.1.0.X", "An advanced license is required."), 403));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kLicence);
    EXPECT_THAT(answer.failure.text, HasSubstr("An advanced license is required."));
}

TEST(RedfishAnswerTest, ForbiddenForAPasswordChangeIsAPasswordProblem) {
    EXPECT_EQ(Read(Json(ErrorBody("Base.1.0.PasswordChangeRequired", "x"), 403)).failure.problem,
              RedfishProblem::kPasswordChange);
}

TEST(RedfishAnswerTest, ForbiddenIsNeverTakenForAWrongPassword) {
    EXPECT_EQ(Read(Json(ErrorBody("Base.1.0.ResourceAtUriUnauthorized", "x"), 403)).failure.problem,
              RedfishProblem::kForbidden);
}

TEST(RedfishAnswerTest, BadRequestThatNamesWrongCredentialsIsUnauthorized) {
    EXPECT_EQ(
        Read(Json(ErrorBody("Vendor.1.0.UnauthorizedLoginAttempt", "x"), 400)).failure.problem,
        RedfishProblem::kUnauthorized);
}

TEST(RedfishAnswerTest, UnavailableForWantOfASessionIsASessionProblem) {
    EXPECT_EQ(Read(Json(ErrorBody("Base.1.0.SessionLimitExceeded", "x"), 503)).failure.problem,
              RedfishProblem::kSessionLimit);
}

TEST(RedfishAnswerTest, RedirectThatWasNotFollowedNamesItsAim) {
    const RedfishAnswer answer =
        Read(Status(302).With("location", "https://192.0.2.8/\r\nelsewhere"));
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kRedirect);
    EXPECT_THAT(answer.failure.text, HasSubstr("https://192.0.2.8/  elsewhere"));
}

}  // namespace
}  // namespace Vantix::transport
