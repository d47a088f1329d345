// Whole machines: one recorded, read in place, and the scenarios' invented server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/disk/disk_survey.h"

namespace Vantix::disk {
namespace {

TEST(RecordedDisksTest, OnlyTheDiskThatTellsSomethingOfItselfIsListed) {
    const char* environment = std::getenv("TARSEL_SHARED_MOCKUPS");
    const std::filesystem::path sets = environment ? environment : TARSEL_SHARED_MOCKUPS;
    if (!std::filesystem::is_directory(sets / "sysfs-procfs/sys")) {
        GTEST_SKIP() << "no recorded tree; set TARSEL_SHARED_MOCKUPS to the recordings' folder";
    }
    const transport::SystemRoot root((sets / "sysfs-procfs").string());
    VantixConnection::RunContext run;
    const auto disks = SurveyDisks(root, nullptr, run);
    ASSERT_EQ(disks.size(), 1u);
    EXPECT_EQ(disks[0].InstanceID, "nvme0");
    EXPECT_EQ(disks[0].Name, "Samsung SSD 970 PRO 512GB");
    EXPECT_EQ(disks[0].VersionString, "1B2QEXP7");
    EXPECT_EQ(disks[0].SerialNumber, "S680HF8N190894I");
}

TEST(RecordedDisksTest, InventedServerHasItsFourDisksAndNoVolume) {
    const transport::SystemRoot root(TARSEL_SCENARIOS "/own-server/sysroot");
    VantixConnection::RunContext run;
    std::vector<std::string> texts;
    for (const auto& disk : SurveyDisks(root, nullptr, run)) {
        texts.push_back(disk.SoftwareID + " " + disk.VersionString + " " + disk.SerialNumber);
    }
    EXPECT_THAT(texts, testing::ElementsAre("EXFLASH 960 EX2.10 EXNVME0001",
                                            "EXFLASH 960 EX2.11 EXNVME0002",
                                            "EXSATA 4000 Long Name EX4.07A EXSATA0001",
                                            "EXSAS-1200 SR05 EXSAS00010000"));
}

}  // namespace
}  // namespace Vantix::disk
