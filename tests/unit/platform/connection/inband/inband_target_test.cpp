#include "platform/connection/inband_target.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "support/smbios_builder.h"
#include "support/system_tree.h"
#include "support/unprivileged_user.h"

namespace Vantix::VantixConnection {
namespace {

using test_support::AnSmbiosTable;
using test_support::HostInterfaceFields;
using test_support::SystemTree;
using testing::AllOf;
using testing::HasSubstr;

const std::string kTable = "/sys/firmware/dmi/tables/DMI";
const std::string kLoopback("\x7f\0\0\x01", 4);
const std::string kLinkLocal = std::string("\xfe\x80", 2) + std::string(13, '\0') + "\x01";

HostInterfaceFields At(const std::string& address, int port = 8443) {
    HostInterfaceFields fields;
    fields.service_address = address;
    fields.service_port = port;
    return fields;
}

class InbandAddressTest : public testing::Test {
  protected:
    InbandAddressTest() {
        option_.connect_mode = kConnectModeInbandBmc;
        option_.system_root = tree_.Root();
    }

    void Table(const AnSmbiosTable& table) { tree_.File(kTable, table.Bytes()); }

    SystemTree tree_;
    ConnectOption option_;
};

TEST_F(InbandAddressTest, HostInterfaceTellsAddressAndPort) {
    Table(AnSmbiosTable().HostInterface(At(kLoopback)));
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "127.0.0.1");
    EXPECT_EQ(option_.port, 8443);
}

TEST_F(InbandAddressTest, GivenPortStays) {
    Table(AnSmbiosTable().HostInterface(At(kLoopback)));
    option_.port = 9443;
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.port, 9443);
}

TEST_F(InbandAddressTest, GivenAddressStaysAndNothingIsRead) {
    option_.target_address = "bmc.example.invalid";
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "bmc.example.invalid");
    EXPECT_EQ(option_.port, 0);
}

TEST_F(InbandAddressTest, ModesOfThisMachineAloneAreFilledIn) {
    Table(AnSmbiosTable().HostInterface(At(kLoopback)));
    for (int mode = 0; mode <= 17; ++mode) {
        ConnectOption option = option_;
        option.connect_mode = mode;
        EXPECT_TRUE(FillInbandAddress(option).IsSucceed());
        const bool is_own = mode == 1 || mode == 9 || mode == 13 || mode == 15;
        EXPECT_EQ(option.target_address, is_own ? "127.0.0.1" : "") << mode;
        EXPECT_EQ(IsInband(option), is_own) << mode;
    }
}

TEST_F(InbandAddressTest, FirstRecordThatTellsAnAddressCounts) {
    Table(AnSmbiosTable()
              .HostInterface(At(""))
              .HostInterface(At(std::string(15, '\0') + "\x01", 443))
              .HostInterface(At(kLoopback)));
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "::1");
    EXPECT_EQ(option_.port, 443);
}

TEST_F(InbandAddressTest, HostNameStandsInForTheAddress) {
    HostInterfaceFields fields = At("");
    fields.host_name = "bmc.example.invalid";
    Table(AnSmbiosTable().HostInterface(fields));
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "bmc.example.invalid");
}

TEST_F(InbandAddressTest, HostNameThatIsNoneIsNotUsed) {
    for (const char* name : {"user@host", "host/path", "two words", "host:443", "https://host"}) {
        HostInterfaceFields fields = At("");
        fields.host_name = name;
        Table(AnSmbiosTable().HostInterface(fields));
        ConnectOption option = option_;
        EXPECT_EQ(FillInbandAddress(option).code, CONNECTION_FAILED) << name;
        EXPECT_EQ(option.target_address, "");
    }
}

TEST_F(InbandAddressTest, AddressOfOneLinkGetsTheNetworkDeviceWithTheToldMac) {
    HostInterfaceFields fields = At(kLinkLocal);
    fields.device = std::string("\x04\x0d\x34\x12\x78\x56\0\x02\0\0\0\0\x07", 13);
    Table(AnSmbiosTable().HostInterface(fields));
    tree_.File("/sys/class/net/eth0/address", "02:00:00:00:00:01\n");
    tree_.File("/sys/class/net/usb0/address", "02:00:00:00:00:07\n");
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "fe80::1%usb0");
}

TEST_F(InbandAddressTest, AddressOfAnUnknownLinkIsPassedOver) {
    Table(AnSmbiosTable().HostInterface(At(kLinkLocal)).HostInterface(At(kLoopback)));
    tree_.File("/sys/class/net/lo/address", "\n");
    EXPECT_TRUE(FillInbandAddress(option_).IsSucceed());
    EXPECT_EQ(option_.target_address, "127.0.0.1");
}

TEST_F(InbandAddressTest, WithoutRecordTheUserIsAskedForTheAddress) {
    Table(AnSmbiosTable().System({"Example Maker", "Rack 1"}));
    const TarselResult result = FillInbandAddress(option_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message,
                AllOf(HasSubstr("no Redfish host interface"), HasSubstr("give the BMC's address")));
}

TEST_F(InbandAddressTest, MissingAddressIsSaidOnceAlsoWhereAnotherFailureIsReported) {
    const TarselResult result = FillInbandAddress(option_);
    EXPECT_EQ(FillInbandAddress(option_).message, result.message);
    EXPECT_EQ(option_.run->Notices(), std::vector<std::string>{result.message});
}

TEST_F(InbandAddressTest, ForbiddenTableAsksForRoot) {
    Table(AnSmbiosTable().HostInterface(At(kLoopback)));
    tree_.Forbid(kTable);
    const test_support::UnprivilegedUser user(tree_.Root());
    const TarselResult result = FillInbandAddress(option_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, AllOf(HasSubstr("as root"), HasSubstr("BMC's address")));
}

TEST_F(InbandAddressTest, TableOfTheActiveRunIsReadOnce) {
    Table(AnSmbiosTable().HostInterface(At(kLoopback)));
    const ActiveRun run(option_);
    ConnectOption first = option_;
    EXPECT_TRUE(FillInbandAddress(first).IsSucceed());
    Table(AnSmbiosTable());
    ConnectOption second = option_;
    EXPECT_TRUE(FillInbandAddress(second).IsSucceed());
    EXPECT_EQ(second.target_address, "127.0.0.1");
}

class InbandAccountTest : public InbandAddressTest {};

TEST_F(InbandAccountTest, GivenUserStays) {
    option_.user = "operator";
    option_.run->KeepAccount({"host1", "invented-pass"});
    EXPECT_TRUE(FillInbandAccount(option_).IsSucceed());
    EXPECT_EQ(option_.user, "operator");
    EXPECT_EQ(option_.password, "");
}

TEST_F(InbandAccountTest, OtherModesGetNoAccount) {
    option_.connect_mode = kConnectModeOobBmc;
    option_.run->KeepAccount({"host1", "invented-pass"});
    EXPECT_TRUE(FillInbandAccount(option_).IsSucceed());
    EXPECT_EQ(option_.user, "");
}

TEST_F(InbandAccountTest, AccountOfTheRunIsUsedAgain) {
    option_.run->KeepAccount({"host1", "invented-pass"});
    EXPECT_TRUE(FillInbandAccount(option_).IsSucceed());
    EXPECT_EQ(option_.user, "host1");
    EXPECT_EQ(option_.password, "invented-pass");
}

TEST_F(InbandAccountTest, WithoutDeviceThereIsNone) {
    const TarselResult result = FillInbandAccount(option_);
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("--user"));
    EXPECT_EQ(option_.user, "");
}

TEST_F(InbandAccountTest, RefusalIsSaidAloudWhereItIsNotTheResultOfTheScan) {
    static_cast<void>(FillInbandAccount(option_));
    EXPECT_THAT(option_.run->Notices(), testing::IsEmpty());
    option_.connect_mode = kConnectModeAmd;
    option_.run = std::make_shared<RunContext>();
    const TarselResult result = FillInbandAccount(option_);
    EXPECT_THAT(option_.run->Notices(), testing::ElementsAre(result.message));
}

TEST_F(InbandAccountTest, RefusalIsKeptForTheRun) {
    const TarselResult first = FillInbandAccount(option_);
    option_.run->Cancel();  // asking again would be interrupted
    const TarselResult second = FillInbandAccount(option_);
    EXPECT_EQ(second.code, KCS_CONNECT_FAILED);
    EXPECT_EQ(second.message, first.message);
}

TEST_F(InbandAccountTest, InterruptionIsNotKeptAsARefusal) {
    option_.run->Cancel();
    EXPECT_EQ(FillInbandAccount(option_).code, INTERRUPTED_BY_USER);
    EXPECT_EQ(FillInbandAccount(option_).code, INTERRUPTED_BY_USER);
}

}  // namespace
}  // namespace Vantix::VantixConnection
