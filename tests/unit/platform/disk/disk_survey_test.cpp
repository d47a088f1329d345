#include "platform/disk/disk_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/system_tree.h"
#include "unit/platform/disk/page_builder.h"

namespace Vantix::disk {
namespace {

using disk_test::Page;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::IsEmpty;

class DiskSurveyTest : public testing::Test {
  protected:
    void Nvme(const std::string& name, const std::string& model, const std::string& serial) {
        tree_.File("/sys/class/nvme/" + name + "/model", model + "\n")
            .File("/sys/class/nvme/" + name + "/serial", serial + "\n");
    }
    void Scsi(const std::string& address, const std::string& model, const std::string& serial) {
        const std::string folder = "/sys/class/scsi_device/" + address + "/device";
        tree_.File(folder + "/type", "0\n").File(folder + "/model", model + "\n");
        if (!serial.empty()) tree_.File(folder + "/vpd_pg80", Page(0x80, serial));
    }
    std::vector<std::string> Nodes() {
        std::vector<std::string> nodes;
        const transport::SystemRoot root(tree_.Root());
        for (const auto& disk : SurveyDisks(root, nullptr, run_)) nodes.push_back(disk.InstanceID);
        return nodes;
    }

    SystemTree tree_;
    VantixConnection::RunContext run_;
};

TEST_F(DiskSurveyTest, KindsComeInOneOrder) {
    Scsi("0:0:0:0", "DISK01", "DSER01");
    tree_.File("/sys/block/mmcblk0/device/type", "MMC\n")
        .File("/sys/block/mmcblk0/device/name", "EX4016\n");
    Nvme("nvme0", "Example NVMe", "NVSER0001");
    EXPECT_THAT(Nodes(), ElementsAre("nvme0", "0:0:0:0", "mmcblk0"));
}

TEST_F(DiskSurveyTest, DiskOnTwoWaysIsToldOnce) {
    Scsi("0:0:0:0", "DISK01", "DSER01");
    Scsi("0:0:1:0", "DISK01", "DSER02");
    Scsi("1:0:0:0", "DISK01", "DSER01");
    EXPECT_THAT(Nodes(), ElementsAre("0:0:0:0", "0:0:1:0"));
}

TEST_F(DiskSurveyTest, ControllerWithTwoPortsIsOneDisk) {
    Nvme("nvme0", "Example NVMe", "NVSER0001");
    Nvme("nvme1", "Example NVMe", "NVSER0001");
    EXPECT_THAT(Nodes(), ElementsAre("nvme0"));
}

TEST_F(DiskSurveyTest, DisksWithoutSerialNumberAreAllTold) {
    Scsi("0:0:0:0", "DISK01", "");
    Scsi("0:0:1:0", "DISK01", "");
    EXPECT_THAT(Nodes(), ElementsAre("0:0:0:0", "0:0:1:0"));
}

TEST_F(DiskSurveyTest, SameSerialNumberOfAnotherModelIsAnotherDisk) {
    Scsi("0:0:0:0", "DISK01", "DSER01");
    Scsi("0:0:1:0", "DISK02", "DSER01");
    EXPECT_THAT(Nodes(), ElementsAre("0:0:0:0", "0:0:1:0"));
}

TEST_F(DiskSurveyTest, DisksWithoutHardwareAreNotListed) {
    for (const char* block : {"dm-0", "md0", "loop0", "zram0", "vda", "nbd0", "pmem0", "sr0"}) {
        tree_.File(std::string("/sys/block/") + block + "/device/model", "DISK01\n");
    }
    EXPECT_THAT(Nodes(), IsEmpty());
}

TEST_F(DiskSurveyTest, MachineWithoutDiskHasNone) {
    EXPECT_THAT(Nodes(), IsEmpty());
}

}  // namespace
}  // namespace Vantix::disk
