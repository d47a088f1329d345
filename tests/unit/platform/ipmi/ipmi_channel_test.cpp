#include "platform/ipmi/ipmi_channel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/fake_clock.h"
#include "support/fake_ipmitool.h"
#include "support/fru_builder.h"
#include "support/temporary_folder.h"

namespace Vantix::ipmi {
namespace {

using test_support::AFru;
using test_support::FakeIpmiTool;
using test_support::kDeviceIdAnswer;
using test_support::kDeviceIdLine;
using test_support::LocatorText;
using test_support::TemporaryFolder;
using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;
using transport::CommandEnd;
using transport::IpmiProblem;
using VantixConnection::ConnectOption;

constexpr const char* kSilent = "Get Auth Capabilities error\n";

class IpmiChannelTest : public testing::Test {
  protected:
    IpmiChannelTest() {
        option_.target_address = "127.0.0.1";
        option_.ipmi_interval_ms = 0;
        tool_.On(kDeviceIdLine, kDeviceIdAnswer);
    }

    IpmiChannel Channel() { return {option_, tool_, clock_, folder_.Path("")}; }

    ConnectOption option_;
    FakeIpmiTool tool_;
    transport::FakeClock clock_;
    TemporaryFolder folder_;
};

AFru::Bytes ModuleFru() {
    return AFru().Product({"Example", "DenseBox 9", "EX-9", "1.02", "EX 0001"}).Image();
}

AFru::Bytes LongFru() {
    const std::string filler(60, 'x');
    return AFru()
        .Chassis({filler, filler, filler, filler})
        .Board({filler, filler, filler, filler})
        .Product({"Example", "DenseBox 9", "EX-9", "1.02", "EX 0001"})
        .Image();
}

TEST_F(IpmiChannelTest, OpeningReadsTheDeviceInOneSession) {
    tool_.Fru(0, ModuleFru());
    IpmiChannel channel = Channel();
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(transport::FirmwareVersionText(channel.Device()), "9.08");
    EXPECT_EQ(channel.MainFru().product_name, "DenseBox 9");
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiChannelTest, LongFruIsReadToItsEnd) {
    tool_.Fru(0, LongFru());
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    EXPECT_EQ(channel.MainFru().product_serial_number, "EX 0001");
    EXPECT_LE(tool_.commands.size(), 4U);
}

TEST_F(IpmiChannelTest, FruThatCountsInWordsIsRead) {
    tool_.Fru(0, LongFru(), true);
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    EXPECT_EQ(channel.MainFru().product_serial_number, "EX 0001");
}

TEST_F(IpmiChannelTest, EachAnswerIsFetchedOnce) {
    tool_.Fru(0, LongFru()).On("sdr elist fru", LocatorText("PSU1", "10.1", "01"));
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    (void)channel.MainFru();
    (void)channel.FruDevices();
    (void)channel.Components();
    const std::size_t before = tool_.commands.size();
    (void)channel.MainFru();
    (void)channel.FruDevices();
    (void)channel.Components();
    EXPECT_EQ(tool_.commands.size(), before);
}

TEST_F(IpmiChannelTest, MachineWithoutFruIsStillOpened) {
    IpmiChannel channel = Channel();
    EXPECT_FALSE(channel.Open());
    EXPECT_TRUE(channel.MainFru().IsEmpty());
}

TEST_F(IpmiChannelTest, DeviceThatRefusesGetDeviceIdIsNotUsable) {
    tool_.On(kDeviceIdLine, "");
    EXPECT_EQ(Channel().Open().problem, IpmiProblem::kOther);
}

TEST_F(IpmiChannelTest, BusyDeviceIsAskedAgainAndThenGivenUp) {
    tool_.On(kDeviceIdLine, "");
    tool_.RefuseWith("0xc0");
    EXPECT_EQ(Channel().Open().problem, IpmiProblem::kBusy);
    EXPECT_THAT(tool_.commands, SizeIs(4));
}

TEST_F(IpmiChannelTest, DeviceThatBecomesReadyIsRead) {
    tool_.On(kDeviceIdLine, "");
    tool_.RefuseWith("0xd2");
    tool_.on_run = [this] {
        if (tool_.commands.size() == 2) tool_.On(kDeviceIdLine, kDeviceIdAnswer);
    };
    EXPECT_FALSE(Channel().Open());
    EXPECT_THAT(tool_.commands, SizeIs(2));
}

TEST_F(IpmiChannelTest, RefusedLoginSpendsTheBudgetOfTheRun) {
    tool_.FailNext("> RAKP 2 HMAC is invalid\n");
    EXPECT_EQ(Channel().Open().problem, IpmiProblem::kAuthentication);
    EXPECT_FALSE(option_.run->MayTryLogin());
}

TEST_F(IpmiChannelTest, OtherFailuresDoNotSpendTheBudget) {
    tool_.FailNext(kSilent);
    EXPECT_TRUE(Channel().Open());
    EXPECT_TRUE(option_.run->MayTryLogin());
}

TEST_F(IpmiChannelTest, SilentBmcIsNotAskedAgainInTheSameRun) {
    tool_.FailNext(kSilent);
    EXPECT_TRUE(Channel().Open());
    EXPECT_EQ(Channel().Open().problem, IpmiProblem::kNoAnswer);
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiChannelTest, LocatedDevicesAreReadWithOneFurtherSession) {
    tool_.Fru(1, AFru().Product({"PowerCo", "PSU 2000W"}).Image())
        .Fru(2, AFru().Product({"PowerCo", "PSU 3000W"}).Image())
        .On("sdr elist fru", LocatorText("PSU1", "10.1", "01") + LocatorText("PSU2", "10.2", "02"));
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    const auto& devices = channel.FruDevices();
    ASSERT_THAT(devices, SizeIs(2));
    EXPECT_EQ(devices[0].locator.name, "PSU1");
    EXPECT_EQ(devices[0].data.product_name, "PSU 2000W");
    EXPECT_EQ(devices[1].data.product_name, "PSU 3000W");
    EXPECT_THAT(tool_.commands, SizeIs(3));
}

TEST_F(IpmiChannelTest, DeviceThatIsNotPresentIsNoFailure) {
    tool_.Fru(2, AFru().Product({"PowerCo", "PSU 3000W"}).Image())
        .On("sdr elist fru", LocatorText("PSU1", "10.1", "01") + LocatorText("PSU2", "10.2", "02"));
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    ASSERT_THAT(channel.FruDevices(), SizeIs(1));
    EXPECT_FALSE(channel.LastFailure());
}

TEST_F(IpmiChannelTest, ControllersOwnDeviceIsNotListedAgain) {
    tool_.Fru(0, ModuleFru()).On("sdr elist fru", LocatorText("Module", "7.1", "00"));
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    EXPECT_THAT(channel.FruDevices(), IsEmpty());
}

TEST_F(IpmiChannelTest, SilenceAfterOpeningCostsWhatItWouldHaveTold) {
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    tool_.FailNext(kSilent);
    EXPECT_THAT(channel.FruDevices(), IsEmpty());
    EXPECT_EQ(channel.LastFailure().problem, IpmiProblem::kNoAnswer);
}

TEST_F(IpmiChannelTest, ComponentsOfHpmAreReadWhereTheBmcHasThem) {
    tool_.On("raw 0x2c 0x2e 0x00", " 00 00 3d 01 02 03 04 05\n")
        .On("raw 0x2c 0x2f 0x00 0x00 0x02", " 00 42 4f 4f 54 00 00 00 00 00 00 00 00\n")
        .On("raw 0x2c 0x2f 0x00 0x00 0x01", " 00 02 17 00 00 00 01\n")
        .On("raw 0x2c 0x2f 0x00 0x02 0x01", " 00 03 05 00 00 00 00\n");
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    const auto& components = channel.Components();
    ASSERT_THAT(components, SizeIs(2));
    EXPECT_EQ(components[0].description, "BOOT");
    EXPECT_EQ(components[0].version, "2.17");
    EXPECT_EQ(components[1].number, 2);
    EXPECT_EQ(components[1].description, "");
}

TEST_F(IpmiChannelTest, ControllerWithoutHpmIsNotAskedForComponents) {
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    EXPECT_THAT(channel.Components(), IsEmpty());
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiChannelTest, LocalBmcWithoutDeviceNodeStartsNothing) {
    option_.target_address.clear();
    EXPECT_EQ(Channel().Open().problem, IpmiProblem::kNoDevice);
    EXPECT_THAT(tool_.commands, IsEmpty());
}

TEST_F(IpmiChannelTest, LocalBmcIsAskedThroughItsDeviceNode) {
    option_.target_address.clear();
    std::filesystem::create_directories(folder_.Path("dev/ipmi"));
    folder_.Write("dev/ipmi/0", "");
    EXPECT_FALSE(Channel().Open());
    EXPECT_EQ(tool_.ValueOf(0, "-I"), "open");
}

TEST_F(IpmiChannelTest, LoginIsNeverInTheArguments) {
    option_.password = "invented-pass";
    option_.user = "operator";
    IpmiChannel channel = Channel();
    ASSERT_FALSE(channel.Open());
    for (const auto& command : tool_.commands) {
        EXPECT_THAT(command.arguments, testing::Not(Contains(testing::HasSubstr("invented-pass"))));
        EXPECT_THAT(command.passed_texts, Contains("invented-pass"));
    }
}

TEST_F(IpmiChannelTest, ConnectionOfAnotherKindHasNoIpmiChannel) {
    VantixConnection::ConnectionInfo connection;
    connection.connect_case = VantixConnection::kConnectCaseRest;
    connection.channel = std::make_shared<int>(7);
    EXPECT_EQ(IpmiChannel::Of(connection), nullptr);
}

TEST_F(IpmiChannelTest, RemoteConnectionWithoutChannelIsNotGuessed) {
    VantixConnection::ConnectionInfo connection;
    connection.connect_case = VantixConnection::kConnectCaseIpmi;
    connection.host = "127.0.0.1";
    EXPECT_EQ(IpmiChannel::Of(connection), nullptr);
}

}  // namespace
}  // namespace Vantix::ipmi
