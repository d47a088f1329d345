// What an in-band scan learns before it inventories: the real families over an invented server and
// its simulated BMC.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "bmc_simulator/bmc_simulator.h"
#include "common/result/result_codes.h"
#include "service/update_scan_service/detail/target_system_info.h"
#include "support/smbios_builder.h"
#include "support/system_tree.h"

namespace service::detail {
namespace {

using simulators::BmcSimulator;
using test_support::AnSmbiosTable;
using test_support::HostInterfaceFields;
using test_support::SystemTree;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

simulators::BmcOptions RackServer() {
    simulators::BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/rack-server";
    return options;
}

class InbandSystemInfoTest : public testing::Test {
  protected:
    InbandSystemInfoTest() {
        tree_.File("/etc/os-release", "ID=exampleos\nVERSION_ID=\"9.4\"\n");
        tree_.File("/proc/sys/kernel/arch", "x86_64\n");
        option_.connect_option.connect_mode = Vantix::VantixConnection::kConnectModeInbandBmc;
        option_.connect_option.system_root = tree_.Root();
    }

    void TellAddress(const BmcSimulator& bmc) {
        HostInterfaceFields fields;
        fields.service_address = std::string("\x7f\0\0\x01", 4);
        fields.service_port = bmc.Port();
        tree_.File("/sys/firmware/dmi/tables/DMI", AnSmbiosTable().HostInterface(fields).Bytes());
        option_.connect_option.ca_file = bmc.CaFile();
    }
    void NameUser(const BmcSimulator& bmc) {
        option_.connect_option.user = bmc.Options().user;
        option_.connect_option.password = bmc.Options().password;
    }
    TarselResult Acquire() {
        const Vantix::VantixConnection::ActiveRun run(option_.connect_option);
        return AcquireTargetSystemInfo(option_, info_);
    }

    SystemTree tree_;
    UpdateScanOption option_;
    TargetSystemInfo info_;
};

TEST_F(InbandSystemInfoTest, BmcThatTheFirmwareTellsOfIsAsked) {
    const BmcSimulator bmc(RackServer());
    TellAddress(bmc);
    NameUser(bmc);
    EXPECT_TRUE(Acquire().IsSucceed());
    EXPECT_EQ(info_.os_arch.first, "exampleos9");
    EXPECT_THAT(info_.mt_sn.first, Not(IsEmpty()));
    EXPECT_THAT(info_.bmc_type, Not(IsEmpty()));
    EXPECT_TRUE(info_.redfish_supported);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST_F(InbandSystemInfoTest, RefusedUserEndsTheWalk) {
    const BmcSimulator bmc(RackServer());
    TellAddress(bmc);
    NameUser(bmc);
    option_.connect_option.password = "invented-wrong";
    EXPECT_EQ(Acquire().code, AUTHENTICATION_FAILED);
}

TEST_F(InbandSystemInfoTest, WithoutUserAndDeviceTheWalkEndsBeforeAnythingIsSent) {
    const BmcSimulator bmc(RackServer());
    TellAddress(bmc);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("--user"));
    EXPECT_EQ(bmc.Counts().requests, 0);
}

TEST_F(InbandSystemInfoTest, WithoutAnyBmcTheMissingDeviceIsToldFirst) {
    tree_.File("/sys/class/dmi/id/product_name", "Rack 1\n");
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("no usable IPMI device"));
    EXPECT_EQ(info_.mt_sn.first, "Rack 1");
}

TEST_F(InbandSystemInfoTest, DriversAloneNeedNoBmc) {
    tree_.File("/sys/class/dmi/id/product_name", "Rack 1\n");
    option_.scan_type = "dd";
    EXPECT_TRUE(Acquire().IsSucceed());
    EXPECT_EQ(info_.mt_sn.first, "Rack 1");
    EXPECT_EQ(info_.bmc_type, "Tavro");
}

TEST_F(InbandSystemInfoTest, DriversAloneOnANamelessMachineFail) {
    option_.scan_type = "dd";
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Failed to get system info");
}

}  // namespace
}  // namespace service::detail
