// Generated scenarios of any size.

#include "bmc_simulator/large_scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::LargeScenarioKind;
using simulators::MakeLargeScenario;
using ::testing::HasSubstr;
using ::testing::Not;

BmcOptions MadeIn(const test_support::TemporaryFolder& folder, int entries,
                  LargeScenarioKind kind) {
    MakeLargeScenario(folder.Path("large"), entries, kind);
    BmcOptions options;
    options.scenario_dir = folder.Path("large");
    return options;
}

TEST(LargeScenarioTest, InventoryHasSoManyEntries) {
    const test_support::TemporaryFolder folder;
    SmallBmc small(MadeIn(folder, 200, LargeScenarioKind::kBare));
    const Reply reply = small.client.Get(std::string(kInventory) + kExpand);
    EXPECT_EQ(CountOf("\"SoftwareId\"", reply.body), 200);
    EXPECT_THAT(reply.body, HasSubstr("\"Members@odata.count\":200"));
}

TEST(LargeScenarioTest, BareServiceHasNoChassis) {
    const test_support::TemporaryFolder folder;
    SmallBmc small(MadeIn(folder, 3, LargeScenarioKind::kBare));
    EXPECT_THAT(small.client.Get("/redfish/v1").body, Not(HasSubstr("\"Chassis\"")));
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis").status, 404);
    EXPECT_EQ(small.client.Get("/redfish/v1/Systems/1").status, 200);
    EXPECT_EQ(small.client.Get("/redfish/v1/Managers/1").status, 200);
}

TEST(LargeScenarioTest, ChassisVariantRelatesMembersToDrives) {
    const test_support::TemporaryFolder folder;
    SmallBmc small(MadeIn(folder, 3, LargeScenarioKind::kWithChassis));
    EXPECT_THAT(small.client.Get(std::string(kInventory) + "/FW-3").body,
                HasSubstr("/redfish/v1/Chassis/1/Drives/3"));
    EXPECT_THAT(small.client.Get("/redfish/v1/Chassis/1/Drives/3").body,
                HasSubstr("\"LocationOrdinalValue\":3"));
    EXPECT_EQ(CountOf("\"Slot\"", small.client.Get("/redfish/v1/Chassis/1/PCIeSlots").body), 8);
}

}  // namespace
}  // namespace simulator_test
