#include "platform/disk/scsi_survey.h"

#include <gmock/gmock.h>

#include "unit/platform/disk/log_lines.h"
#include "unit/platform/disk/scsi_test_base.h"

namespace Vantix::disk {
namespace {

using disk_test::InquiryBytes;
using disk_test::Name;
using disk_test::Page;
using testing::HasSubstr;
using testing::IsEmpty;

class ScsiSurveyTest : public disk_test::ScsiTestBase {};

TEST_F(ScsiSurveyTest, SasDiskTellsAllOfItself) {
    Disk("0:0:1:0", "EXAMPLE", "DISK01", "DF01");
    tree_.File(Folder("0:0:1:0") + "/vpd_pg80", Page(0x80, "DSER01  "))
        .File("/sys/class/enclosure/0:0:8:0/Slot 04/slot", "4\n")
        .Link("/sys/class/enclosure/0:0:8:0/Slot 04/device", "../../../target0:0:1/0:0:1:0");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "sda");
    EXPECT_EQ(disks[0].source, "SCSI disk");
    EXPECT_EQ(disks[0].manufacturer, "EXAMPLE");
    EXPECT_EQ(disks[0].model, "DISK01");
    EXPECT_EQ(disks[0].firmware, "DF01");
    EXPECT_EQ(disks[0].serial, "DSER01");
    EXPECT_EQ(disks[0].slot, (redfish::Slot{"4", redfish::kSlotDriveBay}));
}

TEST_F(ScsiSurveyTest, AddressesGiveTheOrderAsNumbers) {
    Disk("0:0:10:0", "EXAMPLE", "DISK01", "DF01", "sdb");
    Disk("0:0:9:0", "EXAMPLE", "DISK01", "DF01", "sdc");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 2u);
    EXPECT_EQ(disks[0].node, "sdc");
    EXPECT_EQ(disks[1].node, "sdb");
}

TEST_F(ScsiSurveyTest, DiskWithoutBlockDeviceIsNamedByItsAddress) {
    Disk("0:0:1:0", "EXAMPLE", "DISK01", "DF01", "");
    EXPECT_EQ(Survey()[0].node, "0:0:1:0");
}

TEST_F(ScsiSurveyTest, DiskThatOnlyTheBlockFolderShowsIsFound) {
    tree_.File("/sys/block/sda/device/vendor", "EXAMPLE \n")
        .File("/sys/block/sda/device/model", "DISK01          \n")
        .File("/sys/block/sda/device/rev", "DF01\n");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "sda");
    EXPECT_EQ(disks[0].firmware, "DF01");
}

TEST_F(ScsiSurveyTest, DiskThatBothFoldersShowIsOneHoweverTheLinkIsWritten) {
    for (const std::string target : {"../../../0:0:1:0", "../.."}) {
        test_support::SystemTree tree;
        const std::string device = "/sys/devices/pci0000:00/host0/target0:0:1/0:0:1:0";
        tree.File(device + "/model", "DISK01\n")
            .Folder(device + "/block/sda")
            .Link(device + "/block/sda/device", target)
            .Link("/sys/block/sda", "../devices/pci0000:00/host0/target0:0:1/0:0:1:0/block/sda")
            .Folder(device + "/scsi_device/0:0:1:0")
            .Link(device + "/scsi_device/0:0:1:0/device", "../../../0:0:1:0")
            .Link("/sys/class/scsi_device/0:0:1:0",
                  "../../devices/pci0000:00/host0/target0:0:1/0:0:1:0/scsi_device/0:0:1:0");
        const transport::SystemRoot root(tree.Root());
        EXPECT_EQ(SurveyScsiDisks(root, DiskPlaces(root)).size(), 1u) << target;
    }
}

TEST_F(ScsiSurveyTest, InquiryFileStandsInForMissingAttributes) {
    tree_.File(Folder("0:0:1:0") + "/inquiry", InquiryBytes('\0', "EXAMPLE", "DISK01", "DF01"));
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].manufacturer, "EXAMPLE");
    EXPECT_EQ(disks[0].model, "DISK01");
    EXPECT_EQ(disks[0].firmware, "DF01");
}

TEST_F(ScsiSurveyTest, InquiryFileTellsThatADeviceIsNoDisk) {
    tree_.File(Folder("0:0:1:0") + "/inquiry", InquiryBytes('\5', "EXAMPLE", "DVD01", "DF01"));
    EXPECT_THAT(Survey(), IsEmpty());
}

TEST_F(ScsiSurveyTest, SerialNumberThatIsCutOrAPlaceholderIsUnknown) {
    Disk("0:0:1:0", "EXAMPLE", "DISK01", "DF01");
    tree_.File(Folder("0:0:1:0") + "/vpd_pg80", Page(0x80, "DSER01").substr(0, 8));
    Disk("0:0:2:0", "EXAMPLE", "DISK02", "DF01", "sdb");
    tree_.File(Folder("0:0:2:0") + "/vpd_pg80", Page(0x80, "0123456789"));
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 2u);
    EXPECT_EQ(disks[0].serial, "");
    EXPECT_EQ(disks[1].serial, "");
}

TEST_F(ScsiSurveyTest, VolumeIsLeftOutAndThePhysicalDiskBesideItIsNot) {
    Disk("0:0:1:0", "EXAMPLE", "DISK01", "DF01", "sda");
    Disk("0:1:0:0", "EXAMPLE", "CTRL-8i", "5.10", "sdb");
    tree_.File(Folder("0:0:1:0") + "/vpd_pg83", Page(0x83, Name(3, "\x50unit567")))
        .File(Folder("0:1:0:0") + "/vpd_pg83", Page(0x83, Name(3, "\x60unit567unit5678")));
    const disk_test::LogLines log;
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "sda");
    EXPECT_THAT(log.Text(), HasSubstr("left out sdb: a logical volume"));
}

TEST_F(ScsiSurveyTest, KernelsRaidClassAndTheDriversLevelAreLookedUp) {
    Disk("0:1:0:0", "EXAMPLE", "CTRL-8i", "5.10", "sda");
    Disk("0:2:0:0", "EXAMPLE", "CTRL-8i", "5.10", "sdb");
    tree_.Folder("/sys/class/raid_devices/0:1:0:0")
        .File(Folder("0:2:0:0") + "/raid_level", "RAID 5\n");
    EXPECT_THAT(Survey(), IsEmpty());
}

TEST_F(ScsiSurveyTest, DiskOnANetworkIsToldByItsPlaceInTheDeviceTree) {
    const std::string device = "/sys/devices/platform/host3/session1/target3:0:0/3:0:0:0";
    tree_.File(device + "/model", "DISK01\n")
        .Folder("/sys/class/scsi_device/3:0:0:0")
        .Link("/sys/class/scsi_device/3:0:0:0/device",
              "../../../devices/platform/host3/session1/target3:0:0/3:0:0:0");
    const disk_test::LogLines log;
    EXPECT_THAT(Survey(), IsEmpty());
    EXPECT_THAT(log.Text(), HasSubstr("left out 3:0:0:0: on a network (iSCSI)"));
}

TEST_F(ScsiSurveyTest, DamagedEntriesCostOnlyThemselves) {
    Disk("0:0:5:0", "EXAMPLE", "DISK01", "DF01");
    tree_.Link("/sys/class/scsi_device/0:0:1:0", "0:0:1:0")
        .Link("/sys/class/scsi_device/0:0:2:0", "gone")
        .File("/sys/class/scsi_device/0:0:3:0", "a file")
        .Folder(Folder("0:0:4:0") + "/model")
        .File(Folder("0:0:6:0") + "/model", std::string(100000, 'M'))
        .File(Folder("0:0:7:0") + "/model", "\xff\xfe\x01")
        .Link("/sys/block/sdz", "sdz");
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].model, "DISK01");
}

TEST_F(ScsiSurveyTest, MachineWithoutScsiHasNone) {
    EXPECT_THAT(Survey(), IsEmpty());
}

}  // namespace
}  // namespace Vantix::disk
