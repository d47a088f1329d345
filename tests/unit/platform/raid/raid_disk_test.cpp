#include "platform/raid/raid_disk.h"

#include <gtest/gtest.h>

namespace Vantix::raid {
namespace {

transport::ArcconfDisk ADisk() {
    transport::ArcconfDisk disk;
    disk.vendor = "FAKE";
    disk.model = "FK-1000";
    disk.firmware_version = "F001";
    disk.serial_number = "SN-1";
    disk.bay = "3";
    return disk;
}

TEST(RaidDiskTest, NameIsMakerAndModel) {
    EXPECT_EQ(ToRaidDisk(ADisk()).Name, "FAKE FK-1000");
}

TEST(RaidDiskTest, AtaIsNoMaker) {
    transport::ArcconfDisk disk = ADisk();
    disk.vendor = "ATA";
    EXPECT_EQ(ToRaidDisk(disk).Name, "FK-1000");
}

TEST(RaidDiskTest, MakerStandsOnceWhereTheModelBeginsWithIt) {
    transport::ArcconfDisk disk = ADisk();
    disk.model = "FAKE FK-1000";
    EXPECT_EQ(ToRaidDisk(disk).Name, "FAKE FK-1000");
}

TEST(RaidDiskTest, ModelIsTheIdentifierWithoutPartNumber) {
    EXPECT_EQ(ToRaidDisk(ADisk()).Identifier, "FK-1000");
}

TEST(RaidDiskTest, PartNumberIsTheIdentifier) {
    transport::ArcconfDisk disk = ADisk();
    disk.part_number = "PN-77";
    EXPECT_EQ(ToRaidDisk(disk).Identifier, "PN-77");
}

TEST(RaidDiskTest, FirmwareSerialNumberAndBayAreCopied) {
    const ARCCONF::RaidDisk disk = ToRaidDisk(ADisk());
    EXPECT_EQ(disk.FirmwareVersion, "F001");
    EXPECT_EQ(disk.SerialNumber, "SN-1");
    EXPECT_EQ(disk.Slot, "3");
}

}  // namespace
}  // namespace Vantix::raid
