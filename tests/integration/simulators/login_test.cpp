// Who is let in: the open root, Basic credentials, refusals, lock-out, password change.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using ::testing::HasSubstr;

TEST(BmcSimulatorLoginTest, RootsAreOpenToEveryone) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    EXPECT_THAT(client.Get("/redfish").body, HasSubstr("/redfish/v1/"));
    EXPECT_EQ(client.Get("/redfish/v1").status, 200);
    EXPECT_EQ(client.Get("/redfish/v1/").status, 200);
}

TEST(BmcSimulatorLoginTest, OtherResourcesAskForCredentials) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    const Reply reply = TestClient(bmc).Get(kChassis);
    EXPECT_EQ(reply.status, 401);
    EXPECT_THAT(reply.Header("www-authenticate"), HasSubstr("Basic"));
    EXPECT_EQ(bmc.Counts().logins_refused, 0);
}

TEST(BmcSimulatorLoginTest, RootAsksForCredentialsWhenToldTo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.root_needs_login = true;
    SmallBmc small(options);
    EXPECT_EQ(TestClient(small.bmc).Get("/redfish/v1").status, 401);
    EXPECT_EQ(small.client.Get("/redfish/v1").status, 200);
}

TEST(BmcSimulatorLoginTest, RightBasicCredentialsPass) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Get(kChassis).status, 200);
    EXPECT_EQ(small.bmc.Counts().basic_requests, 1);
    EXPECT_EQ(small.bmc.Counts().authorization_headers_seen, 1);
}

TEST(BmcSimulatorLoginTest, OddBytesInPasswordPass) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.password = "p:\xC3\xA4\"\\ $";
    BmcSimulator bmc(options);
    TestClient client(bmc);
    client.UseBasic("demo", options.password);
    EXPECT_EQ(client.Get(kChassis).status, 200);
    EXPECT_EQ(TestClient(bmc).LogIn("demo", "p:\xC3\xA4\\\"\\\\ $").status, 201);
}

TEST(BmcSimulatorLoginTest, WrongBasicCredentialsAreRefusedAndCounted) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.UseBasic("demo", "wrong");
    EXPECT_EQ(client.Get(kChassis).status, 401);
    EXPECT_EQ(bmc.Counts().logins_refused, 1);
}

TEST(BmcSimulatorLoginTest, BasicIsRefusedWhereOnlySessionsAreAllowed) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.allow_basic = false;
    SmallBmc small(options);
    EXPECT_EQ(small.client.Get(kChassis).status, 401);
}

TEST(BmcSimulatorLoginTest, RightPasswordIsRefusedAfterLockOut) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.lock_out_after = 2;
    BmcSimulator bmc(options);
    EXPECT_EQ(TestClient(bmc).LogIn("demo", "wrong").status, 401);
    EXPECT_EQ(TestClient(bmc).LogIn("demo", "wrong").status, 401);
    EXPECT_EQ(TestClient(bmc).LogIn().status, 401);
    EXPECT_EQ(bmc.Counts().logins_refused, 3);
}

TEST(BmcSimulatorLoginTest, PasswordChangeIsSaidInTheSessionBody) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.password_change = simulators::PasswordChange::kSaidAtLogin;
    BmcSimulator bmc(options);
    const Reply reply = TestClient(bmc).LogIn();
    EXPECT_EQ(reply.status, 201);
    EXPECT_THAT(reply.body, HasSubstr("PasswordChangeRequired"));
}

TEST(BmcSimulatorLoginTest, PasswordChangeForbidsEverythingButLoggingOut) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.password_change = simulators::PasswordChange::kForbidsTheRest;
    BmcSimulator bmc(options);
    TestClient client(bmc);
    const Reply session = client.LogIn();
    const Reply forbidden = client.Get(kChassis);
    EXPECT_EQ(forbidden.status, 403);
    EXPECT_THAT(forbidden.body, HasSubstr("PasswordChangeRequired"));
    EXPECT_EQ(client.Send("DELETE", session.Header("location")).status, 204);
}

}  // namespace
}  // namespace simulator_test
