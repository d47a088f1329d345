// What a run leaves on disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ScanFilesTest : public TarselCommandTestBase {
  protected:
    // A scan that finds nobody, into a folder where an earlier scan left its file.
    Ended FailedScanOverAnEarlierOne() {
        StartBmc();
        const auto setup = Scan({"--deadline", "1"});  // no time for repetitions
        bmc_->Stop();
        fs::create_directories(folder_.Path("out"));
        folder_.Write("out/Tarsel-update-scan.xml", "earlier");
        return Run(setup);
    }
};

TEST_F(ScanFilesTest, CompleteScanLeavesScanFileSummaryAndLog) {
    StartBmc();
    ASSERT_EQ(Run(Scan()).exit_code, 0);
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), HasSubstr("<SOFTWAREID>"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>0</CODE>"));
    EXPECT_THAT(Output("tarsel.log"), HasSubstr("Start BMC inventorying..."));
    const auto files =
        std::distance(fs::directory_iterator(folder_.Path("out")), fs::directory_iterator());
    EXPECT_EQ(files, 3) << "something else was left behind";
}

TEST_F(ScanFilesTest, WithoutAnOutputFolderTheCurrentOneIsUsed) {
    StartBmc();
    auto setup = Command({"scan", "--bmc", Target(), "--pin", bmc_->Fingerprint()});
    setup.environment["TARSEL_PASSWORD"] = kPassword;
    ASSERT_EQ(Run(setup).exit_code, 0);
    EXPECT_THAT(folder_.Read("Tarsel-update-scan.xml"), HasSubstr("<SOFTWAREID>"));
}

TEST_F(ScanFilesTest, LogIsForItsOwnerOnly) {
    StartBmc();
    ASSERT_EQ(Run(Scan()).exit_code, 0);
    struct stat status {};
    ASSERT_EQ(stat(folder_.Path("out/tarsel.log").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(ScanFilesTest, FailedScanLeavesItsSummary) {
    EXPECT_EQ(FailedScanOverAnEarlierOne().exit_code, 5);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>13</CODE>"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<EXITCODE>5</EXITCODE>"));
}

TEST_F(ScanFilesTest, ScanFileOfAnEarlierRunIsNotLeftForTheResultOfAFailedOne) {
    const Ended ended = FailedScanOverAnEarlierOne();
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), IsEmpty());
    EXPECT_EQ(Output("Tarsel-update-scan.xml.old"), "earlier");
    EXPECT_THAT(ended.errors, HasSubstr("Tarsel-update-scan.xml.old"));
}

TEST_F(ScanFilesTest, UnusableOutputFolderIsToldBeforeAnythingIsAsked) {
    StartBmc();
    folder_.Write("out", "a file");
    const Ended ended = Run(Scan());
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("--output DIR"));
    EXPECT_EQ(bmc_->Counts().requests, 0);
}

TEST_F(ScanFilesTest, DurationIsRememberedForTheMachineType) {
    StartBmc();
    ASSERT_EQ(Run(Scan()).exit_code, 0);
    EXPECT_THAT(folder_.Read("home/.local/state/tarsel/durations.txt"),
                testing::ContainsRegex("^[0-9]+ None_None/Example Rack 100\n"));
}

TEST_F(ScanFilesTest, DurationOfAFailedScanIsNotRemembered) {
    EXPECT_EQ(FailedScanOverAnEarlierOne().exit_code, 5);
    EXPECT_THAT(folder_.Read("home/.local/state/tarsel/durations.txt"), IsEmpty());
}

TEST_F(ScanFilesTest, ScanWithoutAHomeIsNoProblem) {
    StartBmc();
    auto setup = Scan();
    setup.environment.erase("HOME");
    EXPECT_EQ(Run(setup).exit_code, 0);
}

TEST_F(ScanFilesTest, MostDetailedLogHoldsTheIdentities) {
    StartBmc();
    ASSERT_EQ(Run(Scan({"-vv"})).exit_code, 0);
    EXPECT_THAT(Output("tarsel.log"), HasSubstr("[Agentless Software Identity Information]"));
}

TEST_F(ScanFilesTest, OrdinaryLogDoesNot) {
    StartBmc();
    ASSERT_EQ(Run(Scan()).exit_code, 0);
    EXPECT_THAT(Output("tarsel.log"), Not(HasSubstr("[Agentless Software Identity Information]")));
}

}  // namespace
}  // namespace acceptance
