#include "platform/pci/present_pci_devices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pci_tree.h"
#include "support/present_device_builder.h"
#include "support/smbios_builder.h"

namespace Vantix::pci {
namespace {

using local::PresentDevice;
using test_support::APresentDevice;
using test_support::PciTree;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const kIds = "VEN_1D0F&DEV_1001&SUBSYS_20011D0F&REV_01";

PciSlots NoSlots() {
    const PciTree tree;
    return PciSlots(transport::SystemRoot(tree.Root()));
}

// An SMBIOS table with one slot.
PciSlots SlotInTheTable(const std::string& designation, int bus, int place) {
    PciTree tree;
    tree.File("/sys/firmware/dmi/tables/DMI",
              test_support::AnSmbiosTable().Slot(designation, 0, 0, bus, place).Bytes());
    return PciSlots(transport::SystemRoot(tree.Root()));
}

PciInfo RecordOf(const PresentDevice& device) {
    const auto records = PciRecordsOf({device}, NoSlots());
    EXPECT_EQ(records.size(), 1U);
    return records.empty() ? PciInfo() : records.front();
}

APresentDevice ServedAdapter() {
    return APresentDevice("PCI", kIds).Class("020000").Driver("fakenet", "1.2.3.4").At(0x3B, 0, 0);
}

std::vector<std::string> IdsIn(const std::vector<PciInfo>& records) {
    std::vector<std::string> ids;
    for (const PciInfo& record : records) ids.push_back(record.IdPart1);
    return ids;
}

TEST(PciAddressOfTest, BusAndPlaceMakeTheAddress) {
    const auto address = PciAddressOf(APresentDevice("PCI", kIds).At(0x3B, 0x1F, 7));
    ASSERT_TRUE(address);
    EXPECT_EQ(address->Text(), "0000:3b:1f.7");
}

TEST(PciAddressOfTest, SegmentStandsAboveTheBus) {
    const auto address = PciAddressOf(APresentDevice("PCI", kIds).At(0x123B, 0, 0));
    ASSERT_TRUE(address);
    EXPECT_EQ(address->Text(), "0012:3b:00.0");
}

TEST(PciAddressOfTest, PlaceThatIsNoneOfPciIsUnknown) {
    EXPECT_FALSE(PciAddressOf(APresentDevice("PCI", kIds)));
    EXPECT_FALSE(PciAddressOf(APresentDevice("PCI", kIds).At(0xFFFFFFFF, 0, 0)));
    EXPECT_FALSE(PciAddressOf(APresentDevice("PCI", kIds).At(0, 0x20, 0)));
    EXPECT_FALSE(PciAddressOf(APresentDevice("PCI", kIds).At(0, 0, 8)));
    EXPECT_FALSE(PciAddressOf(APresentDevice("PCI", kIds).At(0, 0xFFFF, 0xFFFF)));
}

TEST(PciRecordsTest, ServedDeviceHasTheNameOfItsPackage) {
    const PciInfo record = RecordOf(ServedAdapter().Called("Fake Adapter X1", "Example Networks"));
    EXPECT_EQ(record.ShortName, "Fake Adapter X1");
    EXPECT_EQ(record.Description, "Example Networks Fake Adapter X1");
    EXPECT_EQ(record.Label2, "Example Networks");
    EXPECT_EQ(record.Label3, "Network controller");
    EXPECT_EQ(record.IdPart1, "1d0f1001");
    EXPECT_EQ(record.IdPart2, "1d0f2001");
}

TEST(PciRecordsTest, MakerIsNotToldTwice) {
    EXPECT_EQ(
        RecordOf(ServedAdapter().Called("EXAMPLE(R) Adapter", "Example Networks")).Description,
        "EXAMPLE(R) Adapter");
}

TEST(PciRecordsTest, TextInBracketsIsNoMaker) {
    const PciInfo record =
        RecordOf(ServedAdapter().Called("PCI root port", "(Standard system devices)"));
    EXPECT_EQ(record.Description, "PCI root port");
    EXPECT_EQ(record.Label2, "0000:3b:00.0");
}

TEST(PciRecordsTest, WithoutDriverOnlyTheKindIsKnown) {
    const PciInfo record = RecordOf(
        APresentDevice("PCI", kIds).Class("020000").At(0x3B, 0, 0).Called("Ethernet Controller"));
    EXPECT_EQ(record.ShortName, "");
    EXPECT_EQ(record.Description, "");
    EXPECT_EQ(record.Label2, "0000:3b:00.0");
    EXPECT_EQ(record.Label3, "Ethernet Controller");
}

TEST(PciRecordsTest, DeviceWithoutTextsAndPlaceIsStillNamed) {
    const PciInfo record = RecordOf(APresentDevice("PCI", kIds));
    EXPECT_EQ(record.Label2, R"(PCI\VEN_1D0F&DEV_1001&SUBSYS_20011D0F&REV_01\3&FAKE&0&00)");
    EXPECT_EQ(record.Label3, "PCI device");
}

TEST(PciRecordsTest, VersionIsThatOfTheFirmwareNeverOfTheDriver) {
    EXPECT_EQ(RecordOf(ServedAdapter()).Version, "");
    EXPECT_EQ(RecordOf(ServedAdapter().Firmware("22.31.1014")).Version, "22.31.1014");
    EXPECT_EQ(RecordOf(ServedAdapter().Firmware("N/A")).Version, "");
}

TEST(PciRecordsTest, OrderIsByAddress) {
    const auto records = PciRecordsOf({APresentDevice("PCI", "VEN_1D0F&DEV_0003").At(0x3B, 0, 1),
                                       APresentDevice("PCI", "VEN_1D0F&DEV_0004").At(0x103, 0, 0),
                                       APresentDevice("PCI", "VEN_1D0F&DEV_0001"),
                                       APresentDevice("PCI", "VEN_1D0F&DEV_0002").At(0x3B, 0, 0)},
                                      NoSlots());
    EXPECT_THAT(IdsIn(records), ElementsAre("1d0f0001", "1d0f0002", "1d0f0003", "1d0f0004"));
}

TEST(PciRecordsTest, OtherBusesAndDevicesWithoutIdsAreLeftOut) {
    EXPECT_THAT(PciRecordsOf(
                    {APresentDevice("USB", "VID_1D0F&PID_1001"),
                     APresentDevice("ROOT", "VEN_1D0F&DEV_1001"), APresentDevice("PCI", "CC_0604")},
                    NoSlots()),
                IsEmpty());
    EXPECT_THAT(PciRecordsOf({}, NoSlots()), IsEmpty());
}

TEST(PciRecordsTest, OneAddressSelectsOneDevice) {
    const std::vector<PresentDevice> devices = {ServedAdapter(), APresentDevice("PCI", kIds),
                                                APresentDevice("PCI", kIds).At(0x3B, 0, 1)};
    EXPECT_EQ(PciRecordsOf(devices, NoSlots(), ParsePciAddress("3b:00.1")).size(), 1U);
    EXPECT_THAT(PciRecordsOf(devices, NoSlots(), ParsePciAddress("3c:00.0")), IsEmpty());
}

// A port of the host, and behind it a card with a bridge and a device behind that.
std::vector<PresentDevice> CardWithABridge() {
    return {APresentDevice("PCI", "VEN_1D0F&DEV_0001")
                .Class("060400")
                .At(0, 0x1C, 0)
                .Location("PCIROOT(0)#PCI(1C00)"),
            APresentDevice("PCI", "VEN_1D0F&DEV_0002")
                .Class("060400")
                .At(0x3B, 0, 0)
                .Location("PCIROOT(0)#PCI(1C00)#PCI(0000)"),
            APresentDevice("PCI", "VEN_1D0F&DEV_0003")
                .Class("020000")
                .At(0x3C, 8, 0)
                .Location("PCIROOT(0)#PCI(1C00)#PCI(0000)#PCI(0800)")};
}

std::vector<std::string> SlotsOf(const std::vector<PresentDevice>& devices, const PciSlots& slots) {
    std::vector<std::string> numbers;
    for (const PciInfo& record : PciRecordsOf(devices, slots)) numbers.push_back(record.Slot);
    return numbers;
}

TEST(PciSlotOfPresentDevicesTest, BehindABridgeItIsThatOfTheCard) {
    auto devices = CardWithABridge();
    devices[1].slot = 4;
    EXPECT_THAT(SlotsOf(devices, NoSlots()), ElementsAre("", "4", "4"));
}

TEST(PciSlotOfPresentDevicesTest, TableOfTheFirmwareTellsTheOthers) {
    EXPECT_THAT(SlotsOf(CardWithABridge(), SlotInTheTable("PCIe Slot 7", 0x3B, 0)),
                ElementsAre("", "7", "7"));
}

TEST(PciSlotOfPresentDevicesTest, TableMayNameThePortOfTheHostThatItselfHasNone) {
    EXPECT_THAT(SlotsOf(CardWithABridge(), SlotInTheTable("PCIe Slot 7", 0, 0x1C << 3)),
                ElementsAre("", "7", "7"));
}

TEST(PciSlotOfPresentDevicesTest, SystemsNumberGoesBeforeTheTable) {
    auto devices = CardWithABridge();
    devices[1].slot = 4;
    EXPECT_THAT(SlotsOf(devices, SlotInTheTable("PCIe Slot 7", 0x3B, 0)),
                ElementsAre("", "4", "4"));
}

TEST(PciSlotOfPresentDevicesTest, NumbersThatStandForNoneAreNone) {
    auto devices = CardWithABridge();
    devices[1].slot = 0;
    devices[2].slot = 0xFFFFFFFF;
    EXPECT_THAT(SlotsOf(devices, NoSlots()), ElementsAre("", "", ""));
}

TEST(PciSlotOfPresentDevicesTest, WithoutTheWayThereTheDevicesOwnCounts) {
    EXPECT_THAT(SlotsOf({ServedAdapter().Slot(3)}, NoSlots()), ElementsAre("3"));
    EXPECT_THAT(SlotsOf({ServedAdapter()}, SlotInTheTable("PCIe Slot 7", 0x3B, 0)),
                ElementsAre("7"));
}

TEST(PciSlotOfPresentDevicesTest, FunctionsOfACardShareIt) {
    EXPECT_THAT(
        SlotsOf({ServedAdapter().Slot(3), APresentDevice("PCI", kIds).At(0x3B, 0, 1)}, NoSlots()),
        ElementsAre("3", "3"));
}

}  // namespace
}  // namespace Vantix::pci
