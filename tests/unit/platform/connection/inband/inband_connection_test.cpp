// What the connection functions decide for this machine's own BMC before anything is sent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "support/smbios_builder.h"
#include "support/system_tree.h"

namespace Vantix::VantixConnection {
namespace {

using test_support::AnSmbiosTable;
using test_support::HostInterfaceFields;
using test_support::SystemTree;
using testing::HasSubstr;
using testing::IsEmpty;

class InbandConnectionTest : public testing::Test {
  protected:
    InbandConnectionTest() {
        option_.connect_mode = kConnectModeInbandBmc;
        option_.system_root = tree_.Root();
    }

    void TellAddress() {
        HostInterfaceFields fields;
        fields.service_address = std::string("\x7f\0\0\x01", 4);
        tree_.File("/sys/firmware/dmi/tables/DMI", AnSmbiosTable().HostInterface(fields).Bytes());
    }

    SystemTree tree_;
    ConnectOption option_;
    std::vector<ConnectionInfo> list_{ConnectionInfo()};
};

TEST_F(InbandConnectionTest, WithoutAddressNeitherRedfishNorCimIsTried) {
    const TarselResult rest = GetRESTConnectionList(option_, list_);
    EXPECT_EQ(rest.code, CONNECTION_FAILED);
    EXPECT_THAT(rest.message, HasSubstr("give the BMC's address"));
    EXPECT_THAT(list_, IsEmpty());
    const TarselResult cim = FetchCIMConnectionList(option_, list_);
    EXPECT_EQ(cim.code, CONNECTION_FAILED);
    EXPECT_EQ(cim.message, rest.message);
}

TEST_F(InbandConnectionTest, WithoutUserAndDeviceRedfishIsRefused) {
    TellAddress();
    EXPECT_EQ(GetRESTConnectionList(option_, list_).code, KCS_CONNECT_FAILED);
    EXPECT_THAT(list_, IsEmpty());
}

TEST_F(InbandConnectionTest, WithoutUserCimIsNotTried) {
    TellAddress();
    option_.run->KeepAccount({"host1", "invented-pass"});
    const TarselResult result = FetchCIMConnectionList(option_, list_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("CIM on 127.0.0.1:5989 needs a user name"));
    EXPECT_TRUE(option_.run->MayTryLogin());
}

TEST_F(InbandConnectionTest, SpentLoginBudgetIsToldWithTheFoundAddress) {
    TellAddress();
    option_.run->LoginRefused("elsewhere");
    const TarselResult result = GetRESTConnectionList(option_, list_);
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("127.0.0.1:443"));
}

TEST_F(InbandConnectionTest, RecordedTreeHasNoIpmiDevice) {
    const TarselResult result = FetchIPMIConnectionList(option_, list_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("no usable IPMI device"));
    EXPECT_THAT(list_, IsEmpty());
}

TEST_F(InbandConnectionTest, WithoutUserIpmiGoesThroughTheDeviceAlsoWhereAnAddressIsGiven) {
    option_.target_address = "127.0.0.1";
    const TarselResult result = FetchIPMIConnectionList(option_, list_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("this machine's BMC"));
}

TEST_F(InbandConnectionTest, WithUserAndAddressIpmiGoesThroughTheNetwork) {
    option_.target_address = "127.0.0.1";
    option_.user = "operator";
    option_.password =
        std::string(21, 'x');  // refused before anything is sent, in the network only
    EXPECT_EQ(FetchIPMIConnectionList(option_, list_).code, IPMI_PASSWORD_TOO_LONG);
}

}  // namespace
}  // namespace Vantix::VantixConnection
