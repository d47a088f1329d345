// What the simulator counts and remembers of each request.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcCounts;
using simulators::BmcSimulator;
using simulators::FindHeader;
using ::testing::ElementsAre;
using ::testing::Pointee;

TEST(BmcCountsTest, RequestLinesStandInOrderOfArrival) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.Get("/redfish/v1");
    client.LogIn();
    client.Get("/redfish/v1/Chassis?$expand=.($levels=1)");
    EXPECT_THAT(bmc.Counts().RequestLines(),
                ElementsAre("GET /redfish/v1", "POST /redfish/v1/SessionService/Sessions",
                            "GET /redfish/v1/Chassis?$expand=.($levels=1)"));
}

TEST(BmcCountsTest, RecordsHoldHeadersConnectionAndStatus) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.AddHeader("X-Example: some value");
    client.Get("/redfish/v1/Chassis");
    const BmcCounts counts = bmc.Counts();
    ASSERT_EQ(counts.log.size(), 1U);
    EXPECT_EQ(counts.log[0].status, 401);
    EXPECT_EQ(counts.log[0].connection, 1);
    EXPECT_THAT(FindHeader(counts.log[0].headers, "x-EXAMPLE"), Pointee(std::string("some value")));
    EXPECT_EQ(FindHeader(counts.log[0].headers, "Authorization"), nullptr);
}

TEST(BmcCountsTest, RequestsToATargetCountTheWholeTarget) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    small.client.Get("/redfish/v1/Chassis");
    small.client.Get("/redfish/v1/Chassis");
    small.client.Get("/redfish/v1/Chassis?only");
    EXPECT_EQ(small.bmc.Counts().RequestsTo("/redfish/v1/Chassis"), 2);
    EXPECT_EQ(small.bmc.Counts().RequestsTo("/redfish/v1/Chassis?only"), 1);
}

TEST(BmcCountsTest, UnansweredRequestKeepsStatusZero) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    simulators::FaultRule rule;
    rule.fault.kind = simulators::Fault::Kind::kReset;
    small.bmc.SetFaults({rule});
    small.client.Get("/redfish/v1");
    EXPECT_EQ(small.bmc.Counts().log.at(0).status, 0);
    EXPECT_EQ(small.bmc.Counts().in_flight, 0);
}

TEST(BmcCountsTest, KeptConnectionNeedsOneHandshake) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    for (int i = 0; i < 5; ++i) small.client.Get("/redfish/v1/Chassis");
    EXPECT_EQ(small.bmc.Counts().requests, 5);
    EXPECT_EQ(small.bmc.Counts().connections, 1);
    EXPECT_EQ(small.bmc.Counts().handshakes, 1);
}

TEST(BmcCountsTest, ResetKeepsWhatIsStillOpen) {
    const SmallTree tree;
    BmcSimulator bmc(tree.Options());
    TestClient client(bmc);
    client.LogIn();
    bmc.ResetCounts();
    client.Get("/redfish/v1/Chassis/A");
    const BmcCounts counts = bmc.Counts();
    EXPECT_EQ(counts.requests, 1);
    EXPECT_EQ(counts.sessions_made, 0);
    EXPECT_EQ(counts.sessions_open, 1);
    EXPECT_EQ(counts.connections_open, 1);
    EXPECT_EQ(counts.log.at(0).status, 200);
}

}  // namespace
}  // namespace simulator_test
