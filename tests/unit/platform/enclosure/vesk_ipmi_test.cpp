#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/enclosure/enclosure.h"
#include "platform/enclosure/vesk_forms.h"
#include "platform/ipmi/ipmi_channel.h"
#include "support/fake_clock.h"
#include "support/fake_ipmitool.h"
#include "support/fru_builder.h"

namespace Vantix::enclosure {
namespace {

using test_support::AFru;
using test_support::FakeIpmiTool;
using test_support::LocatorText;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kLocators = "sdr elist fru";

class VeskIpmiTest : public testing::Test {
  protected:
    VeskIpmiTest() {
        option_.target_address = "127.0.0.1";
        option_.ipmi_interval_ms = 0;
        tool_.On(test_support::kDeviceIdLine, test_support::kDeviceIdAnswer);
    }

    std::shared_ptr<ipmi::IpmiChannel> Open() {
        auto channel = std::make_shared<ipmi::IpmiChannel>(option_, tool_, clock_);
        EXPECT_FALSE(channel->Open());
        return channel;
    }
    static VantixConnection::ConnectionInfo InfoOf(std::shared_ptr<ipmi::IpmiChannel> channel) {
        VantixConnection::ConnectionInfo info;
        info.connect_case = VantixConnection::kConnectCaseIpmi;
        info.host = "127.0.0.1";
        info.channel = std::move(channel);
        return info;
    }
    std::vector<PSUFwInfo> Supplies() { return PowerSuppliesOverIpmi(*Open()).list; }

    VantixConnection::ConnectOption option_;
    FakeIpmiTool tool_;
    transport::FakeClock clock_;
};

TEST_F(VeskIpmiTest, FactsComeFromFruAndDeviceId) {
    tool_.Fru(0, AFru().Product({"Example", "DE200", "EX-PN", "1.02", "EX 1"}).Image());
    const ModuleFacts facts = FactsOverIpmi(*Open());
    EXPECT_EQ(facts.machine_type, "DE200");
    EXPECT_EQ(facts.serial_number, "EX 1");
    EXPECT_EQ(facts.firmware_version, "9.08");
}

TEST_F(VeskIpmiTest, ModuleWithoutFruStillHasItsFirmware) {
    VeskInventory inventory(InfoOf(Open()));
    std::string text = "left over";
    EXPECT_EQ(inventory.GetMachineType(text), VESK_INVENTORY_FAILED);
    EXPECT_EQ(text, "");
    EXPECT_EQ(inventory.GetSerialNumber(text), VESK_INVENTORY_FAILED);
    EXPECT_EQ(inventory.GetFirmwareVersion(text), VESK_INVENTORY_SUCCESS);
    EXPECT_EQ(text, "9.08");
}

TEST_F(VeskIpmiTest, OtherDevicesAreNoPowerSupplies) {
    tool_.Fru(1, AFru().Product({"Example", "Fan board"}).Image())
        .On(kLocators, LocatorText("Fan 1", "29.1", "01"));
    EXPECT_THAT(Supplies(), IsEmpty());
}

TEST_F(VeskIpmiTest, SupplyWithoutVersionIsListedWithoutOne) {
    tool_.Fru(1, AFru().Product({"Example", "EX-PSU"}).Image())
        .On(kLocators, LocatorText("PSU1", "10.1", "01"));
    const auto supplies = Supplies();
    ASSERT_THAT(supplies, SizeIs(1));
    EXPECT_EQ(supplies[0].Version, "");
    EXPECT_EQ(supplies[0].SoftwareId, "EX-PSU");
}

TEST_F(VeskIpmiTest, SupplyThatNamesOnlyItsBoardIsListedByIt) {
    tool_.Fru(1, AFru().Board({"Example", "PS board", "EXB1", "EX-BPN"}).Image())
        .On(kLocators, LocatorText("PSU1", "10.0", "01"));
    const auto supplies = Supplies();
    ASSERT_THAT(supplies, SizeIs(1));
    EXPECT_EQ(supplies[0].SoftwareId, "EX-BPN");
    EXPECT_EQ(supplies[0].Reserved, "Example");
    EXPECT_EQ(supplies[0].SlotNum, "");
}

TEST_F(VeskIpmiTest, EmptyBayIsNoSupplyAndNoFailure) {
    tool_.On(kLocators, LocatorText("PSU1", "10.1", "01"));
    std::vector<PSUFwInfo> supplies;
    VeskInventory inventory(InfoOf(Open()));
    EXPECT_EQ(inventory.GetPSUFwInfo(supplies), VESK_INVENTORY_SUCCESS);
    EXPECT_THAT(supplies, IsEmpty());
}

TEST_F(VeskIpmiTest, ListThatWasBrokenOffIsDeliveredWithAFailure) {
    tool_.Fru(1, AFru().Product({"Example", "EX-PSU"}).Image())
        .On(kLocators, LocatorText("PSU1", "10.1", "01"));
    const auto channel = Open();
    tool_.BreakNextAfter(1, transport::CommandEnd::kTimedOut);
    std::vector<PSUFwInfo> supplies;
    EXPECT_EQ(VeskInventory(InfoOf(channel)).GetPSUFwInfo(supplies), VESK_INVENTORY_FAILED);
    EXPECT_THAT(supplies, SizeIs(1));
}

TEST_F(VeskIpmiTest, SuppliesAreAppendedToTheList) {
    tool_.Fru(1, AFru().Product({"Example", "EX-PSU"}).Image())
        .On(kLocators, LocatorText("PSU1", "10.1", "01"));
    std::vector<PSUFwInfo> supplies(1);
    EXPECT_EQ(VeskInventory(InfoOf(Open())).GetPSUFwInfo(supplies), VESK_INVENTORY_SUCCESS);
    EXPECT_THAT(supplies, SizeIs(2));
}

}  // namespace
}  // namespace Vantix::enclosure
