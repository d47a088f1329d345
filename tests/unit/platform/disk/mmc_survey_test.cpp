#include "platform/disk/mmc_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/system_tree.h"

namespace Vantix::disk {
namespace {

using test_support::SystemTree;
using testing::IsEmpty;

void AddCard(SystemTree& tree, const std::string& block, const std::string& type) {
    const std::string folder = "/sys/block/" + block + "/device/";
    tree.File(folder + "type", type + "\n")
        .File(folder + "name", "EX4016\n")
        .File(folder + "fwrev", "0x0a00000000000000\n")
        .File(folder + "serial", "0x12ab34cd\n");
}

TEST(MmcSurveyTest, SolderedDiskTellsRevisionAndSerialNumberAsTheKernelDoes) {
    SystemTree tree;
    AddCard(tree, "mmcblk0", "MMC");
    const auto disks = SurveyFlashDisks(transport::SystemRoot(tree.Root()));
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].node, "mmcblk0");
    EXPECT_EQ(disks[0].source, "eMMC");
    EXPECT_EQ(disks[0].model, "EX4016");
    EXPECT_EQ(disks[0].firmware, "0x0a00000000000000");
    EXPECT_EQ(disks[0].serial, "0x12ab34cd");
    EXPECT_FALSE(disks[0].slot.IsKnown());
}

TEST(MmcSurveyTest, PartsOfADiskAreNoDisks) {
    SystemTree tree;
    AddCard(tree, "mmcblk0boot0", "MMC");
    AddCard(tree, "mmcblk0rpmb", "MMC");
    AddCard(tree, "mmcblk", "MMC");
    EXPECT_THAT(SurveyFlashDisks(transport::SystemRoot(tree.Root())), IsEmpty());
}

TEST(MmcSurveyTest, CardsAndNamelessDisksAreLeftOut) {
    SystemTree tree;
    AddCard(tree, "mmcblk0", "SD");
    tree.File("/sys/block/mmcblk1/device/type", "MMC\n").Folder("/sys/block/mmcblk2");
    EXPECT_THAT(SurveyFlashDisks(transport::SystemRoot(tree.Root())), IsEmpty());
}

}  // namespace
}  // namespace Vantix::disk
