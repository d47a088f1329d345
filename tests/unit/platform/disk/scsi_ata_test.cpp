// ATA drives behind a translation to SCSI, which cuts their texts.
#include <gmock/gmock.h>

#include "unit/platform/disk/log_lines.h"
#include "unit/platform/disk/scsi_test_base.h"

namespace Vantix::disk {
namespace {

using disk_test::AtaPage;
using disk_test::Page;
using testing::HasSubstr;
using testing::Not;

class ScsiAtaTest : public disk_test::ScsiTestBase {
  protected:
    void AtaDisk() { Disk("0:0:0:0", "ATA", "EXAMPLE SSD 960G", "CB6Q"); }
    const std::string kFolder = Folder("0:0:0:0");
};

TEST_F(ScsiAtaTest, WholeTextsStandInTheAtaPage) {
    AtaDisk();
    tree_.File(kFolder + "/vpd_pg89", AtaPage("EXAMPLE SSD 960GB-E", "EX01CB6Q", "ASER0001"));
    const auto disks = Survey();
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].source, "ATA disk");
    EXPECT_EQ(disks[0].model, "EXAMPLE SSD 960GB-E");
    EXPECT_EQ(disks[0].firmware, "EX01CB6Q");
    EXPECT_EQ(disks[0].serial, "ASER0001");
}

TEST_F(ScsiAtaTest, NameOfTheTranslationIsNoMaker) {
    AtaDisk();
    EXPECT_EQ(Survey()[0].manufacturer, "");
    Disk("0:0:0:0", "NVMe", "EXAMPLE NVME", "2.01");
    EXPECT_EQ(Survey()[0].manufacturer, "");
}

TEST_F(ScsiAtaTest, RevisionOfUdevStandsInForAMissingOrCutPage) {
    AtaDisk();
    tree_.File(kFolder + "/vpd_pg89", AtaPage("EXAMPLE SSD", "EX01CB6Q", "X").substr(0, 100))
        .File("/sys/block/sda/dev", "8:0\n")
        .File("/run/udev/data/b8:0", "E:ID_REVISION=EX01CB6Q\nE:ID_SERIAL_SHORT=ASER0001\n");
    const disk_test::LogLines log;
    const auto disks = Survey();
    EXPECT_EQ(disks[0].firmware, "EX01CB6Q");
    EXPECT_EQ(disks[0].serial, "ASER0001");
    EXPECT_THAT(log.Text(), Not(HasSubstr("four characters")));
}

TEST_F(ScsiAtaTest, CutRevisionIsReportedAndTheLogSaysSo) {
    AtaDisk();
    tree_.File(kFolder + "/vpd_pg80", Page(0x80, "ASER0001"));
    const disk_test::LogLines log;
    const auto disks = Survey();
    EXPECT_EQ(disks[0].firmware, "CB6Q");
    EXPECT_EQ(disks[0].serial, "ASER0001");
    EXPECT_THAT(log.Text(), HasSubstr("[2] scsi_survey"));
    EXPECT_THAT(log.Text(), HasSubstr("sda is known by four characters only: CB6Q"));
}

TEST_F(ScsiAtaTest, SerialNumberOfTheTranslationStandsWhereTheDriveTellsNone) {
    AtaDisk();
    tree_.File(kFolder + "/vpd_pg89", AtaPage("EXAMPLE SSD 960GB-E", "EX01CB6Q", ""))
        .File(kFolder + "/vpd_pg80", Page(0x80, "ASER0001"));
    EXPECT_EQ(Survey()[0].serial, "ASER0001");
}

TEST_F(ScsiAtaTest, AtaPageOfADiskThatIsNoAtaDriveIsNotRead) {
    Disk("0:0:0:0", "EXAMPLE", "DISK01", "DF01");
    tree_.File(kFolder + "/vpd_pg89", AtaPage("OTHER", "OTHER", "OTHER"));
    EXPECT_EQ(Survey()[0].model, "DISK01");
    EXPECT_EQ(Survey()[0].firmware, "DF01");
}

}  // namespace
}  // namespace Vantix::disk
