#include "transport/smbios/smbios_records.h"

#include <gtest/gtest.h>

#include <string>

#include "support/smbios_builder.h"

namespace {

using test_support::AnSmbiosStructure;
using test_support::AnSmbiosTable;
using namespace Vantix::transport;  // NOLINT: the subject is this header

SmbiosStructures StructuresOf(const AnSmbiosTable& table) {
    return ReadSmbiosTable(table.Bytes());
}

TEST(SmbiosRecordsTest, BiosTellsVendorAndVersion) {
    const SmbiosBios bios =
        ReadSmbiosBios(StructuresOf(AnSmbiosTable().Bios("ExampleBIOS", "EX1.02")));
    EXPECT_EQ(bios.vendor, "ExampleBIOS");
    EXPECT_EQ(bios.version, "EX1.02");
    EXPECT_EQ(bios.release_date, "");
}

TEST(SmbiosRecordsTest, SystemTellsItsTexts) {
    const SmbiosSystem system = ReadSmbiosSystem(StructuresOf(
        AnSmbiosTable().System({"Example Maker", "Rack 1", "01", "SER12345"}, "RS-01", "Racks")));
    EXPECT_EQ(system.manufacturer, "Example Maker");
    EXPECT_EQ(system.product_name, "Rack 1");
    EXPECT_EQ(system.version, "01");
    EXPECT_EQ(system.serial_number, "SER12345");
    EXPECT_EQ(system.sku_number, "RS-01");
    EXPECT_EQ(system.family, "Racks");
}

TEST(SmbiosRecordsTest, SystemOfOldFirmwareHasNoSku) {
    AnSmbiosStructure old(1, 8);
    old.Text(4, "Example Maker").Text(7, "SER12345");
    const SmbiosSystem system = ReadSmbiosSystem(StructuresOf(AnSmbiosTable().Add(old)));
    EXPECT_EQ(system.serial_number, "SER12345");
    EXPECT_EQ(system.sku_number, "");
}

TEST(SmbiosRecordsTest, FirstOfSeveralBoardsDecides) {
    const SmbiosBaseboard board = ReadSmbiosBaseboard(
        StructuresOf(AnSmbiosTable()
                         .Baseboard({"Example Maker", "Main", "A1", "BOARD1"})
                         .Baseboard({"Example Maker", "Riser", "A1", "BOARD2"})));
    EXPECT_EQ(board.product, "Main");
    EXPECT_EQ(board.version, "A1");
    EXPECT_EQ(board.serial_number, "BOARD1");
}

TEST(SmbiosRecordsTest, MissingStructuresAreEmpty) {
    const SmbiosStructures none;
    EXPECT_EQ(ReadSmbiosBios(none).version, "");
    EXPECT_EQ(ReadSmbiosSystem(none).product_name, "");
    EXPECT_EQ(ReadSmbiosBaseboard(none).serial_number, "");
    EXPECT_TRUE(ReadSmbiosSlots(none).empty());
}

TEST(SmbiosRecordsTest, SlotTellsDesignationNumberAndAddress) {
    const auto slots =
        ReadSmbiosSlots(StructuresOf(AnSmbiosTable().Slot("PCIe Slot 3", 3, 1, 0x3b, 0x1a)));
    ASSERT_EQ(slots.size(), 1u);
    EXPECT_EQ(slots[0].designation, "PCIe Slot 3");
    EXPECT_EQ(slots[0].id, 3);
    EXPECT_EQ(slots[0].slot_type, 0xa5);
    EXPECT_EQ(slots[0].usage, 4);
    ASSERT_TRUE(slots[0].address.has_value());
    EXPECT_EQ(PciAddressText(*slots[0].address), "0001:3b:03.2");
}

TEST(SmbiosRecordsTest, SlotsKeepTheOrderOfTheTable) {
    const auto slots = ReadSmbiosSlots(StructuresOf(
        AnSmbiosTable().Slot("B", 2, 0, 2, 0).System({"Maker"}).Slot("A", 1, 0, 1, 0)));
    ASSERT_EQ(slots.size(), 2u);
    EXPECT_EQ(slots[0].designation, "B");
    EXPECT_EQ(slots[1].designation, "A");
}

TEST(SmbiosRecordsTest, SlotWithoutAddressHasNone) {
    const auto slots =
        ReadSmbiosSlots(StructuresOf(AnSmbiosTable()
                                         .Slot("empty", 1, 0xffff, 0xff, 0xff)
                                         .Slot("unknown bus", 2, 0, 0xff, 0xff)
                                         .Add(AnSmbiosStructure(9, 0x0d).Text(4, "old"))));
    ASSERT_EQ(slots.size(), 3u);
    for (const SmbiosSlot& slot : slots) EXPECT_FALSE(slot.address.has_value()) << slot.designation;
    EXPECT_EQ(slots[2].id, 0);
}

TEST(SmbiosRecordsTest, SlotTooShortForItsNumberHasNone) {
    const auto slots = ReadSmbiosSlots(
        StructuresOf(AnSmbiosTable().Add(AnSmbiosStructure(9, 0x0a).Text(4, "short"))));
    ASSERT_EQ(slots.size(), 1u);
    EXPECT_FALSE(slots[0].id.has_value());
}

TEST(SmbiosRecordsTest, MemoryDeviceTellsItsFirmware) {
    const auto devices =
        ReadSmbiosMemoryDevices(StructuresOf(AnSmbiosTable().Add(AnSmbiosStructure(17, 0x54)
                                                                     .Word(2, 0x1100)
                                                                     .Text(0x10, "DIMM 4")
                                                                     .Text(0x17, "Maker")
                                                                     .Text(0x18, "MSER01")
                                                                     .Text(0x1a, "MPART1")
                                                                     .Text(0x2b, "1.2.3"))));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices[0].handle, 0x1100);
    EXPECT_EQ(devices[0].locator, "DIMM 4");
    EXPECT_EQ(devices[0].manufacturer, "Maker");
    EXPECT_EQ(devices[0].serial_number, "MSER01");
    EXPECT_EQ(devices[0].part_number, "MPART1");
    EXPECT_EQ(devices[0].firmware_version, "1.2.3");
}

TEST(SmbiosRecordsTest, OlderMemoryDevicesTellNoFirmware) {
    const auto devices = ReadSmbiosMemoryDevices(StructuresOf(
        AnSmbiosTable().Add(AnSmbiosStructure(17, 0x1c).Text(0x10, "A").Text(0x1a, "P"))));
    ASSERT_EQ(devices.size(), 1u);
    EXPECT_EQ(devices[0].part_number, "P");
    EXPECT_EQ(devices[0].firmware_version, "");
}

TEST(SmbiosRecordsTest, AddressesAreWrittenAsTheKernelDoes) {
    EXPECT_EQ(PciAddressText({0, 0, 0, 0}), "0000:00:00.0");
    EXPECT_EQ(PciAddressText({0xabcd, 0xef, 31, 7}), "abcd:ef:1f.7");
}

}  // namespace
