// Chassis modules and their switches, over CIM.
#include <gtest/gtest.h>

#include "cim_machine.h"
#include "common/result/result_codes.h"
#include "platform/system_info/system_info.h"

namespace Vantix::VantixConnection {
namespace {

std::vector<std::string> Ids(const std::vector<TolvInfo>& list) {
    std::vector<std::string> ids;
    for (const TolvInfo& info : list) ids.push_back(info.SoftwareId);
    return ids;
}

class CimChassisTest : public ::testing::Test {
  protected:
    std::vector<TolvInfo> Module(const simulators::BmcSimulator& machine) {
        std::vector<TolvInfo> list;
        const auto connection = Connect(OptionFor(machine, kConnectModeChassis));
        EXPECT_EQ(SystemInfoScan::GetTolvSoftwareIdentity(connection, list), SUCCEED);
        return list;
    }
    int Switch(const std::string& bay, std::vector<SwitchInfo>& list) {
        const auto connection = Connect(OptionFor(switches_, kConnectModeIoSwitch));
        return SystemInfoScan::GetSwitchSoftwareIdentity(connection, bay, list);
    }

    simulators::BmcSimulator module_{Machine("chassis-module")};
    simulators::BmcSimulator switches_{Machine("chassis-switch")};
};

TEST_F(CimChassisTest, ModuleHasItsThreeInstalledComponents) {
    EXPECT_EQ(Ids(Module(module_)), (std::vector<std::string>{"TOLV", "TOLV-BACKUP", "EX-CPLD"}));
}

TEST_F(CimChassisTest, EveryRecordCarriesTypeAndSerialOfTheChassis) {
    for (const TolvInfo& info : Module(module_)) {
        EXPECT_EQ(info.MachineType, "EXBC-8000");
        EXPECT_EQ(info.SerialNumber, "EXBC00001");
    }
}

TEST_F(CimChassisTest, RecordIsFilledFromTheIdentity) {
    const auto list = Module(module_);

    ASSERT_FALSE(list.empty());
    EXPECT_EQ(list[0].Version, "2.14");
    EXPECT_EQ(list[0].Classification, "10");
    EXPECT_EQ(list[0].Name, "Management Module");
    EXPECT_EQ(list[0].Description, "Management Module firmware");
}

TEST_F(CimChassisTest, VersionIsBuiltFromItsNumbersWhereTheTextIsNull) {
    const auto list = Module(module_);

    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].Version, "1.7.3.0");
}

TEST_F(CimChassisTest, FirmwareOfSwitchesIsNotTheModules) {
    EXPECT_EQ(Ids(Module(switches_)).size(), 3U);
}

TEST_F(CimChassisTest, SwitchOfTheBayHasItsTwoComponents) {
    std::vector<SwitchInfo> list;

    EXPECT_EQ(Switch("2", list), SUCCEED);

    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].Version, "1.02");
    EXPECT_EQ(list[1].Version, "8.4.1");
    EXPECT_EQ(list[0].MachineType, "EXSW-48");
    EXPECT_EQ(list[0].SerialNumber, "EXSW00002");
}

TEST_F(CimChassisTest, BayTwelveIsNotBayTwo) {
    std::vector<SwitchInfo> list;

    EXPECT_EQ(Switch("12", list), SUCCEED);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].SerialNumber, "EXSW00012");
}

TEST_F(CimChassisTest, EmptyBayIsAFailureWithoutRecords) {
    for (const char* bay : {"0", "7", "", "-1", "x"}) {
        std::vector<SwitchInfo> list;
        EXPECT_EQ(Switch(bay, list), NO_APPLICABLE_HARDWARE) << bay;
        EXPECT_TRUE(list.empty());
    }
}

TEST_F(CimChassisTest, RequestsAreAsManyForOneSwitchAsForTheModule) {
    std::vector<SwitchInfo> list;
    static_cast<void>(Switch("2", list));
    const int of_switch = switches_.Counts().requests;
    switches_.ResetCounts();
    static_cast<void>(Module(switches_));

    EXPECT_EQ(of_switch, 9);
    EXPECT_EQ(switches_.Counts().requests, 9);
    EXPECT_EQ(switches_.Counts().connections, 1);
}

TEST_F(CimChassisTest, BrokenInventoryIsAnErrorOfTheModule) {
    module_.SetFaults({FaultOn("CIM_SoftwareIdentity", simulators::Fault::Kind::kBadJson)});
    std::vector<TolvInfo> list;

    const auto connection = Connect(OptionFor(module_, kConnectModeChassis));

    EXPECT_EQ(SystemInfoScan::GetTolvSoftwareIdentity(connection, list), TOLV_INTERNAL_ERROR);
    EXPECT_TRUE(list.empty());
}

TEST_F(CimChassisTest, ConnectionOfAnotherKindIsRefused) {
    std::vector<TolvInfo> modules;
    std::vector<SwitchInfo> switches;

    EXPECT_EQ(SystemInfoScan::GetTolvSoftwareIdentity(ConnectionInfo(), modules),
              CONNECTION_FAILED);
    EXPECT_EQ(SystemInfoScan::GetSwitchSoftwareIdentity(ConnectionInfo(), "1", switches),
              CONNECTION_FAILED);
}

}  // namespace
}  // namespace Vantix::VantixConnection
