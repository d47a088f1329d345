#include "platform/redfish/device_survey.h"

#include <gmock/gmock.h>

#include "support/scripted_channel.h"

namespace Vantix::redfish {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using transport::CollectionOf;
using transport::LinkTo;
using transport::Status;

class DeviceSurveyTest : public ScriptedChannelTest {
  protected:
    // One system with `more` members (each with a leading comma); update service without entries.
    void OfferServer(const std::string& more) {
        OfferRoot(R"({"Systems":{"@odata.id":"/s"},"Managers":{"@odata.id":"/m"},)"
                  R"("UpdateService":{"@odata.id":"/u"},"Chassis":{"@odata.id":"/c"}})");
        ExpectLogin();
        Offer("/s", CollectionOf({"/s/1"}));
        Offer("/s/1", R"({"Id":"1","SystemType":"Physical")" + more + "}");
        Offer("/m", CollectionOf({}));
        Offer("/u", "{}");
        Offer("/u/FirmwareInventory", CollectionOf({}));
    }
    void OfferChassis(const std::string& more) {
        Offer("/c", CollectionOf({"/c/1"}));
        Offer("/c/1", R"({"Id":"1")" + more + "}");
    }
    void OfferMember(const std::string& path) { Offer(path, R"({"Id":"x"})"); }

    const ServerSnapshot& Read() {
        EXPECT_FALSE(Open());
        return Channel().Inventory();
    }
    void TearDown() override { Release(); }
};

TEST_F(DeviceSurveyTest, ChassisOfNeighboursAreLeftAlone) {
    OfferServer(R"(,"Links":{"Chassis":[{"@odata.id":"/c/1"}]})");
    Offer("/c", CollectionOf({"/c/1", "/c/2"}));
    Offer("/c/1", R"({"Id":"1","NetworkAdapters":{"@odata.id":"/c/1/n"}})");
    Offer("/c/2", R"({"Id":"2","NetworkAdapters":{"@odata.id":"/c/2/n"},)"
                  R"("Links":{"ComputerSystems":[{"@odata.id":"/s/2"}]}})");
    Offer("/c/1/n", CollectionOf({"/c/1/n/1"}));
    OfferMember("/c/1/n/1");
    EXPECT_THAT(Paths(Read().network_adapters), ElementsAre("/c/1/n/1"));
}

TEST_F(DeviceSurveyTest, ChassisInsideTheOwnOneIsRead) {
    OfferServer(R"(,"Links":{"Chassis":[{"@odata.id":"/c/1"}]})");
    Offer("/c", CollectionOf({"/c/1", "/c/2"}));
    Offer("/c/1", R"({"Id":"1"})");
    Offer("/c/2", R"({"Id":"2","PCIeDevices":{"@odata.id":"/c/2/p"},)"
                  R"("Links":{"ContainedBy":{"@odata.id":"/c/1"}}})");
    Offer("/c/2/p", CollectionOf({"/p/1"}));
    OfferMember("/p/1");
    EXPECT_THAT(Paths(Read().pcie_devices), ElementsAre("/p/1"));
}

TEST_F(DeviceSurveyTest, DriveOfStorageAndChassisIsReadOnce) {
    OfferServer(R"(,"Storage":{"@odata.id":"/s/1/st"})");
    OfferChassis(R"(,"Drives":{"@odata.id":"/c/1/d"})");
    Offer("/s/1/st", CollectionOf({"/s/1/st/1"}));
    Offer("/s/1/st/1", R"({"Id":"1","Drives":[{"@odata.id":"/d/1"},{"@odata.id":"/d/2"}]})");
    Offer("/c/1/d", CollectionOf({"/d/1"}));
    OfferMember("/d/1");
    OfferMember("/d/2");
    EXPECT_THAT(Paths(Read().drives), ElementsAre("/d/1", "/d/2"));
}

TEST_F(DeviceSurveyTest, ControllersOfTheirOwnCollectionArePutIntoTheStorage) {
    OfferServer(R"(,"Storage":{"@odata.id":"/s/1/st"})");
    OfferChassis("");
    Offer("/s/1/st", CollectionOf({"/s/1/st/1"}));
    Offer("/s/1/st/1", R"({"Id":"1","Controllers":{"@odata.id":"/k"}})");
    Offer("/k", CollectionOf({"/k/1"}));
    OfferMember("/k/1");
    const auto& storage = Read().storage;
    ASSERT_EQ(storage.size(), 1U);
    const auto* controllers = storage[0].body.if_contains("Controllers");
    ASSERT_TRUE(controllers != nullptr && controllers->is_array());
    EXPECT_EQ(controllers->get_array().size(), 1U);
}

TEST_F(DeviceSurveyTest, ControllersLinkedAsPlainTextAreFollowed) {
    OfferServer(R"(,"Storage":{"@odata.id":"/s/1/st"})");
    OfferChassis("");
    Offer("/s/1/st", CollectionOf({"/s/1/st/1"}));
    Offer("/s/1/st/1", R"({"Id":"1","Controllers":"/k"})");
    Offer("/k", CollectionOf({"/k/1"}));
    OfferMember("/k/1");
    EXPECT_EQ(Read().storage.size(), 1U);
}

TEST_F(DeviceSurveyTest, PowerSuppliesOfTheSubsystemAreAskedAhead) {
    OfferServer("");
    OfferChassis(R"(,"PowerSubsystem":{"@odata.id":"/ps"},"Power":{"@odata.id":"/old"})");
    Offer("/ps/PowerSupplies", CollectionOf({"/ps/1"}));
    OfferMember("/ps/1");
    EXPECT_THAT(Paths(Read().power_supplies), ElementsAre("/ps/1"));
}

TEST_F(DeviceSurveyTest, PowerSuppliesElsewhereAreFoundByTheLink) {
    OfferServer("");
    OfferChassis(R"(,"PowerSubsystem":{"@odata.id":"/ps"})");
    peer_.On("GET /ps/PowerSupplies", Status(404));
    Offer("/ps", R"({"PowerSupplies":{"@odata.id":"/elsewhere"}})");
    Offer("/elsewhere", CollectionOf({"/ps/1"}));
    OfferMember("/ps/1");
    EXPECT_THAT(Paths(Read().power_supplies), ElementsAre("/ps/1"));
}

TEST_F(DeviceSurveyTest, OlderPowerResourceIsReadWhereThereIsNoSubsystem) {
    OfferServer("");
    OfferChassis(R"(,"Power":{"@odata.id":"/old"})");
    Offer("/old", R"({"PowerSupplies":[]})");
    EXPECT_THAT(Paths(Read().power), ElementsAre("/old"));
}

TEST_F(DeviceSurveyTest, PcieDevicesLinkedByTheSystemAreReadSingly) {
    OfferServer(R"(,"PCIeDevices":[{"@odata.id":"/p/1"},{"@odata.id":"/p/1"}])");
    OfferChassis("");
    OfferMember("/p/1");
    EXPECT_THAT(Paths(Read().pcie_devices), ElementsAre("/p/1"));
}

TEST_F(DeviceSurveyTest, MissingPartsAreOptional) {
    OfferServer(R"(,"Storage":{"@odata.id":"/s/1/st"})");
    OfferChassis(R"(,"NetworkAdapters":{"@odata.id":"/n"},"PCIeSlots":{"@odata.id":"/sl"})");
    for (const char* path : {"/s/1/st", "/n", "/sl"}) {
        peer_.On(std::string("GET ") + path, Status(404));
    }
    Read();
    EXPECT_FALSE(option_.run->IsPartial());
    EXPECT_FALSE(Source("network adapters").required);
}

}  // namespace
}  // namespace Vantix::redfish
