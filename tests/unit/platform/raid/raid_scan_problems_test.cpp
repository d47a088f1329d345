// Controllers that are there and a tool that is not, or does not do its work.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "raid_scan_test_base.h"

namespace Vantix::raid {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using transport::CommandEnd;
using VantixConnection::SourceState;

class RaidScanProblemsTest : public RaidScanTestBase {
  protected:
    RaidScanProblemsTest() { AddServedController(tree_); }

    void AnswerList() {
        runner_.Answer("list", List({"Optimal, Slot 8"}))
            .Answer("getconfig 1 AD", Adapter("0:d9:0:0", "1.32[0]"));
    }
};

TEST_F(RaidScanProblemsTest, MissingToolIsASuccessThatTellsOfTheController) {
    runner_.End("list", CommandEnd::kNotFound);
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(controllers_, IsEmpty());
    ASSERT_TRUE(Status());
    EXPECT_EQ(Status()->state, SourceState::kFailed);
    EXPECT_THAT(Notices(), HasSubstr("RAID controller 9005:028f at 0000:d9:00.0"));
    EXPECT_THAT(Notices(), HasSubstr("arcconf is not installed"));
    EXPECT_TRUE(run_->IsPartial());
}

TEST_F(RaidScanProblemsTest, ControllersOfOneCauseShareANotice) {
    AddServedController(tree_, "0000:5e:00.0");
    runner_.End("list", CommandEnd::kNotFound);
    Scan();
    EXPECT_THAT(run_->Notices(), SizeIs(1));
    EXPECT_EQ(Status()->items_failed, 2);
}

TEST_F(RaidScanProblemsTest, HangingToolIsATimeout) {
    runner_.End("list", CommandEnd::kTimedOut);
    Scan();
    EXPECT_EQ(code_, TIMEOUT);
    EXPECT_EQ(Status()->state, SourceState::kTimeout);
    EXPECT_THAT(runner_.questions, ElementsAre("list"));
}

TEST_F(RaidScanProblemsTest, ToolThatHangsAtTheDisksIsNotAskedAboutTheNext) {
    runner_.Answer("list", List({"Optimal, Slot 8", "Optimal, Slot 9"}))
        .Answer("getconfig 1 AD", Adapter("0:d9:0:0", "1"))
        .Answer("getconfig 2 AD", Adapter("0:da:0:0", "1"))
        .End("getconfig 1 PD", CommandEnd::kTimedOut);
    Scan();
    EXPECT_THAT(codes_, ElementsAre(TIMEOUT, TIMEOUT));
    EXPECT_THAT(runner_.questions, Not(testing::Contains("getconfig 2 PD")));
    EXPECT_EQ(Status()->items_failed, 2);
}

TEST_F(RaidScanProblemsTest, ToolForAnotherGenerationIsNamedWithItsRelease) {
    runner_.Answer("list", List({})).Answer("", "| UCLI | Version 2.03 (B1) |\n");
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(Notices(), HasSubstr("arcconf 2.03 (B1) finds no controller"));
    EXPECT_THAT(Notices(), HasSubstr("generation"));
    EXPECT_TRUE(run_->IsPartial());
}

TEST_F(RaidScanProblemsTest, ToolThatMissesOneOfTwoControllersIsPartial) {
    AddServedController(tree_, "0000:5e:00.0");
    AnswerList();
    runner_.Answer("getconfig 1 PD", Devices(Disk(1, "A", "M", "F", "S", "Slot 1")));
    Scan();
    EXPECT_EQ(Status()->state, SourceState::kPartial);
    EXPECT_EQ(Status()->items_read, 1);
    EXPECT_THAT(Notices(), HasSubstr("0000:5e:00.0"));
    EXPECT_THAT(Notices(), HasSubstr("does not list"));
}

TEST_F(RaidScanProblemsTest, ToolThatWantsRootIsDenied) {
    runner_.Answer("list", "You must be root to run this program.\n", 1);
    Scan();
    EXPECT_EQ(code_, ADMINISTRATOR_PERMISSION_NEEDED);
    EXPECT_EQ(Status()->state, SourceState::kDenied);
    EXPECT_THAT(Notices(), HasSubstr("Run the scan as root."));
}

TEST_F(RaidScanProblemsTest, RubbishIsQuotedAndNoCrash) {
    runner_
        .Answer("list",
                "\x01\x02 rub\xFF"
                "bish",
                0)
        .Answer("getversion", "", 0);
    Scan();
    EXPECT_EQ(code_, GENERIC_FAILURE);
    EXPECT_THAT(Notices(), HasSubstr("rub\xEF\xBF\xBD"
                                     "bish"));
}

TEST_F(RaidScanProblemsTest, ProgramThatDoesNotStartIsToldWithTheSystemsWords) {
    runner_.End("list", CommandEnd::kNotStarted, "start: Exec format error");
    Scan();
    EXPECT_EQ(code_, GENERIC_FAILURE);
    EXPECT_THAT(Notices(), HasSubstr("Exec format error"));
}

TEST_F(RaidScanProblemsTest, RefusedDiskListKeepsTheController) {
    AnswerList();
    runner_.Answer("getconfig 1 PD", Banner(1) + "Command aborted.\n", 2);
    Scan();
    ASSERT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(controllers_[0].FirmwareVersion, "1.32[0]");
    EXPECT_THAT(codes_, ElementsAre(GENERIC_FAILURE));
    EXPECT_EQ(Status()->state, SourceState::kFailed);
    EXPECT_THAT(Notices(), HasSubstr("RAID controller 1 at 0000:d9:00.0"));
}

TEST_F(RaidScanProblemsTest, CutOffDiskListKeepsItsDisksAndIsPartial) {
    AnswerList();
    const std::string whole = Devices(Disk(1, "A", "M", "F", "S", "Slot 1"));
    runner_.Answer("getconfig 1 PD", whole.substr(0, whole.find("Command completed")));
    Scan();
    EXPECT_EQ(controllers_.at(0).Disks.size(), 1U);
    EXPECT_THAT(codes_, ElementsAre(GENERIC_FAILURE));
    EXPECT_EQ(Status()->state, SourceState::kPartial);
}

TEST_F(RaidScanProblemsTest, RefusedFactsOfAControllerCostOnlyThemselves) {
    runner_.Answer("list", List({"Optimal, Slot 8"}))
        .Answer("getconfig 1 AD", Banner(1) + "Command aborted.\n", 2)
        .Answer("getconfig 1 PD", Devices(Disk(1, "A", "M", "F", "S", "Slot 1")));
    Scan();
    ASSERT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(controllers_[0].FirmwareVersion, "");
    EXPECT_EQ(controllers_[0].Disks.size(), 1U);
}

TEST_F(RaidScanProblemsTest, InterruptedScanSaysSo) {
    runner_.End("list", CommandEnd::kCancelled);
    Scan();
    EXPECT_EQ(code_, INTERRUPTED_BY_USER);
}

class OtherControllersTest : public RaidScanTestBase {};

TEST_F(OtherControllersTest, RaidControllerOfAnotherMakerIsToldWithoutRunningTheTool) {
    AddOtherMakersController(tree_);
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(runner_.tried, IsEmpty());
    EXPECT_THAT(Notices(),
                HasSubstr("RAID controller 1000:0060 at 0000:01:00.0 (driver megaraid_sas)"));
    EXPECT_TRUE(run_->IsPartial());
}

TEST_F(OtherControllersTest, HostAdapterWithoutToolIsToldAndNoGap) {
    AddServedHostAdapter(tree_);
    runner_.End("list", CommandEnd::kNotFound);
    Scan();
    EXPECT_EQ(Status()->state, SourceState::kFailed);
    EXPECT_THAT(Notices(), HasSubstr("storage controller 9005:028f"));
    EXPECT_FALSE(run_->IsPartial());
}

TEST_F(OtherControllersTest, HostAdapterWithToolIsRead) {
    AddServedHostAdapter(tree_);
    runner_.Answer("list", List({"Optimal, Slot 8, HBA"}))
        .Answer("getconfig 1 AD", Adapter("0:5e:0:0", "1"))
        .Answer("getconfig 1 PD", Devices(Disk(1, "A", "M", "F", "S", "Slot 1")));
    Scan();
    EXPECT_EQ(Status()->state, SourceState::kComplete);
    EXPECT_EQ(controllers_.at(0).Disks.size(), 1U);
}

}  // namespace
}  // namespace Vantix::raid
