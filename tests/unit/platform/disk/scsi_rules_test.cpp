#include "platform/disk/scsi_rules.h"

#include <gtest/gtest.h>

namespace Vantix::disk {
namespace {

ScsiClues PhysicalDisk() {
    ScsiClues clues;
    clues.device_type = "0";
    clues.device_path =
        "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0/host0/port-0:0/end_device-0:0/"
        "target0:0:0/0:0:0:0";
    clues.model = "EX1000NM0001";
    clues.naa_formats = {5};
    clues.wwid = "naa.5000c50012345678";
    return clues;
}

TEST(ScsiRulesTest, PhysicalDiskCounts) {
    EXPECT_EQ(WhyNoDisk(PhysicalDisk()), "");
}

TEST(ScsiRulesTest, DiskOfWhichLittleIsKnownCounts) {
    EXPECT_EQ(WhyNoDisk(ScsiClues{}), "");
}

TEST(ScsiRulesTest, ZonedDiskCountsAndOtherTypesDoNot) {
    ScsiClues clues = PhysicalDisk();
    clues.device_type = "20";
    EXPECT_EQ(WhyNoDisk(clues), "");
    for (const char* type : {"1", "5", "12", "13"}) {
        clues.device_type = type;
        EXPECT_EQ(WhyNoDisk(clues), std::string("device type ") + type);
    }
}

TEST(ScsiRulesTest, DisksElsewhereAreLeftOut) {
    ScsiClues clues = PhysicalDisk();
    clues.device_path = "/sys/devices/platform/host3/session1/target3:0:0/3:0:0:0";
    EXPECT_EQ(WhyNoDisk(clues), "on a network (iSCSI)");
    clues.device_path =
        "/sys/devices/pci0000:00/0000:00:02.0/host2/rport-2:0-1/target2:0:0/2:0:0:0";
    EXPECT_EQ(WhyNoDisk(clues), "on a network (Fibre Channel)");
    clues.device_path = "/sys/devices/pci0000:00/0000:00:14.0/usb2/2-1/2-1:1.0/host4/4:0:0:0";
    EXPECT_EQ(WhyNoDisk(clues), "on USB");
    clues.device_path = "/sys/devices/pci0000:00/0000:00:05.0/virtio2/host0/target0:0:0/0:0:0:0";
    EXPECT_EQ(WhyNoDisk(clues), "a hypervisor's disk");
}

TEST(ScsiRulesTest, FolderThatOnlyBeginsLikeAWayElsewhereIsNone) {
    ScsiClues clues = PhysicalDisk();
    clues.device_path = "/sys/devices/usbish/0:0:0:0";
    EXPECT_EQ(WhyNoDisk(clues), "");
}

TEST(ScsiRulesTest, VolumeIsToldByTheDriversLevel) {
    ScsiClues clues = PhysicalDisk();
    clues.raid_level = "RAID 1(+0)";
    EXPECT_EQ(WhyNoDisk(clues), "a logical volume");
    clues.raid_level = "N/A";
    EXPECT_EQ(WhyNoDisk(clues), "");
}

TEST(ScsiRulesTest, VolumeIsToldByTheKernelsRaidClass) {
    ScsiClues clues = PhysicalDisk();
    clues.is_raid_device = true;
    EXPECT_EQ(WhyNoDisk(clues), "a logical volume");
}

TEST(ScsiRulesTest, VolumeIsToldByAnExtendedName) {
    ScsiClues clues = PhysicalDisk();
    clues.naa_formats = {5, 6};
    EXPECT_EQ(WhyNoDisk(clues), "a logical volume");
    clues.naa_formats = {};
    clues.wwid = "naa.600605b00123456789abcdef01234567";
    EXPECT_EQ(WhyNoDisk(clues), "a logical volume");
}

TEST(ScsiRulesTest, VolumeIsToldByItsModel) {
    ScsiClues clues = PhysicalDisk();
    for (const char* model : {"LOGICAL VOLUME", "Logical Volume", "RAID EX-8i", "Example VD",
                              "Disk Array", "ExampleRAID", "LUN 0"}) {
        clues.model = model;
        EXPECT_EQ(WhyNoDisk(clues), "a logical volume") << model;
    }
}

TEST(ScsiRulesTest, VirtualDiskIsToldByItsModel) {
    ScsiClues clues = PhysicalDisk();
    for (const char* model : {"Virtual disk", "Virtual HDisk0", "VIRTUAL-DISK"}) {
        clues.model = model;
        EXPECT_EQ(WhyNoDisk(clues), "a virtual disk") << model;
    }
}

TEST(ScsiRulesTest, ModelsThatContainSuchLettersOnlyCount) {
    ScsiClues clues = PhysicalDisk();
    for (const char* model : {"VDISK1000", "EXAMPLE-VD9", "LUNA 960", "VD", "DISK01"}) {
        clues.model = model;
        EXPECT_EQ(WhyNoDisk(clues), "") << model;
    }
}

}  // namespace
}  // namespace Vantix::disk
