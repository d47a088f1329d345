// What the families tell over a real IPMI connection.
#include "integration/platform/ipmi/ipmi_test_base.h"
#include "platform/bmc_type/bmc_type.h"
#include "platform/enclosure/enclosure.h"
#include "platform/identities/identities.h"
#include "platform/system_info/system_info.h"

namespace ipmi_tests {
namespace {

using testing::SizeIs;

class IpmiInventoryTest : public IpmiSimulatorTest {
  protected:
    void SetUp() override {
        IpmiSimulatorTest::SetUp();
        if (IsSkipped()) return;
        const TarselResult result = FetchIPMIConnection(option_, connection_);
        ASSERT_TRUE(result.IsSucceed()) << result;
    }

    ConnectionInfo connection_;
};

TEST_F(IpmiInventoryTest, MachineTypeAndSerialNumberComeFromTheFru) {
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(connection_, mt_sn), SUCCEED);
    EXPECT_EQ(mt_sn.first, "Example DE200");
    EXPECT_EQ(mt_sn.second, "EX DE 0001");
}

TEST_F(IpmiInventoryTest, WorkingBmcHasAType) {
    int type = 0;
    EXPECT_EQ(Vantix::Agentless::OssaTypeAcquire(connection_).GetOssaType(type), SUCCEED);
    EXPECT_EQ(Vantix::Agentless::OssaTypeAcquire::OssaTypeToString(type), "BMC");
}

TEST_F(IpmiInventoryTest, FirmwareListHoldsBmcAndFruVersions) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> list(1);
    Vantix::xFirmwareInventory inventory(connection_);
    EXPECT_EQ(inventory.GetXFWSoftwareIdentity(list), Vantix::INVENTORY_SUCCESS);
    ASSERT_THAT(list, SizeIs(5));  // appended to the one that was there
    EXPECT_EQ(list[1].SoftwareID, "BMC");
    EXPECT_EQ(list[1].VersionString, "9.08");
    EXPECT_EQ(list[2].VersionString, "1.02");
    EXPECT_EQ(list[3].Name, "PSU1");
    EXPECT_EQ(list[4].VersionString, "2.06");
    EXPECT_EQ(list[4].AssociatedAdapterSlot, "2");
}

TEST_F(IpmiInventoryTest, EnclosureModuleTellsItsFacts) {
    Vantix::VeskInventory inventory(connection_);
    std::string text;
    EXPECT_EQ(inventory.GetMachineType(text), Vantix::VESK_INVENTORY_SUCCESS);
    EXPECT_EQ(text, "Example DE200");
    EXPECT_EQ(inventory.GetSerialNumber(text), Vantix::VESK_INVENTORY_SUCCESS);
    EXPECT_EQ(text, "EX DE 0001");
    EXPECT_EQ(inventory.GetFirmwareVersion(text), Vantix::VESK_INVENTORY_SUCCESS);
    EXPECT_EQ(text, "9.08");
}

TEST_F(IpmiInventoryTest, PowerSuppliesAreListedInTheOrderOfTheirRecords) {
    std::vector<PSUFwInfo> list;
    EXPECT_EQ(Vantix::VeskInventory(connection_).GetPSUFwInfo(list),
              Vantix::VESK_INVENTORY_SUCCESS);
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].Name, "PSU1");
    EXPECT_EQ(list[0].SoftwareId, "EX-PN-PSU20");
    EXPECT_EQ(list[0].Version, "2.05");
    EXPECT_EQ(list[0].SlotNum, "1");
    EXPECT_EQ(list[0].Reserved, "Example");
    EXPECT_EQ(list[1].Version, "2.06");
    EXPECT_EQ(list[1].SlotNum, "2");
}

TEST(IpmiInventoryFailureTest, ConnectionOfNoKindTellsNothing) {
    ConnectionInfo connection;
    connection.connect_case = Vantix::VantixConnection::kConnectCaseIpmi;
    connection.host = "127.0.0.1";
    std::string text = "left over";
    EXPECT_EQ(Vantix::VeskInventory(connection).GetMachineType(text),
              Vantix::VESK_INVENTORY_FAILED);
    EXPECT_EQ(text, "");
    std::vector<PSUFwInfo> supplies;
    EXPECT_EQ(Vantix::VeskInventory(connection).GetPSUFwInfo(supplies),
              Vantix::VESK_INVENTORY_FAILED);
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> list;
    EXPECT_EQ(Vantix::xFirmwareInventory(connection).GetXFWSoftwareIdentity(list),
              Vantix::INVENTORY_FAILED);
    int type = 7;
    EXPECT_NE(Vantix::Agentless::OssaTypeAcquire(connection).GetOssaType(type), SUCCEED);
    EXPECT_EQ(type, 0);
}

}  // namespace
}  // namespace ipmi_tests
