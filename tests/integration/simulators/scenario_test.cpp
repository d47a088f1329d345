// The scenarios that come with the sources: complete, consistent, and what their names promise.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <filesystem>
#include <set>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

namespace json = boost::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::filesystem::path FolderOf(const std::string& name) {
    return std::filesystem::path(SIMULATOR_SCENARIOS) / name;
}

simulators::BmcOptions OptionsFor(const std::string& name) {
    return ShippedScenario(FolderOf(name).string());
}

void CollectLinks(const json::value& value, std::set<std::string>& links) {
    if (const json::array* list = value.if_array()) {
        for (const json::value& entry : *list) CollectLinks(entry, links);
    }
    if (const json::object* object = value.if_object()) {
        for (const auto& [key, field] : *object) {
            if (key == "@odata.id" && field.is_string()) {
                links.insert(std::string(std::string_view(field.get_string())));
            }
            CollectLinks(field, links);
        }
    }
}

/// Walks all links from the root; those that lead nowhere.
std::set<std::string> DeadLinks(TestClient& client) {
    std::set<std::string> waiting = {"/redfish/v1"};
    std::set<std::string> seen;
    std::set<std::string> dead;
    while (!waiting.empty()) {
        const std::string link = *waiting.begin();
        waiting.erase(waiting.begin());
        const std::string path = link.substr(0, link.find('#'));
        if (!seen.insert(path).second) continue;
        const Reply reply = client.Get(path);
        if (reply.status != 200) dead.insert(link);
        boost::system::error_code error;
        const json::value body = json::parse(reply.body, error);
        if (!error) CollectLinks(body, waiting);
    }
    return dead;
}

class ShippedScenarioTest : public testing::TestWithParam<std::string> {};

TEST_P(ShippedScenarioTest, SaysThatItIsInvented) {
    EXPECT_THAT(test_support::TemporaryFolder::ReadFile((FolderOf(GetParam()) / "SOURCE").string()),
                HasSubstr("invented"));
}

TEST_P(ShippedScenarioTest, EveryLinkLeadsSomewhere) {
    SmallBmc small(OptionsFor(GetParam()));
    EXPECT_THAT(DeadLinks(small.client), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sound, ShippedScenarioTest,
                         testing::Values("rack-server", "amd-ami-bmc", "tavro-v3",
                                         "enclosure-module", "thin-inventory"),
                         [](const auto& scenario) {
                             std::string name = scenario.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(RackServerScenarioTest, HasFortyEntriesInOneExpandedAnswer) {
    SmallBmc small(OptionsFor("rack-server"));
    const Reply reply = small.client.Get(std::string(kInventory) + kExpand);
    EXPECT_EQ(CountOf("\"Version\"", reply.body), 40);
    EXPECT_EQ(CountOf("\"SoftwareId\"", reply.body), 39);
}

TEST(RackServerScenarioTest, SlotsTellWhereAdaptersAre) {
    SmallBmc small(OptionsFor("rack-server"));
    const Reply reply = small.client.Get("/redfish/v1/Chassis/1/PCIeSlots");
    EXPECT_THAT(reply.body, HasSubstr("/redfish/v1/Chassis/1/PCIeDevices/Nic2"));
    EXPECT_THAT(reply.body, HasSubstr("\"LocationOrdinalValue\": 1,"));
}

TEST(AmdAmiScenarioTest, MembersAreThinAndTheProductIsNamed) {
    SmallBmc small(OptionsFor("amd-ami-bmc"));
    EXPECT_THAT(small.client.Get("/redfish/v1").body, HasSubstr("\"AMI Redfish Server\""));
    EXPECT_THAT(small.client.Get(std::string(kInventory) + kExpand).body,
                Not(HasSubstr("SoftwareId")));
    EXPECT_THAT(small.client.Get("/redfish/v1/Systems/Self").body, HasSubstr("\"PCIeDevices\": ["));
}

TEST(TavroScenarioTest, ManagerTellsModelFirmwareAndRelease) {
    SmallBmc small(OptionsFor("tavro-v3"));
    const std::string manager = small.client.Get("/redfish/v1/Managers/1").body;
    EXPECT_THAT(manager, HasSubstr("\"Model\": \"TAVRO3\""));
    EXPECT_THAT(manager, HasSubstr("\"FirmwareVersion\": \"TV3A42E 3.10 2025-03-11\""));
    EXPECT_THAT(manager, HasSubstr("\"ReleaseName\""));
    EXPECT_THAT(small.client.Get("/redfish/v1").body, HasSubstr("\"Product\": \"Tavro\""));
}

TEST(TavroScenarioTest, SwitchTellsItsVendorAndWhatIsBelowIt) {
    SmallBmc small(OptionsFor("tavro-v3"));
    const std::string base = "/redfish/v1/Chassis/1/PCIeDevices/Switch1";
    EXPECT_THAT(small.client.Get(base + "/PCIeFunctions/1").body, HasSubstr("\"0x1000\""));
    EXPECT_THAT(small.client.Get(base).body, HasSubstr("\"DownstreamDevices\""));
    EXPECT_THAT(small.client.Get(std::string(kInventory) + "/PCIeSwitch1").body, HasSubstr(base));
}

TEST(EnclosureScenarioTest, HasAModuleAndSuppliesButNoSystems) {
    SmallBmc small(OptionsFor("enclosure-module"));
    EXPECT_THAT(small.client.Get("/redfish/v1").body, Not(HasSubstr("\"Systems\"")));
    EXPECT_EQ(small.client.Get("/redfish/v1/Systems").status, 404);
    EXPECT_THAT(small.client.Get("/redfish/v1/Managers/Module1").body,
                HasSubstr("\"EnclosureManager\""));
    const std::string chassis = "/redfish/v1/Chassis/Enclosure";
    EXPECT_EQ(small.client.Get(chassis + "/PowerSubsystem/PowerSupplies").status, 200);
    EXPECT_THAT(small.client.Get(chassis + "/Power").body, HasSubstr("\"PowerSupplies\""));
}

TEST(ThinInventoryScenarioTest, HasNoUpdateServiceAndNoExpand) {
    SmallBmc small(OptionsFor("thin-inventory"));
    EXPECT_EQ(small.client.Get("/redfish/v1/UpdateService").status, 404);
    EXPECT_EQ(small.client.Get(std::string("/redfish/v1/Systems") + kExpand).status, 501);
}

TEST(OddMembersScenarioTest, OddLinksReachTheirMembers) {
    SmallBmc small(OptionsFor("odd-members"));
    const std::string base = kInventory;
    EXPECT_EQ(small.client.Get(base + "/SlashAtEnd/").status, 200);
    EXPECT_EQ(small.client.Get("/redfish/v1/UpdateService/firmwareinventory/WrongCase").status,
              200);
    EXPECT_EQ(small.client.Get(base + "/Installed-0-%20%20%20__NIC.Slot.1-1").status, 200);
    EXPECT_EQ(small.client.Get(base + "/Fan%231").status, 200);
}

TEST(OddMembersScenarioTest, BadMembersFailEachInItsWay) {
    SmallBmc small(OptionsFor("odd-members"));
    const std::string base = kInventory;
    EXPECT_EQ(small.client.Get(base + "/Missing").status, 404);
    EXPECT_EQ(small.client.Get(base + "/Broken").status, 500);
    EXPECT_EQ(small.client.Get(base + "/Licensed").status, 403);
    EXPECT_EQ(small.client.Get(base + "/Null").status, 404);
}

}  // namespace
}  // namespace simulator_test
