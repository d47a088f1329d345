#include "service/update_scan_service/detail/module_firmware.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/system_info/system_info.h"
#include "support/builders.h"

namespace service::detail {
namespace {

ModuleFirmwareRecord ARecord(const std::string& name) {
    ModuleFirmwareRecord record;
    record.MachineType = "MT-" + name;
    record.SerialNumber = "SN-" + name;
    record.Name = name;
    return record;
}

std::string DescriptionOf(const std::string& description) {
    ModuleFirmwareRecord record;
    record.Description = description;
    return ConvertModuleFirmware(record).description;
}

TEST(ConvertModuleFirmwareTest, TextsGoToTheirPlaces) {
    const UpdateScanItem item = ConvertModuleFirmware(ModuleFirmwareRecord{
        "machine", "serial", "VESK", "1.20", "10", "about it", "display name", "second name"});
    EXPECT_EQ(item.name, "display name");
    EXPECT_EQ(item.softwareId, "VESK");
    EXPECT_EQ(item.version, "1.20");
    EXPECT_EQ(item.classification, "10");
    EXPECT_EQ(item.description, "about it");
    EXPECT_EQ(item.hasDevice, 1);
}

TEST(ConvertModuleFirmwareTest, KnownAgentlessIdentifierStillHasNoFlagAndNoSlot) {
    ModuleFirmwareRecord record;
    record.SoftwareId = "TOLV";
    const UpdateScanItem item = ConvertModuleFirmware(record);
    EXPECT_EQ(item.pldm, "");
    EXPECT_EQ(item.slotType, "");
    EXPECT_EQ(item.slotNum, "");
    EXPECT_EQ(item.instanceId, "");
}

TEST(ConvertModuleFirmwareTest, DescriptionLosesTabsAndLineEnds) {
    EXPECT_EQ(DescriptionOf("\tone\r\ntwo\vthree"), "onetwothree");
}

TEST(ConvertModuleFirmwareTest, DescriptionKeepsTheWholePrintableRange) {
    EXPECT_EQ(DescriptionOf("\x1F !~\x7F"), " !~");
}

TEST(ConvertModuleFirmwareTest, DescriptionLosesEveryByteOfOtherLetters) {
    EXPECT_EQ(DescriptionOf("caf\xC3\xA9 \xFF\x80"), "caf ");
    EXPECT_EQ(DescriptionOf(std::string("a\0b", 3)), "ab");
}

TEST(ConvertModuleFirmwareTest, OtherTextsAreNotCleaned) {
    ModuleFirmwareRecord record;
    record.Name = "a\tb";
    record.Version = "1\r";
    EXPECT_EQ(ConvertModuleFirmware(record).name, "a\tb");
    EXPECT_EQ(ConvertModuleFirmware(record).version, "1\r");
}

TEST(ToModuleFirmwareTest, BothChassisRecordsHaveTheSameShape) {
    const auto module = ToModuleFirmware(
        std::vector<TolvInfo>{{"mt", "sn", "id", "version", "class", "description", "name"}});
    const auto io_switch = ToModuleFirmware(
        std::vector<SwitchInfo>{{"mt", "sn", "id", "version", "class", "description", "name"}});
    for (const auto& records : {module, io_switch}) {
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].MachineType, "mt");
        EXPECT_EQ(records[0].SerialNumber, "sn");
        EXPECT_EQ(records[0].SoftwareId, "id");
        EXPECT_EQ(records[0].Version, "version");
        EXPECT_EQ(records[0].Classification, "class");
        EXPECT_EQ(records[0].Description, "description");
        EXPECT_EQ(records[0].Name, "name");
        EXPECT_EQ(records[0].SecondName, "");
    }
}

TEST(StoreChassisFirmwareTest, FactsComeFromTheFirstRecordOnly) {
    UpdateScanReport report;
    StoreChassisFirmware(report, {ARecord("a"), ARecord("b")});
    EXPECT_EQ(report.GetOS(), "None");
    EXPECT_EQ(report.GetArch(), "None");
    EXPECT_EQ(report.GetBmcType(), "Tolv");
    EXPECT_EQ(report.GetMT(), "MT-a");
    EXPECT_EQ(report.GetScope(), "SN-a");
}

TEST(StoreChassisFirmwareTest, CountIsThatOfTheRecordsAndItemsAreAppended) {
    UpdateScanReport report;
    report.PushScanItem(support::AnItem().Name("earlier"));
    StoreChassisFirmware(report, {ARecord("a"), ARecord("b")});
    EXPECT_EQ(report.GetScanCount(), 2);
    ASSERT_EQ(report.GetScanResults().size(), 3u);
    EXPECT_EQ(report.GetScanResults()[0].name, "earlier");
    EXPECT_EQ(report.GetScanResults()[1].name, "a");
    EXPECT_EQ(report.GetScanResults()[2].name, "b");
}

TEST(StoreChassisFirmwareTest, NoRecordEmptiesMachineTypeAndSerialNumber) {
    UpdateScanReport report;
    report.SetMT("before");
    report.SetScope("before");
    report.SetScanCount(9);
    StoreChassisFirmware(report, {});
    EXPECT_EQ(report.GetMT(), "");
    EXPECT_EQ(report.GetScope(), "");
    EXPECT_EQ(report.GetScanCount(), 0);
    EXPECT_EQ(report.GetBmcType(), "Tolv");
}

}  // namespace
}  // namespace service::detail
