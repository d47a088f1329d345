// The machine's own BMC over Redfish: found by the host interface record, talked to over real TLS.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/result/result_codes.h"
#include "integration/platform/redfish/bmc_scan.h"
#include "support/smbios_builder.h"
#include "support/system_tree.h"

namespace Vantix::redfish {
namespace {

using simulators::BmcSimulator;
using test_support::AnSmbiosTable;
using test_support::HostInterfaceFields;
using test_support::SystemTree;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using VantixConnection::ConnectOption;

class InbandScanTest : public testing::Test {
  protected:
    // As a user writes it who gives no address: that of the simulator stands in the record alone.
    ConnectOption OwnBmc() {
        HostInterfaceFields fields;
        fields.service_address = std::string("\x7f\0\0\x01", 4);
        fields.service_port = bmc_.Port();
        tree_.File("/sys/firmware/dmi/tables/DMI", AnSmbiosTable().HostInterface(fields).Bytes());
        ConnectOption option = OptionFor(bmc_);
        option.connect_mode = VantixConnection::kConnectModeInbandBmc;
        option.target_address.clear();
        option.port = 0;
        option.system_root = tree_.Root();
        return option;
    }

    SystemTree tree_;
    BmcSimulator bmc_{Scenario("rack-server")};
};

TEST_F(InbandScanTest, BmcIsFoundAndRead) {
    const ScanOutcome outcome = Scan(OwnBmc());
    EXPECT_TRUE(outcome.Succeeded()) << outcome.connection;
    EXPECT_THAT(outcome.machine_type.first, Not(IsEmpty()));
    EXPECT_THAT(outcome.identities, Not(IsEmpty()));
}

TEST_F(InbandScanTest, AccountThatTheBmcGaveIsUsed) {
    ConnectOption option = OwnBmc();
    option.run->KeepAccount({option.user, option.password});
    option.user.clear();
    option.password.clear();
    EXPECT_TRUE(Scan(option).Succeeded());
}

TEST_F(InbandScanTest, CertificateIsCheckedAsAnywhere) {
    ConnectOption option = OwnBmc();
    option.ca_file.clear();
    EXPECT_EQ(Scan(option).connection.code, VERIFY_CERTIFICATE_FAILED);
}

TEST_F(InbandScanTest, FailureSaysWhereTheAddressComesFrom) {
    ConnectOption option = OwnBmc();
    option.ca_file.clear();
    EXPECT_FALSE(Scan(option).connection.IsSucceed());
    EXPECT_THAT(option.run->Notices(), Contains(HasSubstr("comes from its firmware")));
}

TEST_F(InbandScanTest, GivenAddressIsNotExplained) {
    ConnectOption option = OptionFor(bmc_);
    option.connect_mode = VantixConnection::kConnectModeInbandBmc;
    option.ca_file.clear();
    EXPECT_FALSE(Scan(option).connection.IsSucceed());
    EXPECT_THAT(option.run->Notices(), Not(Contains(HasSubstr("comes from its firmware"))));
}

}  // namespace
}  // namespace Vantix::redfish
