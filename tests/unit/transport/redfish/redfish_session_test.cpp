#include "transport/redfish/redfish_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/conversation_transport.h"

namespace Vantix::transport {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";
constexpr const char* kLogin = "POST /redfish/v1/SessionService/Sessions";

ScriptedReply Made(const std::string& token, const std::string& location) {
    return Json(R"({"Id":"from-body"})", 201)
        .With("x-auth-token", token)
        .With("location", location);
}

class RedfishSessionTest : public ::testing::Test {
  protected:
    RedfishAnswer LogIn() {
        std::optional<RedfishAnswer> login;
        session_.LogIn(kSessions, [&](RedfishAnswer&& answer) { login = std::move(answer); });
        EXPECT_TRUE(session_.IsLoginPending());
        while (!login && peer_.Step(Milliseconds(1))) {
        }
        EXPECT_TRUE(login.has_value());
        EXPECT_FALSE(session_.IsLoginPending());
        return std::move(login).value_or(RedfishAnswer());
    }

    RedfishFailure LogOut() {
        std::optional<RedfishFailure> ended;
        session_.LogOut([&](const RedfishFailure& failure) { ended = failure; });
        while (!ended && peer_.Step(Milliseconds(1))) {
        }
        EXPECT_TRUE(ended.has_value());
        return ended.value_or(RedfishFailure());
    }

    // Where the session of a login answered with `reply` is deleted.
    std::string DeletedAfter(const ScriptedReply& reply) {
        peer_.On(kLogin, reply);
        LogIn();
        const std::size_t before = peer_.Requests().size();
        for (const char* path : {"/s/1", "/redfish/v1/SessionService/Sessions/from-body"}) {
            peer_.Always(std::string("DELETE ") + path, Status(204));
        }
        LogOut();
        return peer_.Requests().size() == before ? "" : peer_.Requests().back().target;
    }

    ConversationTransport peer_;
    RedfishSession session_{peer_, {"scanner", "p:\xC3\xA4\"\\ $"}, Milliseconds(7000)};
};

TEST_F(RedfishSessionTest, LoginSendsUserAndPasswordAsJson) {
    peer_.On(kLogin, Made("t", "/s/1"));
    LogIn();
    const HttpRequest request = peer_.Request(kLogin);
    EXPECT_EQ(request.body, "{\"UserName\":\"scanner\",\"Password\":\"p:\xC3\xA4\\\"\\\\ $\"}");
    EXPECT_EQ(ConversationTransport::Header(request, "Content-Type"), "application/json");
    EXPECT_EQ(request.timeout, Milliseconds(7000));
}

TEST_F(RedfishSessionTest, LoginCarriesNoAuthorizationOfAnyKind) {
    peer_.On(kLogin, Made("t", "/s/1"));
    LogIn();
    const HttpRequest request = peer_.Request(kLogin);
    EXPECT_FALSE(request.basic.has_value());
    EXPECT_EQ(ConversationTransport::Header(request, "Authorization"), "");
    EXPECT_EQ(ConversationTransport::Header(request, "X-Auth-Token"), "");
}

TEST_F(RedfishSessionTest, TokenOfTheLoginAuthorizesLaterRequests) {
    peer_.On(kLogin, Made("invented-token", "/s/1"));
    EXPECT_TRUE(LogIn().Ok());
    HttpRequest request;
    session_.Authorize(request);
    EXPECT_EQ(ConversationTransport::Header(request, "X-Auth-Token"), "invented-token");
    EXPECT_FALSE(request.basic.has_value());
}

TEST_F(RedfishSessionTest, NothingIsAuthorizedBeforeLogin) {
    HttpRequest request;
    session_.Authorize(request);
    EXPECT_THAT(request.headers, IsEmpty());
    EXPECT_FALSE(request.basic.has_value());
}

TEST_F(RedfishSessionTest, BasicModeCarriesUserAndPasswordApart) {
    session_.UseBasic();
    HttpRequest request;
    session_.Authorize(request);
    ASSERT_TRUE(request.basic.has_value());
    EXPECT_EQ(request.basic->first, "scanner");
    EXPECT_EQ(request.basic->second, "p:\xC3\xA4\"\\ $");
    EXPECT_TRUE(session_.IsBasic());
}

TEST_F(RedfishSessionTest, RelativeLocationIsDeleted) {
    EXPECT_EQ(DeletedAfter(Made("t", "/s/1")), "/s/1");
}

TEST_F(RedfishSessionTest, LocationWithTrailingSlashIsDeleted) {
    EXPECT_EQ(DeletedAfter(Made("t", "/s/1/")), "/s/1");
}

TEST_F(RedfishSessionTest, AbsoluteLocationIsReducedToItsPath) {
    EXPECT_EQ(DeletedAfter(Made("t", "https://192.0.2.7/s/1")), "/s/1");
}

TEST_F(RedfishSessionTest, LocationOfAnotherHostAndPlainHttpIsReducedToItsPath) {
    EXPECT_EQ(DeletedAfter(Made("t", "http://bmc-internal/s/1")), "/s/1");
}

TEST_F(RedfishSessionTest, BodyTellsTheSessionWhereLocationIsMissing) {
    EXPECT_EQ(DeletedAfter(Json(R"({"@odata.id":"/s/1","Id":"2"})", 201).With("x-auth-token", "t")),
              "/s/1");
}

TEST_F(RedfishSessionTest, IdBelowTheSessionsIsTheLastResort) {
    EXPECT_EQ(DeletedAfter(Json(R"({"Id":"from-body"})", 201).With("x-auth-token", "t")),
              "/redfish/v1/SessionService/Sessions/from-body");
}

TEST_F(RedfishSessionTest, SessionWhoseAddressIsUnknownIsReportedAtLogOut) {
    peer_.On(kLogin, Status(201).With("x-auth-token", "t"));
    EXPECT_TRUE(LogIn().Ok());
    EXPECT_THAT(LogOut().text, HasSubstr("did not tell"));
}

TEST_F(RedfishSessionTest, TokenWithoutReadableBodyIsEnough) {
    peer_.On(kLogin, Status(201, "<html>").With("x-auth-token", "t").With("location", "/s/1"));
    EXPECT_TRUE(LogIn().Ok());
    EXPECT_EQ(session_.Token(), "t");
}

TEST_F(RedfishSessionTest, SessionIsKnownFromTheHeadersOfACutAnswer) {
    ScriptedReply cut = Made("t", "/s/1");
    cut.outcome.error = {HttpErrorKind::kTruncated, "cut"};
    cut.outcome.response.body.clear();
    peer_.On(kLogin, cut).On("DELETE /s/1", Status(204));
    EXPECT_TRUE(LogIn().Ok());
    EXPECT_FALSE(LogOut());
}

TEST_F(RedfishSessionTest, CutAnswerWithoutTokenIsAFailureOfTheTransport) {
    ScriptedReply cut = Status(201);
    cut.outcome.error = {HttpErrorKind::kTruncated, "cut"};
    peer_.On(kLogin, cut);
    EXPECT_EQ(LogIn().failure.transport, HttpErrorKind::kTruncated);
}

TEST_F(RedfishSessionTest, MissingTokenIsAFailureThatSaysSo) {
    peer_.On(kLogin, Json(R"({"Id":"1"})", 201).With("location", "/s/1"));
    const RedfishAnswer answer = LogIn();
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kStatus);
    EXPECT_THAT(answer.failure.text, HasSubstr("X-Auth-Token"));
}

TEST_F(RedfishSessionTest, SessionWithoutTokenIsStillDeleted) {
    EXPECT_EQ(DeletedAfter(Json(R"({"Id":"1"})", 201).With("location", "/s/1")), "/s/1");
}

TEST_F(RedfishSessionTest, RefusedLoginMakesNoSession) {
    peer_.On(kLogin, Json(R"({"error":{}})", 401));
    EXPECT_EQ(LogIn().failure.problem, RedfishProblem::kUnauthorized);
    EXPECT_EQ(session_.Token(), "");
    EXPECT_FALSE(LogOut());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kLogin));
}

TEST_F(RedfishSessionTest, FailureNeverQuotesThePassword) {
    peer_.On(kLogin, Json(R"({"error":{"message":"no such user"}})", 400));
    EXPECT_THAT(LogIn().failure.text, Not(HasSubstr("\xC3\xA4")));
}

TEST_F(RedfishSessionTest, PasswordChangeSaidAtLoginIsAFailureWithASessionToDelete) {
    peer_.On(
        kLogin,
        Json(R"({"@Message.ExtendedInfo":[{"MessageId":"Base.1.0.PasswordChangeRequired"}]})", 201)
            .With("x-auth-token", "t")
            .With("location", "/s/1"));
    peer_.On("DELETE /s/1", Status(204));
    EXPECT_EQ(LogIn().failure.problem, RedfishProblem::kPasswordChange);
    EXPECT_FALSE(LogOut());
}

TEST_F(RedfishSessionTest, LogOutCarriesTheToken) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Status(204));
    LogIn();
    EXPECT_FALSE(LogOut());
    EXPECT_EQ(ConversationTransport::Header(peer_.Request("DELETE /s/1"), "X-Auth-Token"), "t");
}

TEST_F(RedfishSessionTest, LogOutWithoutLoginAsksNothing) {
    EXPECT_FALSE(LogOut());
    EXPECT_THAT(peer_.Requests(), IsEmpty());
}

TEST_F(RedfishSessionTest, SecondLogOutAsksNothing) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Json("{}", 200));
    LogIn();
    LogOut();
    EXPECT_FALSE(LogOut());
}

TEST_F(RedfishSessionTest, TokenIsForgottenByLogOut) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Status(204));
    LogIn();
    LogOut();
    EXPECT_EQ(session_.Token(), "");
}

class GoneSessionTest : public RedfishSessionTest, public ::testing::WithParamInterface<int> {};

TEST_P(GoneSessionTest, LogOutOfASessionThatRanOutIsNoFailure) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Json(R"({"error":{}})", GetParam()));
    LogIn();
    EXPECT_FALSE(LogOut());
}

INSTANTIATE_TEST_SUITE_P(All, GoneSessionTest, ::testing::Values(401, 404));

TEST_F(RedfishSessionTest, RefusedLogOutIsTold) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Status(500));
    LogIn();
    const RedfishFailure failure = LogOut();
    EXPECT_EQ(failure.status, 500);
    EXPECT_THAT(failure.text, HasSubstr("DELETE /s/1 answered 500"));
}

TEST_F(RedfishSessionTest, LogOutThatIsNotAnsweredIsTold) {
    peer_.On(kLogin, Made("t", "/s/1")).On("DELETE /s/1", Broken(HttpErrorKind::kTimeout));
    LogIn();
    EXPECT_EQ(LogOut().transport, HttpErrorKind::kTimeout);
}

TEST_F(RedfishSessionTest, ReplacedSessionsAreDeletedBeforeTheOneInForce) {
    peer_.On(kLogin, Made("old", "/s/1")).On(kLogin, Made("new", "/s/2"));
    peer_.On("DELETE /s/1", Status(404)).On("DELETE /s/2", Status(204));
    LogIn();
    LogIn();
    EXPECT_FALSE(LogOut());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kLogin, kLogin, "DELETE /s/1", "DELETE /s/2"));
    EXPECT_EQ(ConversationTransport::Header(peer_.Request("DELETE /s/1"), "X-Auth-Token"), "new");
}

TEST_F(RedfishSessionTest, FailureForAReplacedSessionIsToldThoughTheLastWentWell) {
    peer_.On(kLogin, Made("old", "/s/1")).On(kLogin, Made("new", "/s/2"));
    peer_.On("DELETE /s/1", Status(500)).On("DELETE /s/2", Status(204));
    LogIn();
    LogIn();
    EXPECT_EQ(LogOut().status, 500);
}

}  // namespace
}  // namespace Vantix::transport
