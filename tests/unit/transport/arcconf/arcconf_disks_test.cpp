#include <gtest/gtest.h>

#include "support/arcconf_text.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::transport {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words

const char* const kSlot3 = "Enclosure 0, Slot 3(Connector 0:CN0)";

std::string ADisk(const std::string& location = kSlot3) {
    return Disk(1, "FAKE", "FK-1000", "F001", "SN-1", location);
}

TEST(ArcconfDisksTest, EachFieldOfADiskIsRead) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(ADisk()));
    ASSERT_EQ(answer.disks.size(), 1U);
    const ArcconfDisk& disk = answer.disks[0];
    EXPECT_EQ(disk.vendor, "FAKE");
    EXPECT_EQ(disk.model, "FK-1000");
    EXPECT_EQ(disk.firmware_version, "F001");
    EXPECT_EQ(disk.serial_number, "SN-1");
    EXPECT_EQ(disk.bay, "3");
    EXPECT_TRUE(answer.is_whole);
}

TEST(ArcconfDisksTest, DisksKeepTheirOrderAndTheirOwnFirmware) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(
        Disk(7, "A", "M1", "F1", "S1", "Slot 7") + Disk(2, "B", "M2", "F2", "S2", "Slot 2")));
    ASSERT_EQ(answer.disks.size(), 2U);
    EXPECT_EQ(answer.disks[0].firmware_version, "F1");
    EXPECT_EQ(answer.disks[1].firmware_version, "F2");
}

TEST(ArcconfDisksTest, EnclosureIsNoDisk) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(ADisk() + Enclosure(3)));
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_EQ(answer.disks[0].firmware_version, "F001");
}

TEST(ArcconfDisksTest, DiskBehindAnEnclosureIsRead) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(Enclosure(3) + ADisk()));
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_EQ(answer.disks[0].model, "FK-1000");
}

TEST(ArcconfDisksTest, ValuesUnderSubtitlesAreNotTheDisks) {
    const std::string counters = Subtitle("Device Error Counters") + Pair("Firmware", "9", 9) +
                                 Pair("Serial number", "wrong", 9);
    const std::string text = Devices(Disk(1, "FAKE", "FK", "", "", kSlot3) + counters +
                                     Disk(2, "FAKE", "FK", "F2", "S2", kSlot3) + counters);
    const ArcconfDisks answer = ParseArcconfDisks(text);
    ASSERT_EQ(answer.disks.size(), 2U);
    EXPECT_EQ(answer.disks[0].serial_number, "");
    EXPECT_EQ(answer.disks[0].firmware_version, "");
    EXPECT_EQ(answer.disks[1].serial_number, "S2");
}

TEST(ArcconfDisksTest, BayWithoutDiskIsLeftOut) {
    EXPECT_TRUE(ParseArcconfDisks(Devices(Disk(1, "", "", "", "", kSlot3))).disks.empty());
}

TEST(ArcconfDisksTest, SolidStateDriveIsADisk) {
    const std::string text = Devices("      Device #0\n         Device is a Solid State Drive\n" +
                                     Pair("Model", "FK-SSD", 9));
    EXPECT_EQ(ParseArcconfDisks(text).disks.size(), 1U);
}

TEST(ArcconfDisksTest, DiskAtAConnectorWithoutEnclosureHasItsPlaceAsBay) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(ADisk("Connector 1, Device 2")));
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_EQ(answer.disks[0].bay, "2");
}

TEST(ArcconfDisksTest, UnknownLocationLeavesTheBayEmpty) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(ADisk("Not Available")));
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_EQ(answer.disks[0].bay, "");
}

TEST(ArcconfDisksTest, PartNumberIsReadWhereItIsTold) {
    const std::string text = Devices(ADisk() + Pair("Part Number", "PN-77", 9));
    EXPECT_EQ(ParseArcconfDisks(text).disks.at(0).part_number, "PN-77");
}

TEST(ArcconfDisksTest, BlanksAroundValuesGo) {
    const std::string text = Devices(Disk(1, "ATA     ", "FK", "  D3 ", " S 1 ", kSlot3));
    EXPECT_EQ(ParseArcconfDisks(text).disks.at(0).vendor, "ATA");
    EXPECT_EQ(ParseArcconfDisks(text).disks.at(0).firmware_version, "D3");
    EXPECT_EQ(ParseArcconfDisks(text).disks.at(0).serial_number, "S 1");
}

TEST(ArcconfDisksTest, ControllerWithoutDisksIsAnAnswer) {
    const ArcconfDisks answer = ParseArcconfDisks(Devices(""));
    EXPECT_TRUE(answer.has_section);
    EXPECT_TRUE(answer.is_whole);
    EXPECT_TRUE(answer.disks.empty());
}

TEST(ArcconfDisksTest, AnswerToAnotherQuestionHasNoSection) {
    EXPECT_FALSE(ParseArcconfDisks(Adapter("0:1:0:0", "1")).has_section);
}

TEST(ArcconfDisksTest, WholeConfigurationHoldsTheSameDisks) {
    const std::string text =
        Banner(1) + Title("Controller information") + Pair("Controller Model", "X") +
        Title("Logical device information") + "Logical Device number 0\n" +
        Pair("Model", "not-a-disk") + Title("Physical Device information") + ADisk() +
        Title("Connector information") + "Connector #0\n" + Pair("Model", "not-a-disk-either");
    const ArcconfDisks answer = ParseArcconfDisks(text);
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_EQ(answer.disks[0].model, "FK-1000");
}

TEST(ArcconfDisksTest, CutOffAnswerKeepsItsDisksAndIsNotWhole) {
    const std::string whole = Devices(ADisk() + ADisk());
    const ArcconfDisks answer = ParseArcconfDisks(whole.substr(0, whole.rfind("Vendor")));
    EXPECT_FALSE(answer.is_whole);
    EXPECT_EQ(answer.disks.size(), 1U);
}

}  // namespace
}  // namespace Vantix::transport
