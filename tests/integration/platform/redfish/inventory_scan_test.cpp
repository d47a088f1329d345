// What a scan makes of the shapes in which services give their inventory.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "common/result/result_codes.h"
#include "integration/platform/redfish/bmc_scan.h"

namespace Vantix::redfish {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::ExpandMode;
using simulators::Fault;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using VantixConnection::ConnectOption;

constexpr const char* kInventory = "/redfish/v1/UpdateService/FirmwareInventory";

// Identities as "software id|version|slot|serial number", in any order.
std::multiset<std::string> Lines(const ScanOutcome& outcome) {
    std::multiset<std::string> lines;
    for (const auto& identity : outcome.identities) {
        lines.insert(identity.SoftwareID + "|" + identity.VersionString + "|" +
                     identity.AssociatedAdapterSlot + "|" + identity.SerialNumber);
    }
    return lines;
}

ScanOutcome ScanOf(const BmcOptions& options) {
    BmcSimulator bmc(options);
    return ScanImpatiently(OptionFor(bmc));
}

const std::multiset<std::string>& RackServerLines() {
    static const std::multiset<std::string> kLines = Lines(ScanOf(Scenario("rack-server")));
    return kLines;
}

TEST(InventoryScanTest, RackServerIsReadWhole) {
    const ScanOutcome outcome = ScanOf(Scenario("rack-server"));
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_EQ(outcome.machine_type.first, "Example Rack 100");
    EXPECT_EQ(outcome.machine_type.second, "EXSN0001");
    EXPECT_GE(outcome.identities.size(), 30U);
}

// ---- the same list whatever the service does ---------------------------------------------------

class ExpandScanTest : public ::testing::TestWithParam<ExpandMode> {};

TEST_P(ExpandScanTest, GivesTheSameList) {
    BmcOptions options = Scenario("rack-server");
    options.expand = GetParam();
    const ScanOutcome outcome = ScanOf(options);
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_EQ(Lines(outcome), RackServerLines());
}

INSTANTIATE_TEST_SUITE_P(All, ExpandScanTest,
                         ::testing::Values(ExpandMode::kSupported, ExpandMode::kUnsupported,
                                           ExpandMode::kRefused, ExpandMode::kIgnored,
                                           ExpandMode::kDropsFields, ExpandMode::kTwoDocuments));

TEST(ExpandRefusalTest, IsRememberedForTheRun) {
    BmcOptions options = Scenario("rack-server");
    options.expand = ExpandMode::kRefused;
    options.max_connections = 1;
    BmcSimulator bmc(options);
    ConnectOption option = OptionFor(bmc);
    option.max_parallel = 1;
    ScanImpatiently(option);
    int expanded = 0;
    for (const auto& line : bmc.Counts().RequestLines()) {
        expanded += line.find("$expand") != std::string::npos ? 1 : 0;
    }
    // Those that were queued before the first refusal came; none of the second step.
    EXPECT_LE(expanded, 4);
}

class PagedScanTest : public ::testing::TestWithParam<ExpandMode> {};

TEST_P(PagedScanTest, GivesTheSameList) {
    BmcOptions options = Scenario("rack-server");
    options.page_size = 7;
    options.expand = GetParam();
    const ScanOutcome outcome = ScanOf(options);
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_EQ(Lines(outcome), RackServerLines());
}

INSTANTIATE_TEST_SUITE_P(All, PagedScanTest,
                         ::testing::Values(ExpandMode::kSupported, ExpandMode::kUnsupported));

TEST(InventoryScanTest, EncodedDollarIsNeverSent) {
    BmcOptions options = Scenario("rack-server");
    options.refuse_encoded_dollar = true;
    BmcSimulator bmc(options);
    EXPECT_TRUE(ScanImpatiently(OptionFor(bmc)).Succeeded());
    EXPECT_GE(bmc.Counts().RequestsTo(std::string(kInventory) + "?$expand=.($levels=1)"), 1);
}

TEST(InventoryScanTest, ControlBytesAndBadTextCostNothing) {
    BmcSimulator bmc(Scenario("rack-server"));
    bmc.SetFaults({FaultAt(kInventory, Fault::Kind::kControlBytes)});
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    EXPECT_EQ(outcome.identities.size(), RackServerLines().size());
    for (const auto& identity : outcome.identities) {
        EXPECT_EQ(identity.Name.find_first_of("\r\n\xff"), std::string::npos);
    }
}

TEST(InventoryScanTest, BusyServiceIsAskedAgain) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule = FaultAt(kInventory, Fault::Kind::kStatus, 503);
    rule.times = 2;
    rule.fault.retry_after = "7";
    bmc.SetFaults({rule});
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_EQ(Lines(outcome), RackServerLines());
}

TEST(InventoryScanTest, BadMembersCostOnlyThemselves) {
    BmcOptions options = Scenario("rack-server");
    options.expand = ExpandMode::kUnsupported;
    BmcSimulator whole(options);
    const std::size_t all = ScanImpatiently(OptionFor(whole)).identities.size();
    BmcSimulator bmc(options);
    int hit = 0;
    for (const auto& record : whole.Counts().log) {
        if (record.target.find(std::string(kInventory) + "/") != 0 || hit >= 3) continue;
        simulators::FaultRule rule;
        rule.target = record.target;
        rule.fault.status = ++hit == 1 ? 400 : hit == 2 ? 404 : 500;
        options.faults.push_back(rule);
    }
    bmc.SetFaults(options.faults);
    const ConnectOption option = OptionFor(bmc);
    const ScanOutcome outcome = ScanImpatiently(option);
    EXPECT_EQ(hit, 3);
    EXPECT_EQ(outcome.identities_code, GET_RESTFUL_DATA_FAILED);
    EXPECT_GE(outcome.identities.size(), all - 3);
    EXPECT_TRUE(option.run->IsPartial());
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(InventoryScanTest, WrongTypesEverywhereNeverCrash) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule;
    rule.method = "GET";
    rule.skip = 1;  // the root stays usable
    rule.fault.kind = Fault::Kind::kWrongTypes;
    bmc.SetFaults({rule});
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    EXPECT_TRUE(outcome.connection.IsSucceed());
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(InventoryScanTest, TooLargeInventoryIsRefusedCleanly) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule = FaultAt(kInventory, Fault::Kind::kHugeBody);
    rule.fault.size = 2 * 1024 * 1024;
    bmc.SetFaults({rule});
    ConnectOption option = OptionFor(bmc);
    option.max_body_bytes = 1024 * 1024;
    const ScanOutcome outcome = ScanImpatiently(option);
    EXPECT_EQ(outcome.identities_code, CONNECTION_FAILED);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(InventoryScanTest, DeeplyNestedInventoryIsRefusedCleanly) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule = FaultAt(kInventory, Fault::Kind::kDeepJson);
    rule.fault.size = 100000;
    bmc.SetFaults({rule});
    EXPECT_EQ(ScanImpatiently(OptionFor(bmc)).identities_code, GET_RESTFUL_DATA_FAILED);
}

// ---- without, or with a thin, update service ---------------------------------------------------

TEST(ThinInventoryTest, IsCompletedFromTheOtherResources) {
    const ScanOutcome outcome = ScanOf(Scenario("thin-inventory"));
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_GE(outcome.identities.size(), 6U);  // BIOS, BMC, adapter, controller, two drives
    EXPECT_NE(outcome.machine_type.first, "");
}

TEST(ThinInventoryTest, IsNoGapOfTheScan) {
    BmcSimulator bmc(Scenario("thin-inventory"));
    const ConnectOption option = OptionFor(bmc);
    ScanImpatiently(option);
    EXPECT_FALSE(option.run->IsPartial());
}

class BrokenUpdateServiceTest : public ::testing::TestWithParam<int> {};

TEST_P(BrokenUpdateServiceTest, LeavesTheOtherResources) {
    BmcSimulator bmc(Scenario("rack-server"));
    bmc.SetFaults({FaultAt("/UpdateService", Fault::Kind::kStatus, GetParam())});
    const ConnectOption option = OptionFor(bmc);
    const ScanOutcome outcome = ScanImpatiently(option);
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_THAT(outcome.Versions(), Contains("EXUE24B-3.21"));
    EXPECT_FALSE(option.run->IsPartial());
}

INSTANTIATE_TEST_SUITE_P(All, BrokenUpdateServiceTest, ::testing::Values(404, 500, 501));

class AbsentPartTest : public ::testing::TestWithParam<const char*> {};

TEST_P(AbsentPartTest, IsNoFailure) {
    BmcSimulator bmc(Scenario("rack-server"));
    bmc.SetFaults({FaultAt(GetParam(), Fault::Kind::kStatus, 404)});
    const ConnectOption option = OptionFor(bmc);
    EXPECT_TRUE(ScanImpatiently(option).Succeeded());
    EXPECT_FALSE(option.run->IsPartial());
}

INSTANTIATE_TEST_SUITE_P(All, AbsentPartTest,
                         ::testing::Values("/Power", "/NetworkAdapters", "/PCIeDevices",
                                           "/PCIeSlots", "/Storage", "/Chassis"));

TEST(MissingLinkTest, ResourcesAtTheStandardPathsAreFound) {
    BmcOptions options = Scenario("rack-server");
    options.replaced_bodies["/redfish/v1"] = R"({"Id":"RootService","RedfishVersion":"1.6.0",)"
                                             R"("Chassis":{"@odata.id":"/redfish/v1/Chassis"}})";
    const ScanOutcome outcome = ScanOf(options);
    EXPECT_TRUE(outcome.Succeeded());
    EXPECT_EQ(outcome.machine_type.first, "Example Rack 100");
    EXPECT_EQ(Lines(outcome), RackServerLines());
}

// ---- which system -------------------------------------------------------------------------------

TEST(SeveralSystemsTest, TheHostIsChosenBeforeAnAcceleratorBoard) {
    BmcSimulator bmc(Scenario("odd-members"));
    ConnectOption chosen = OptionFor(bmc);
    chosen.system_id = "Host";
    const ScanOutcome by_rule = ScanImpatiently(OptionFor(bmc));
    const ScanOutcome by_wish = ScanImpatiently(chosen);
    EXPECT_NE(by_wish.machine_type.second, "");
    EXPECT_EQ(by_rule.machine_type, by_wish.machine_type);
}

TEST(SeveralSystemsTest, WishForOneDecides) {
    BmcSimulator bmc(Scenario("odd-members"));
    ConnectOption host = OptionFor(bmc);
    host.system_id = "Host";
    ConnectOption board = OptionFor(bmc);
    board.system_id = "GpuBoard";
    EXPECT_NE(ScanImpatiently(host).machine_type, ScanImpatiently(board).machine_type);
}

TEST(SeveralSystemsTest, UnknownWishIsToldAndChoosesNone) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.system_id = "no-such-system";
    EXPECT_EQ(ScanImpatiently(option).machine_type.second, "");
    EXPECT_THAT(option.run->Notices(), Contains(HasSubstr("no-such-system")));
}

TEST(SeveralSystemsTest, UnknownWishMakesTheScanPartial) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.system_id = "no-such-system";
    ScanImpatiently(option);
    EXPECT_TRUE(option.run->IsPartial());
}

TEST(HostPowerTest, PoweredOffHostIsNoted) {
    BmcOptions options = Scenario("rack-server");
    options.replaced_bodies["/redfish/v1/Systems/1"] =
        R"({"@odata.id":"/redfish/v1/Systems/1","Id":"1","Model":"Example Rack 100",)"
        R"("SerialNumber":"EXSN0001","PowerState":"Off"})";
    BmcSimulator bmc(options);
    const ConnectOption option = OptionFor(bmc);
    ScanImpatiently(option);
    EXPECT_THAT(option.run->Notices(), Contains(HasSubstr("powered off")));
}

TEST(OddMembersTest, GoodOnesAreListedAndBadOnesTold) {
    BmcSimulator bmc(Scenario("odd-members"));
    const ConnectOption option = OptionFor(bmc);
    const ScanOutcome outcome = ScanImpatiently(option);
    EXPECT_GE(outcome.identities.size(), 10U);
    EXPECT_TRUE(option.run->IsPartial());
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

}  // namespace
}  // namespace Vantix::redfish
