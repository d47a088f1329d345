#include "service/update_scan_service/detail/identity_conversion.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <sstream>
#include <string>

#include "support/builders.h"

namespace service::detail {
namespace {

using support::ADriver;
using support::AnIdentity;
using support::AnItem;

class IsAgentlessComponentTest : public testing::TestWithParam<const char*> {};

TEST_P(IsAgentlessComponentTest, EveryListedIdentifierIsOne) {
    EXPECT_TRUE(IsAgentlessComponent(GetParam()));
}

TEST_P(IsAgentlessComponentTest, LowerCaseIdentifierIsOneToo) {
    std::string lower = GetParam();
    for (char& letter : lower) letter = std::tolower(letter, std::locale::classic());
    EXPECT_TRUE(IsAgentlessComponent(lower));
}

// "HOLM-" and "_CPLD" continue the identifiers of the list on purpose.
TEST_P(IsAgentlessComponentTest, LongerIdentifierIsNone) {
    EXPECT_FALSE(IsAgentlessComponent(std::string(GetParam()) + "9"));
    EXPECT_FALSE(IsAgentlessComponent(std::string("9") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(List, IsAgentlessComponentTest,
                         testing::Values("OSSA", "OSSA-BACKUP", "OSSA2-BACKUP", "UEFI",
                                         "UEFI-BACKUP", "DIAGNOSTICS", "TAVRO", "TAVRO-BACKUP",
                                         "PYX", "RUSK", "KOFAR", "KOFEX", "QOVA", "YEM", "SWITCHES",
                                         "VESK3", "VESK3-INACTIVE", "TOLV", "BMC/H8", "BMC",
                                         "BMC-BACKUP", "CPLD", "FPGA", "ZIBE", "HOLM", "OSSA2",
                                         "VESK"));

TEST(AgentlessComponentRuleTest, BeginningsCountInAnyCase) {
    EXPECT_TRUE(IsAgentlessComponent("FPGA-IHFS"));
    EXPECT_TRUE(IsAgentlessComponent("fpga-ihfs-2"));
    EXPECT_TRUE(IsAgentlessComponent("FPGA-IHFGx"));
    EXPECT_TRUE(IsAgentlessComponent("Holm-7"));
}

TEST(AgentlessComponentRuleTest, BeginningInTheMiddleDoesNotCount) {
    EXPECT_FALSE(IsAgentlessComponent("X-FPGA-IHFS"));
    EXPECT_FALSE(IsAgentlessComponent("XHOLM-1"));
}

TEST(AgentlessComponentRuleTest, ShortenedBeginningDoesNotCount) {
    EXPECT_FALSE(IsAgentlessComponent("FPGA-IHF"));
}

TEST(AgentlessComponentRuleTest, EndingCountsInAnyCase) {
    EXPECT_TRUE(IsAgentlessComponent("MyAdapter_cpld"));
    EXPECT_TRUE(IsAgentlessComponent("_CPLD"));
}

TEST(AgentlessComponentRuleTest, EndingInTheMiddleDoesNotCount) {
    EXPECT_FALSE(IsAgentlessComponent("A_CPLD2"));
    EXPECT_FALSE(IsAgentlessComponent("ACPLD"));
}

TEST(AgentlessComponentRuleTest, EmptyIdentifierIsNone) {
    EXPECT_FALSE(IsAgentlessComponent(""));
}

TEST(AgentlessComponentRuleTest, BytesBeyondAsciiAreLeftAlone) {
    EXPECT_FALSE(IsAgentlessComponent("B\xC3\xB6MC"));
    EXPECT_TRUE(IsAgentlessComponent("\xFF\xC3_cpld"));
}

TEST(ConvertSoftwareIdentityTest, FieldsGoWhereTheyBelong) {
    const UpdateScanItem item = ConvertSoftwareIdentity(AnIdentity()
                                                            .Name("Adapter firmware")
                                                            .SoftwareId("NIC-FW")
                                                            .Version("4.2")
                                                            .Classifications("10")
                                                            .Description("An adapter")
                                                            .InstanceId("NIC.1")
                                                            .Slot("7")
                                                            .PldmSupported("0"));
    EXPECT_EQ(item.name, "Adapter firmware");
    EXPECT_EQ(item.softwareId, "NIC-FW");
    EXPECT_EQ(item.version, "4.2");
    EXPECT_EQ(item.classification, "10");
    EXPECT_EQ(item.description, "An adapter");
    EXPECT_EQ(item.instanceId, "NIC.1");
    EXPECT_EQ(item.slotNum, "7");
    EXPECT_EQ(item.pldm, "0");
    EXPECT_EQ(item.hasDevice, 1);
}

TEST(ConvertSoftwareIdentityTest, DisplayNameOfTheRecordIsNotTheItemsName) {
    const UpdateScanItem item =
        ConvertSoftwareIdentity(AnIdentity().Name("real").ElementName("display"));
    EXPECT_EQ(item.name, "real");
}

TEST(ConvertSoftwareIdentityTest, SlotTypeIsWrittenInDecimal) {
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SlotType(3)).slotType, "3");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SlotType(-12)).slotType, "-12");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity()).slotType, "0");
    EXPECT_EQ(
        ConvertSoftwareIdentity(AnIdentity().SlotType(std::numeric_limits<int>::min())).slotType,
        "-2147483648");
}

struct GroupingNumpunct : std::numpunct<char> {
    std::string do_grouping() const override { return "\3"; }
};

TEST(ConvertSoftwareIdentityTest, SlotTypeDoesNotFollowTheLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupingNumpunct));
    const std::string slot_type = ConvertSoftwareIdentity(AnIdentity().SlotType(12345)).slotType;
    std::locale::global(before);
    EXPECT_EQ(slot_type, "12345");
}

TEST(ConvertSoftwareIdentityTest, ListedIdentifierIsAgentlessWhateverTheRecordSays) {
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("tavro").PldmSupported("0")).pldm,
              "1");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("tavro")).pldm, "1");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("MyAdapter_cpld")).pldm, "1");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("FPGA-IHFSx")).pldm, "1");
}

TEST(ConvertSoftwareIdentityTest, OtherIdentifierPassesTheRecordsFlagThrough) {
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("NIC-FW").PldmSupported("true")).pldm,
              "true");
    EXPECT_EQ(ConvertSoftwareIdentity(AnIdentity().SoftwareId("NIC-FW")).pldm, "");
    EXPECT_EQ(
        ConvertSoftwareIdentity(AnIdentity().SoftwareId("FPGA-IHF").PldmSupported("Supported"))
            .pldm,
        "Supported");
}

TEST(ConvertDriverDataTest, FieldsGoWhereTheyBelong) {
    const UpdateScanItem item = ConvertDriverData(ADriver()
                                                      .Identifier("netdrv")
                                                      .Version("5.1")
                                                      .Description("A network driver")
                                                      .DevicePresent(2));
    EXPECT_EQ(item.softwareId, "netdrv");
    EXPECT_EQ(item.name, "netdrv");
    EXPECT_EQ(item.version, "5.1");
    EXPECT_EQ(item.description, "A network driver");
    EXPECT_EQ(item.hasDevice, 2);
}

TEST(ConvertDriverDataTest, ClassificationIsAlwaysThatOfDrivers) {
    EXPECT_EQ(ConvertDriverData(ADriver()).classification, "22");
}

TEST(ConvertDriverDataTest, FirmwareFieldsStayEmpty) {
    // A name of the agentless list makes no difference to a driver.
    const UpdateScanItem item = ConvertDriverData(ADriver().Identifier("UEFI"));
    EXPECT_EQ(item.pldm, "");
    EXPECT_EQ(item.instanceId, "");
    EXPECT_EQ(item.slotNum, "");
    EXPECT_EQ(item.slotType, "");
}

TEST(ConvertDriverDataTest, DeviceCountIsCopiedUnchanged) {
    EXPECT_EQ(ConvertDriverData(ADriver()).hasDevice, 0);
    EXPECT_EQ(ConvertDriverData(ADriver().DevicePresent(-3)).hasDevice, -3);
}

TEST(ConvertDriverDataTest, MissingDriverWithoutVersionIsMarked) {
    const UpdateScanItem item = ConvertDriverData(ADriver().Identifier("NoDriver#8086"));
    EXPECT_EQ(item.version, "N/A");
    EXPECT_EQ(item.softwareId, "NoDriver#8086");
}

TEST(ConvertDriverDataTest, MissingDriverMarkerCountsAnywhere) {
    EXPECT_EQ(ConvertDriverData(ADriver().Identifier("pci-NODRIVER#")).version, "N/A");
}

TEST(ConvertDriverDataTest, MissingDriverKeepsItsVersion) {
    EXPECT_EQ(ConvertDriverData(ADriver().Identifier("NoDriver#8086").Version("1.0")).version,
              "1.0");
}

TEST(ConvertDriverDataTest, EmptyVersionOfOtherDriversStaysEmpty) {
    EXPECT_EQ(ConvertDriverData(ADriver().Identifier("nodriver")).version, "");
    EXPECT_EQ(ConvertDriverData(ADriver().Identifier("")).version, "");
}

TEST(AppendSoftwareIdentitiesTest, ItemsFollowThoseAlreadyThereInOrder) {
    UpdateScanReport report;
    report.PushScanItem(AnItem().Name("first"));
    AppendSoftwareIdentities(report, {AnIdentity().Name("b"), AnIdentity().Name("a")});
    ASSERT_EQ(report.GetScanResults().size(), 3u);
    EXPECT_EQ(report.GetScanResults()[0].name, "first");
    EXPECT_EQ(report.GetScanResults()[1].name, "b");
    EXPECT_EQ(report.GetScanResults()[2].name, "a");
}

TEST(AppendSoftwareIdentitiesTest, EmptyListLeavesTheReportUntouched) {
    UpdateScanReport report;
    report.PushScanItem(AnItem().Name("first"));
    AppendSoftwareIdentities(report, {});
    EXPECT_EQ(report.GetScanResults().size(), 1u);
}

TEST(AppendSoftwareIdentitiesTest, IdenticalRecordsYieldIdenticalItems) {
    UpdateScanReport report;
    const Vantix::VantixOptions::SoftwareIdentity_ twin = AnIdentity().Name("twin").Version("1");
    AppendSoftwareIdentities(report, {twin, twin});
    ASSERT_EQ(report.GetScanResults().size(), 2u);
    EXPECT_EQ(report.GetScanResults()[0].name, "twin");
    EXPECT_EQ(report.GetScanResults()[1].name, "twin");
    EXPECT_EQ(report.GetScanResults()[1].version, "1");
}

TEST(AppendSoftwareIdentitiesTest, ScanCountStaysAsItIs) {
    UpdateScanReport report;
    report.SetScanCount(7);
    AppendSoftwareIdentities(report, {AnIdentity()});
    EXPECT_EQ(report.GetScanCount(), 7);
}

TEST(AppendDriverDataTest, DriversFollowThoseAlreadyThereInOrder) {
    UpdateScanReport report;
    report.PushScanItem(AnItem().Name("first"));
    AppendDriverData(report, {ADriver().Identifier("b"), ADriver().Identifier("a")});
    ASSERT_EQ(report.GetScanResults().size(), 3u);
    EXPECT_EQ(report.GetScanResults()[1].name, "b");
    EXPECT_EQ(report.GetScanResults()[2].name, "a");
}

TEST(AppendDriverDataTest, EmptyListLeavesTheReportUntouched) {
    UpdateScanReport report;
    AppendDriverData(report, {});
    EXPECT_TRUE(report.GetScanResults().empty());
}

TEST(DumpSoftwareIdentityTest, ShowsFourLabelledLines) {
    std::ostringstream out;
    DumpSoftwareIdentity(out, AnIdentity()
                                  .Name("UEFI")
                                  .Description("System firmware")
                                  .ElementName("UEFI image")
                                  .Version("1.2"));
    EXPECT_EQ(out.str(),
              "Name:           \tUEFI\n"
              "Description:    \tSystem firmware\n"
              "Element Name:   \tUEFI image\n"
              "Version String: \t1.2\n");
}

}  // namespace
}  // namespace service::detail
