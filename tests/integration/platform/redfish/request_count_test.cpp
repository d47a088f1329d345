// Round trips are the cost of a scan: their number is part of what it promises.

#include <gtest/gtest.h>

#include "bmc_simulator/large_scenario.h"
#include "integration/platform/redfish/bmc_scan.h"
#include "support/temporary_folder.h"

namespace Vantix::redfish {
namespace {

using simulators::BmcCounts;
using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::ExpandMode;

class RequestCountTest : public ::testing::TestWithParam<int> {
  protected:
    BmcCounts CountsOf(ExpandMode expand) {
        simulators::MakeLargeScenario(folder_.Path("bmc"), GetParam());
        BmcOptions options;
        options.scenario_dir = folder_.Path("bmc");
        options.expand = expand;
        BmcSimulator bmc(options);
        const ScanOutcome outcome = Scan(OptionFor(bmc));
        EXPECT_TRUE(outcome.Succeeded());
        EXPECT_GE(outcome.identities.size(), static_cast<std::size_t>(GetParam()));
        return bmc.Counts();
    }

    test_support::TemporaryFolder folder_;
};

TEST_P(RequestCountTest, WithExpandItIsConstant) {
    const BmcCounts counts = CountsOf(ExpandMode::kSupported);
    EXPECT_LE(counts.requests, 7);
    EXPECT_LE(counts.connections, 3);
    EXPECT_EQ(counts.connections, counts.handshakes);
}

TEST_P(RequestCountTest, WithoutExpandItIsOneAMember) {
    const BmcCounts counts = CountsOf(ExpandMode::kUnsupported);
    EXPECT_LE(counts.requests, GetParam() + 9);
    EXPECT_LE(counts.connections, 3);
    EXPECT_LE(counts.most_in_flight, 3);
}

TEST_P(RequestCountTest, NothingIsReadTwice) {
    const BmcCounts counts = CountsOf(ExpandMode::kUnsupported);
    for (const auto& record : counts.log) {
        if (record.method != "GET") continue;
        EXPECT_EQ(counts.RequestsTo(record.target), 1) << record.target;
    }
}

INSTANTIATE_TEST_SUITE_P(Entries, RequestCountTest, ::testing::Values(1, 20, 60));

TEST(ParallelTest, WishForOneIsKept) {
    BmcOptions options = Scenario("rack-server");
    options.expand = ExpandMode::kUnsupported;
    BmcSimulator bmc(options);
    VantixConnection::ConnectOption option = OptionFor(bmc);
    option.max_parallel = 1;
    EXPECT_TRUE(Scan(option).Succeeded());
    EXPECT_EQ(bmc.Counts().most_in_flight, 1);
    EXPECT_EQ(bmc.Counts().connections, 1);
}

TEST(ParallelTest, ServiceWithOneConnectionIsScannedWhole) {
    BmcOptions options = Scenario("rack-server");
    options.max_connections = 1;
    BmcSimulator bmc(options);
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    EXPECT_TRUE(outcome.Succeeded()) << outcome.connection.message;
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(ParallelTest, RefusalOfHasteIsAnsweredByOneAtATime) {
    BmcOptions options = Scenario("rack-server");
    options.expand = ExpandMode::kUnsupported;
    BmcSimulator bmc(options);
    simulators::FaultRule rule =
        FaultAt("/FirmwareInventory/", simulators::Fault::Kind::kStatus, 429);
    rule.times = 2;
    bmc.SetFaults({rule});
    EXPECT_TRUE(ScanImpatiently(OptionFor(bmc)).Succeeded());
}

}  // namespace
}  // namespace Vantix::redfish
