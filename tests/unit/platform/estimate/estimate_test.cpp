#include "platform/estimate/estimate.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <locale>

#include "support/temporary_folder.h"

namespace {

using test_support::TemporaryFolder;

class TimeEstimationTest : public testing::Test {
  protected:
    TimeEstimationTest() { estimation_.UseFile(folder_.Path("state/durations.txt")); }

    TemporaryFolder folder_;
    TimeEstimation estimation_;
};

TEST_F(TimeEstimationTest, UnknownMachineTakesAMinuteThroughItsBmc) {
    EXPECT_EQ(estimation_.GetScanOOBTimeEstimation("None_None", "EX-1"), 60);
}

TEST_F(TimeEstimationTest, UnknownMachineTakesTwoMinutesInBand) {
    EXPECT_EQ(estimation_.GetScanInbandTimeEstimation("EX-1_x86_64", "exos9", 0), 120);
}

TEST_F(TimeEstimationTest, RememberedScanIsTheNextEstimate) {
    estimation_.RememberScan(TimeEstimation::KeyFor("None_None", "EX-1"), 17);
    EXPECT_EQ(estimation_.GetScanOOBTimeEstimation("None_None", "EX-1"), 17);
    EXPECT_EQ(estimation_.GetScanOOBTimeEstimation("None_None", "EX-2"), 60);
}

TEST_F(TimeEstimationTest, RememberedInbandScanIsTheNextEstimate) {
    estimation_.RememberScan(TimeEstimation::KeyFor("EX-1_x86_64", "exos9"), 95);
    EXPECT_EQ(estimation_.GetScanInbandTimeEstimation("EX-1_x86_64", "exos9", 10), 95);
}

TEST_F(TimeEstimationTest, InbandEstimateIsNeverLessThanWhatHasPassed) {
    EXPECT_EQ(estimation_.GetScanInbandTimeEstimation("EX-1_x86_64", "exos9", 200), 200);
}

TEST_F(TimeEstimationTest, MemoryLastsBeyondTheObject) {
    estimation_.RememberScan(TimeEstimation::KeyFor("None_None", "EX-1"), 17);
    TimeEstimation later;
    later.UseFile(folder_.Path("state/durations.txt"));
    EXPECT_EQ(later.GetScanOOBTimeEstimation("None_None", "EX-1"), 17);
}

TEST_F(TimeEstimationTest, NoAsideFileIsLeftBehind) {
    estimation_.RememberScan("key", 17);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("state/durations.txt.new")));
}

TEST_F(TimeEstimationTest, WithoutAFileNothingIsRemembered) {
    TimeEstimation bare;
    bare.RememberScan(TimeEstimation::KeyFor("None_None", "EX-1"), 17);
    EXPECT_EQ(bare.GetScanOOBTimeEstimation("None_None", "EX-1"), 60);
}

TEST_F(TimeEstimationTest, UnwritableFileIsIgnored) {
    estimation_.UseFile(folder_.Write("plain", "") + "/below-a-file/durations.txt");
    EXPECT_NO_THROW(estimation_.RememberScan("key", 17));
    EXPECT_EQ(estimation_.GetScanOOBTimeEstimation("None_None", "EX-1"), 60);
}

TEST_F(TimeEstimationTest, FolderInPlaceOfTheFileIsIgnored) {
    std::filesystem::create_directories(folder_.Path("folder"));
    estimation_.UseFile(folder_.Path("folder"));
    EXPECT_NO_THROW(estimation_.RememberScan("key", 17));
    EXPECT_EQ(estimation_.GetScanOOBTimeEstimation("None_None", "EX-1"), 60);
}

TEST_F(TimeEstimationTest, OneObjectServesTheWholeProcess) {
    EXPECT_EQ(TimeEstimation::getInstance(), TimeEstimation::getInstance());
}

}  // namespace
