// Sessions: made, used, ended, expired, refused, and where their address is found.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::LocationStyle;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

Reply LogInAt(const BmcOptions& options) {
    BmcSimulator bmc(options);
    return TestClient(bmc).LogIn();
}

TEST(BmcSimulatorSessionTest, RightLoginMakesSessionWithTokenAndLocation) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    const Reply reply = TestClient(bmc).LogIn();
    EXPECT_EQ(reply.status, 201);
    EXPECT_EQ(reply.Header("x-auth-token").size(), 32U);
    EXPECT_THAT(reply.Header("location"), StartsWith(std::string(kSessions) + "/"));
    EXPECT_THAT(reply.body, HasSubstr("\"UserName\":\"demo\""));
    EXPECT_EQ(bmc.Counts().sessions_open, 1);
}

TEST(BmcSimulatorSessionTest, WrongLoginMakesNone) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    EXPECT_EQ(TestClient(bmc).LogIn("demo", "wrong").status, 401);
    EXPECT_EQ(TestClient(bmc).LogIn("nobody", "demo-pass-1").status, 401);
    EXPECT_EQ(bmc.Counts().sessions_made, 0);
    EXPECT_EQ(bmc.Counts().logins_refused, 2);
}

TEST(BmcSimulatorSessionTest, LoginThatIsNoJsonIsABadRequest) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    EXPECT_EQ(TestClient(bmc).Post(kSessions, "UserName=demo").status, 400);
    EXPECT_EQ(bmc.Counts().logins_refused, 0);
}

TEST(BmcSimulatorSessionTest, TokenPassesAndIsCounted) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.LogIn();
    EXPECT_EQ(client.Get(kChassis).status, 200);
    EXPECT_EQ(bmc.Counts().token_requests, 1);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

TEST(BmcSimulatorSessionTest, DeletedSessionNoLongerPasses) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    const std::string session = client.LogIn().Header("location");
    EXPECT_EQ(client.Send("DELETE", session).status, 204);
    EXPECT_EQ(client.Get(kChassis).status, 401);
    EXPECT_EQ(bmc.Counts().sessions_ended, 1);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(BmcSimulatorSessionTest, UnknownTokenIsRefusedEvenBesideRightBasicCredentials) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    small.client.UseToken("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(small.client.Get(kChassis).status, 401);
}

TEST(BmcSimulatorSessionTest, SessionsAreListedThoughTheScenarioHasNone) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    const std::string session = client.LogIn().Header("location");
    EXPECT_THAT(client.Get(kSessions).body, HasSubstr("\"" + session + "\""));
    EXPECT_THAT(client.Get(session).body, HasSubstr("\"@odata.id\":\"" + session + "\""));
    EXPECT_EQ(client.Get(std::string(kSessions) + "/none").status, 404);
}

TEST(BmcSimulatorSessionTest, RootLinkDecidesWhereSessionsAre) {
    const SmallTree tree;
    tree.Add("/redfish/v1", R"({"Links":{"Sessions":{"@odata.id":"/redfish/v1/Own/Sessions/"}}})");
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    const char* login = R"({"UserName":"demo","Password":"demo-pass-1"})";
    EXPECT_THAT(client.Post("/redfish/v1/Own/Sessions", login).Header("location"),
                StartsWith("/redfish/v1/Own/Sessions/"));
    EXPECT_EQ(client.Post(kSessions, login).status, 401);
}

TEST(BmcSimulatorSessionTest, SessionServiceDecidesWhereTheRootHasNoLink) {
    const SmallTree tree;
    tree.Add("/redfish/v1", R"({"SessionService":{"@odata.id":"/redfish/v1/SessionService"}})");
    tree.Add("/redfish/v1/SessionService",
             R"({"Sessions":{"@odata.id":"/redfish/v1/SessionService/All"}})");
    BmcSimulator bmc(tree.Options());
    const Reply reply = TestClient(bmc).Post("/redfish/v1/SessionService/All",
                                             R"({"UserName":"demo","Password":"demo-pass-1"})");
    EXPECT_EQ(reply.status, 201);
}

TEST(BmcSimulatorSessionTest, ServiceThatKnowsNoSessionsSaysNotAllowed) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.allow_session = false;
    EXPECT_EQ(LogInAt(options).status, 405);
}

TEST(BmcSimulatorSessionTest, SwitchedOffServiceRefusesWithItsMessage) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.session_refusal_status = 503;
    const Reply reply = LogInAt(options);
    EXPECT_EQ(reply.status, 503);
    EXPECT_THAT(reply.body, HasSubstr("ServiceDisabled"));
}

TEST(BmcSimulatorSessionTest, FullSlotsRefuseUntilOneIsFree) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.session_slots = 1;
    BmcSimulator bmc(options);
    TestClient first(bmc);
    const std::string session = first.LogIn().Header("location");
    const Reply refused = TestClient(bmc).LogIn();
    EXPECT_EQ(refused.status, 503);
    EXPECT_THAT(refused.body, HasSubstr("SessionLimitExceeded"));
    first.Send("DELETE", session);
    EXPECT_EQ(TestClient(bmc).LogIn().status, 201);
}

TEST(BmcSimulatorSessionTest, LoginWithAuthorizationHeaderIsRefusedWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.refuse_basic_on_login = true;
    SmallBmc small(options);
    EXPECT_EQ(small.client.LogIn().status, 400);
    EXPECT_EQ(TestClient(small.bmc).LogIn().status, 201);
}

TEST(BmcSimulatorSessionTest, TokenExpiresAfterSoManyRequests) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.token_lifetime_requests = 2;
    BmcSimulator bmc(options);
    TestClient client(bmc);
    client.LogIn();
    EXPECT_EQ(client.Get(kChassis).status, 200);
    EXPECT_EQ(client.Get(kChassis).status, 200);
    EXPECT_EQ(client.Get(kChassis).status, 401);
    EXPECT_EQ(bmc.Counts().sessions_expired, 1);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(BmcSimulatorSessionTest, OnlyTheFirstTokensExpireWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.token_lifetime_requests = 1;
    options.tokens_that_expire = 1;
    BmcSimulator bmc(options);
    TestClient client(bmc);
    client.LogIn();
    client.Get(kChassis);
    EXPECT_EQ(client.Get(kChassis).status, 401);
    client.LogIn();
    client.Get(kChassis);
    EXPECT_EQ(client.Get(kChassis).status, 200);
}

TEST(BmcSimulatorSessionTest, RestartForgetsTokens) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.LogIn();
    bmc.ForgetSessions();
    EXPECT_EQ(client.Get(kChassis).status, 401);
}

TEST(BmcSimulatorSessionTest, LocationIsAbsoluteWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.session_location = LocationStyle::kAbsolute;
    EXPECT_THAT(LogInAt(options).Header("location"), StartsWith("https://127.0.0.1:"));
}

TEST(BmcSimulatorSessionTest, LocationIsPlainHttpWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.session_location = LocationStyle::kPlainHttp;
    EXPECT_THAT(LogInAt(options).Header("location"), StartsWith("http://127.0.0.1:"));
}

TEST(BmcSimulatorSessionTest, LocationAndBodyLinkAreMissingWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.session_location = LocationStyle::kMissing;
    options.session_body_has_odata_id = false;
    const Reply reply = LogInAt(options);
    EXPECT_EQ(reply.Header("location"), "");
    EXPECT_THAT(reply.body, Not(HasSubstr("@odata.id")));
    EXPECT_THAT(reply.body, HasSubstr("\"Id\":\"sim-1\""));
}

}  // namespace
}  // namespace simulator_test
