#include "transport/redfish/redfish_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "support/redfish_talk.h"

namespace Vantix::transport {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kRoot = R"({"Id":"RootService","Links":{"Sessions":)"
                              R"({"@odata.id":"/redfish/v1/SessionService/Sessions"}},)"
                              R"("SessionService":{"@odata.id":"/redfish/v1/SessionService"},)"
                              R"("Managers":{"@odata.id":"/redfish/v1/Managers"}})";
constexpr const char* kRootLinkedElsewhere =
    R"({"Id":"RootService","Links":{"Sessions":{"@odata.id":"/other/Sessions"}},)"
    R"("Managers":{"@odata.id":"/redfish/v1/Managers"}})";
constexpr const char* kProbe = "GET /redfish/v1/Managers";

class RedfishServiceTest : public ::testing::Test {
  protected:
    RedfishServiceTest() {
        settings_.credentials = {"scanner", "invented-password"};
        settings_.on_login_refused = [this](const std::string& what) { refused_.push_back(what); };
        settings_.on_secret = [this](const std::string& token) { secrets_.push_back(token); };
    }

    RedfishService& Service() {
        if (!service_) service_ = std::make_unique<RedfishService>(peer_, settings_);
        return *service_;
    }

    RedfishFailure Open() { return Service().Open(); }

    void OpenWithRoot(const std::string& root) {
        peer_.On(kAskRoot, Json(root)).On(kLogIn, SessionMade());
        ASSERT_FALSE(Open());
    }

    ConversationTransport peer_;
    RedfishSettings settings_;
    std::vector<std::string> refused_;
    std::vector<std::string> secrets_;
    std::unique_ptr<RedfishService> service_;
};

// ---- session ----------------------------------------------------------------------------------

TEST_F(RedfishServiceTest, RootAndLoginAreUnderWayTogether) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, SessionMade());
    peer_.AnswerNewestFirst();  // fails when the login waits for the root
    EXPECT_FALSE(Open());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kAskRoot, kLogIn));
}

TEST_F(RedfishServiceTest, RootIsAskedWithoutCredentials) {
    OpenWithRoot(kRoot);
    const HttpRequest root = peer_.Request(kAskRoot);
    EXPECT_FALSE(root.basic.has_value());
    EXPECT_EQ(ConversationTransport::Header(root, "X-Auth-Token"), "");
}

TEST_F(RedfishServiceTest, RootIsKept) {
    OpenWithRoot(kRoot);
    EXPECT_TRUE(Service().Root().contains("Managers"));
}

TEST_F(RedfishServiceTest, TokenIsToldForMasking) {
    OpenWithRoot(kRoot);
    EXPECT_THAT(secrets_, ElementsAre("token-1"));
}

TEST_F(RedfishServiceTest, CloseDeletesTheSession) {
    OpenWithRoot(kRoot);
    peer_.On(kLogOut, Status(204));
    EXPECT_FALSE(Service().Close());
}

TEST_F(RedfishServiceTest, FailedLogOutIsToldByClose) {
    OpenWithRoot(kRoot);
    peer_.On(kLogOut, Status(500));
    EXPECT_EQ(Service().Close().status, 500);
}

TEST_F(RedfishServiceTest, UnreadableRootFailsAndLeavesTheSessionToClose) {
    peer_.On(kAskRoot, Status(200, "<html>")).On(kLogIn, SessionMade()).On(kLogOut, Status(204));
    EXPECT_EQ(Open().problem, RedfishProblem::kBadBody);
    EXPECT_FALSE(Service().Close());
}

TEST_F(RedfishServiceTest, MissingRootFails) {
    peer_.On(kAskRoot, Status(404)).On(kLogIn, Status(404));
    EXPECT_EQ(Open().problem, RedfishProblem::kNotFound);
}

TEST_F(RedfishServiceTest, UnreachableHostFailsWithTheTransportsReason) {
    peer_.On(kAskRoot, Broken(HttpErrorKind::kConnect));
    peer_.On(kLogIn, Broken(HttpErrorKind::kConnect));
    EXPECT_EQ(Open().transport, HttpErrorKind::kConnect);
}

TEST_F(RedfishServiceTest, RootThatWantsALoginIsAskedAgainWithTheToken) {
    peer_.On(kAskRoot, Status(401)).On(kLogIn, SessionMade()).On(kAskRoot, Json(kRoot));
    EXPECT_FALSE(Open());
    EXPECT_EQ(ConversationTransport::Header(peer_.Request(kAskRoot, 1), "X-Auth-Token"), "token-1");
}

TEST_F(RedfishServiceTest, RootThatRefusesTheTokenTooIsARefusedLogin) {
    peer_.On(kAskRoot, Status(401)).On(kLogIn, SessionMade()).On(kAskRoot, Status(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_EQ(refused_.size(), 1U);
}

class WrongSessionsPathTest : public RedfishServiceTest,
                              public ::testing::WithParamInterface<int> {};

TEST_P(WrongSessionsPathTest, LinkedPathIsTried) {
    peer_.On(kAskRoot, Json(kRootLinkedElsewhere)).On(kLogIn, Status(GetParam()));
    peer_.On("POST /other/Sessions", SessionMade());
    EXPECT_FALSE(Open());
    EXPECT_FALSE(peer_.Request("POST /other/Sessions").basic.has_value());
}

INSTANTIATE_TEST_SUITE_P(All, WrongSessionsPathTest, ::testing::Values(404, 405, 501));

TEST_F(RedfishServiceTest, SessionServiceTellsThePathWhereTheRootDoesNot) {
    peer_.On(kAskRoot, Json(R"({"SessionService":{"@odata.id":"/redfish/v1/Sess/"}})"));
    peer_.On(kLogIn, Status(404));
    peer_.On("GET /redfish/v1/Sess", Json(R"({"Sessions":{"@odata.id":"/redfish/v1/Sess/S"}})"));
    peer_.On("POST /redfish/v1/Sess/S", SessionMade());
    EXPECT_FALSE(Open());
}

TEST_F(RedfishServiceTest, LinkBackToTheStandardPathIsNotTriedTwice) {
    settings_.login = LoginMethod::kSession;
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Status(405));
    EXPECT_EQ(Open().status, 405);
}

TEST_F(RedfishServiceTest, LoginThatNeverLeftIsSentOnceMore) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Broken(HttpErrorKind::kConnect));
    peer_.On(kLogIn, SessionMade());
    EXPECT_FALSE(Open());
}

TEST_F(RedfishServiceTest, LoginDroppedDuringTheHandshakeIsSentOnceMore) {
    ScriptedReply dropped = Broken(HttpErrorKind::kReset);
    dropped.outcome.error.never_sent = true;
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, dropped).On(kLogIn, SessionMade());
    EXPECT_FALSE(Open());
}

TEST_F(RedfishServiceTest, LoginWhoseAnswerWasLostIsNotSentAgain) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Broken(HttpErrorKind::kReset));
    EXPECT_EQ(Open().transport, HttpErrorKind::kReset);
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 1);
}

TEST_F(RedfishServiceTest, PasswordThatMustBeChangedStopsAtOnce) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Refusal(403, "Base.1.0.PasswordChangeRequired"));
    EXPECT_EQ(Open().problem, RedfishProblem::kPasswordChange);
    EXPECT_EQ(peer_.Requests().size(), 2U);
    EXPECT_THAT(refused_, IsEmpty());
}

// ---- which method -------------------------------------------------------------------------------

class WrongPasswordTest : public RedfishServiceTest,
                          public ::testing::WithParamInterface<LoginMethod> {};

TEST_P(WrongPasswordTest, IsOfferedExactlyOnce) {
    settings_.login = GetParam();
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Refusal(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_FALSE(Service().Close());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kAskRoot, kLogIn));
    EXPECT_EQ(refused_.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Sessions, WrongPasswordTest,
                         ::testing::Values(LoginMethod::kAuto, LoginMethod::kSession));

TEST_F(RedfishServiceTest, WrongPasswordIsOfferedOnceWhereTheRootWantsALoginToo) {
    peer_.On(kAskRoot, Status(401)).On(kLogIn, Refusal(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_EQ(peer_.Requests().size(), 2U);
}

TEST_F(RedfishServiceTest, WrongBasicPasswordIsOfferedWithOneRequestAlone) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(kRoot)).On(kProbe, Refusal(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_THAT(peer_.Lines(), ElementsAre(kAskRoot, kProbe));
    EXPECT_EQ(refused_.size(), 1U);
}

TEST_F(RedfishServiceTest, WrongBasicPasswordAtARootThatWantsALoginIsOfferedOnce) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Status(401)).On(kAskRoot, Status(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_TRUE(peer_.Request(kAskRoot, 1).basic.has_value());
    EXPECT_EQ(refused_.size(), 1U);
}

TEST_F(RedfishServiceTest, BasicMakesNoSession) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(kRoot)).On(kProbe, Json("{}"));
    EXPECT_FALSE(Open());
    EXPECT_EQ(peer_.Request(kProbe).basic->second, "invented-password");
    EXPECT_FALSE(Service().Close());
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 0);
}

TEST_F(RedfishServiceTest, BasicProbeGoesOnWhereTheServiceHasNoSessions) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(kRoot)).On(kProbe, Status(404));
    peer_.On("GET /redfish/v1/SessionService", Json("{}"));
    EXPECT_FALSE(Open());
}

TEST_F(RedfishServiceTest, BasicProbeThatMayNotReadSessionsIsALogin) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(kRoot)).On(kProbe, Refusal(403));
    EXPECT_FALSE(Open());
}

TEST_F(RedfishServiceTest, BasicProbeWithoutAnswerIsNoLogin) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(kRoot)).On(kProbe, Broken(HttpErrorKind::kTimeout));
    EXPECT_EQ(Open().transport, HttpErrorKind::kTimeout);
}

TEST_F(RedfishServiceTest, RootWithoutLinksIsStillProbedByOneRequest) {
    settings_.login = LoginMethod::kBasic;
    peer_.On(kAskRoot, Json(R"({"Id":"RootService"})"));
    peer_.On("GET /redfish/v1/Systems", Refusal(401));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
}

struct RefusedSession {
    const char* name;
    int status;
    const char* message_id;
};

class AutoFallsBackToBasicTest : public RedfishServiceTest,
                                 public ::testing::WithParamInterface<RefusedSession> {};

TEST_P(AutoFallsBackToBasicTest, WhenSessionsAreRefusedForAnotherReason) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Refusal(GetParam().status, GetParam().message_id));
    peer_.On(kProbe, Json("{}"));
    EXPECT_FALSE(Open());
    EXPECT_TRUE(peer_.Request(kProbe).basic.has_value());
    EXPECT_THAT(refused_, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, AutoFallsBackToBasicTest,
    ::testing::Values(RefusedSession{"ServiceOff", 503, "Base.1.0.ServiceDisabled"},
                      RefusedSession{"SlotsFull", 503, "Base.1.0.SessionLimitExceeded"},
                      RefusedSession{"NotAllowed", 405, "Base.1.0.OperationNotAllowed"},
                      RefusedSession{"Forbidden", 403, "Base.1.0.InsufficientPrivilege"},
                      RefusedSession{"Malformed", 400, "Base.1.0.MalformedJSON"}),
    [](const auto& row) { return row.param.name; });

class NoFallBackToBasicTest : public RedfishServiceTest,
                              public ::testing::WithParamInterface<HttpErrorKind> {};

TEST_P(NoFallBackToBasicTest, WhenTheSessionAnswerDidNotCome) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Broken(GetParam()));
    EXPECT_EQ(Open().transport, GetParam());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kAskRoot, kLogIn));
}

TEST_P(NoFallBackToBasicTest, EvenWhereTheRootWantsALogin) {
    peer_.On(kAskRoot, Status(401)).On(kLogIn, Broken(GetParam()));
    EXPECT_EQ(Open().transport, GetParam());
    EXPECT_THAT(peer_.Lines(), ElementsAre(kAskRoot, kLogIn));
}

INSTANTIATE_TEST_SUITE_P(All, NoFallBackToBasicTest,
                         ::testing::Values(HttpErrorKind::kReset, HttpErrorKind::kTimeout,
                                           HttpErrorKind::kTruncated, HttpErrorKind::kProtocol));

TEST_F(RedfishServiceTest, SessionOnlyNeverUsesBasic) {
    settings_.login = LoginMethod::kSession;
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Refusal(503, "Base.1.0.ServiceDisabled"));
    EXPECT_EQ(Open().status, 503);
    EXPECT_EQ(peer_.Requests().size(), 2U);
}

TEST_F(RedfishServiceTest, SessionOnlyNeverUsesBasicForARootThatWantsALogin) {
    settings_.login = LoginMethod::kSession;
    peer_.On(kAskRoot, Status(401)).On(kLogIn, Refusal(503, "Base.1.0.SessionLimitExceeded"));
    EXPECT_EQ(Open().problem, RedfishProblem::kSessionLimit);
    EXPECT_EQ(peer_.Requests().size(), 2U);
}

TEST_F(RedfishServiceTest, RootReadWithBasicSettlesTheMethod) {
    peer_.On(kAskRoot, Status(401)).On(kLogIn, Refusal(405)).On(kAskRoot, Json(kRoot));
    EXPECT_FALSE(Open());
    EXPECT_TRUE(peer_.Request(kAskRoot, 1).basic.has_value());
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 1);
}

TEST_F(RedfishServiceTest, FullSlotsAreToldWhenBasicDoesNotWorkEither) {
    peer_.On(kAskRoot, Json(kRoot)).On(kLogIn, Refusal(503, "Base.1.0.SessionLimitExceeded"));
    peer_.On(kProbe, Broken(HttpErrorKind::kReset));
    EXPECT_EQ(Open().problem, RedfishProblem::kSessionLimit);
}

TEST_F(RedfishServiceTest, SpentLoginBudgetForbidsTheSecondPath) {
    bool may = true;
    settings_.may_log_in = [&may] { return std::exchange(may, false) && false; };
    peer_.On(kAskRoot, Json(kRootLinkedElsewhere)).On(kLogIn, Status(404));
    EXPECT_EQ(Open().problem, RedfishProblem::kUnauthorized);
    EXPECT_EQ(peer_.Requests().size(), 2U);
}

// ---- $expand ------------------------------------------------------------------------------------

struct ExpandRow {
    const char* name;
    const char* features;
    int levels;
    const char* query;
};

class ExpandQueryTest : public RedfishServiceTest,
                        public ::testing::WithParamInterface<ExpandRow> {};

TEST_P(ExpandQueryTest, FollowsWhatTheRootOffers) {
    OpenWithRoot(std::string(R"({"ProtocolFeaturesSupported":)") + GetParam().features + "}");
    EXPECT_EQ(Service().ExpandQuery(GetParam().levels), GetParam().query);
}

INSTANTIATE_TEST_SUITE_P(
    All, ExpandQueryTest,
    ::testing::Values(
        ExpandRow{"NoLinksAndLevels", R"({"ExpandQuery":{"NoLinks":true,"Levels":true}})", 1,
                  "$expand=.($levels=1)"},
        ExpandRow{"NoLinksAlone", R"({"ExpandQuery":{"NoLinks":true,"Levels":false}})", 1,
                  "$expand=."},
        ExpandRow{"ExpandAllAlone", R"({"ExpandQuery":{"ExpandAll":true}})", 1, "$expand=*"},
        ExpandRow{"ExpandAllAndLevels", R"({"ExpandQuery":{"ExpandAll":true,"Levels":true}})", 1,
                  "$expand=*($levels=1)"},
        ExpandRow{"LinksAlone", R"({"ExpandQuery":{"Links":true,"Levels":true}})", 1, ""},
        ExpandRow{"DeeperThanAllowed",
                  R"({"ExpandQuery":{"NoLinks":true,"Levels":true,"MaxLevels":1}})", 2,
                  "$expand=.($levels=1)"},
        ExpandRow{"AsDeepAsAllowed",
                  R"({"ExpandQuery":{"NoLinks":true,"Levels":true,"MaxLevels":6}})", 2,
                  "$expand=.($levels=2)"},
        ExpandRow{"DeeperThanTold", R"({"ExpandQuery":{"NoLinks":true,"Levels":true}})", 2,
                  "$expand=.($levels=1)"},
        ExpandRow{"ZeroLevels", R"({"ExpandQuery":{"NoLinks":true,"Levels":true,"MaxLevels":0}})",
                  1, "$expand=.($levels=1)"},
        ExpandRow{"TextForTruth", R"({"ExpandQuery":{"NoLinks":"true"}})", 1, "$expand=."},
        ExpandRow{"ListForObject", R"({"ExpandQuery":[]})", 1, ""},
        ExpandRow{"NullFeatures", "null", 1, ""}, ExpandRow{"NoExpand", "{}", 1, ""}),
    [](const auto& row) { return row.param.name; });

TEST_F(RedfishServiceTest, RefusedExpandIsRemembered) {
    OpenWithRoot(R"({"ProtocolFeaturesSupported":{"ExpandQuery":{"NoLinks":true}}})");
    Service().ExpandRefused();
    EXPECT_EQ(Service().ExpandQuery(), "");
}

}  // namespace
}  // namespace Vantix::transport
