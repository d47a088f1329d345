// Controllers that are there and a tool that answers.

#include "platform/raid/raid_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "raid_scan_test_base.h"

namespace Vantix::raid {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using VantixConnection::SourceState;

class RaidScanTest : public RaidScanTestBase {
  protected:
    void AnswerOneController() {
        AddServedController(tree_);
        runner_.Answer("list", List({"Optimal, Slot 8, RAID, Fake RAID 4711, 8A1, 51"}))
            .Answer("getconfig 1 AD", Adapter("0:d9:0:0", "1.32[0]"))
            .Answer("getconfig 1 PD",
                    Devices(Disk(1, "FAKE", "FK-1", "F1", "S1", "Slot 1") +
                            Disk(2, "ATA", "FK-2", "F2", "S2", "Slot 2") + Enclosure(3)));
    }
    void AnswerTwoControllers(const std::string& first_address, const std::string& second_address) {
        AddServedController(tree_, "0000:5e:00.0");
        AddServedController(tree_, "0000:d9:00.0");
        runner_.Answer("list", List({"Optimal, Slot 1", "Optimal, Slot 2"}))
            .Answer("getconfig 1 AD", Adapter(first_address, "1.1", 2))
            .Answer("getconfig 2 AD", Adapter(second_address, "2.2", 2))
            .Answer("getconfig 1 PD", Devices(Disk(1, "A", "M1", "F1", "S1", "Slot 1"), 2))
            .Answer("getconfig 2 PD", Devices(Disk(1, "B", "M2", "F2", "S2", "Slot 1"), 2));
    }
};

TEST_F(RaidScanTest, ControllerComesWithAddressFirmwareAndDisks) {
    AnswerOneController();
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(codes_, ElementsAre(0));
    ASSERT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(controllers_[0].Id, 1);
    EXPECT_EQ(controllers_[0].PciAddress, "0000:d9:00.0");
    EXPECT_EQ(controllers_[0].FirmwareVersion, "1.32[0]");
    ASSERT_EQ(controllers_[0].Disks.size(), 2U);
    EXPECT_EQ(controllers_[0].Disks[0].Name, "FAKE FK-1");
    EXPECT_EQ(controllers_[0].Disks[1].Name, "FK-2");
    EXPECT_EQ(controllers_[0].Disks[1].SerialNumber, "S2");
}

TEST_F(RaidScanTest, CompleteReadingIsReportedAndNeedsNoNotice) {
    AnswerOneController();
    Scan();
    ASSERT_TRUE(Status());
    EXPECT_EQ(Status()->state, SourceState::kComplete);
    EXPECT_EQ(Status()->items_read, 2);
    EXPECT_THAT(run_->Notices(), IsEmpty());
    EXPECT_FALSE(run_->IsPartial());
}

TEST_F(RaidScanTest, ToolRunsOnceForTheListAndTwiceForAController) {
    AnswerOneController();
    Scan();
    EXPECT_THAT(runner_.questions, ElementsAre("list", "getconfig 1 AD", "getconfig 1 PD"));
}

TEST_F(RaidScanTest, MachineWithoutControllersNeverRunsTheTool) {
    AddNetworkCard(tree_);
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(runner_.tried, IsEmpty());
    EXPECT_FALSE(Status());
    EXPECT_THAT(run_->Notices(), IsEmpty());
}

TEST_F(RaidScanTest, MachineThatShowsNoPciDevicesAsksTheTool) {
    runner_.Answer("list", List({"Optimal, Slot 8"}))
        .Answer("getconfig 1 AD", Adapter("0:d9:0:0", "1.32[0]"))
        .Answer("getconfig 1 PD", Devices(""));
    Scan();
    EXPECT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(Status()->state, SourceState::kComplete);
}

TEST_F(RaidScanTest, MachineThatShowsNothingAndHasNoControllerIsQuiet) {
    runner_.Answer("list", List({}));
    Scan();
    EXPECT_EQ(code_, 0);
    EXPECT_THAT(controllers_, IsEmpty());
    EXPECT_FALSE(Status());
    EXPECT_THAT(run_->Notices(), IsEmpty());
}

TEST_F(RaidScanTest, ControllerWithoutDisksIsComplete) {
    AnswerOneController();
    runner_.Answer("getconfig 1 PD", Devices(""));
    Scan();
    EXPECT_THAT(codes_, ElementsAre(0));
    EXPECT_EQ(Status()->state, SourceState::kComplete);
    EXPECT_EQ(Status()->items_read, 0);
}

TEST_F(RaidScanTest, ControllersKeepTheToolsOrder) {
    AnswerTwoControllers("0:d9:0:0", "0:5e:0:0");
    Scan();
    ASSERT_EQ(controllers_.size(), 2U);
    EXPECT_EQ(controllers_[0].PciAddress, "0000:d9:00.0");
    EXPECT_EQ(controllers_[1].PciAddress, "0000:5e:00.0");
    EXPECT_EQ(controllers_[1].Disks.at(0).Name, "B M2");
    EXPECT_EQ(Status()->items_read, 2);
}

TEST_F(RaidScanTest, OnlyControllerWithoutToldAddressIsTheOneOnPci) {
    AnswerOneController();
    runner_.Answer("getconfig 1 AD", Adapter("Not Available", "7.5"));
    Scan();
    ASSERT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(controllers_[0].PciAddress, "0000:d9:00.0");
    EXPECT_EQ(controllers_[0].FirmwareVersion, "7.5");
}

TEST_F(RaidScanTest, LastOfTwoControllersIsFoundByElimination) {
    AnswerTwoControllers("0:5e:0:0", "");
    Scan();
    EXPECT_EQ(controllers_.at(1).PciAddress, "0000:d9:00.0");
}

TEST_F(RaidScanTest, TwoControllersWithoutAddressesStayWithoutAndKeepTheirDisks) {
    AnswerTwoControllers("", "");
    Scan();
    EXPECT_EQ(controllers_.at(0).PciAddress, "");
    EXPECT_EQ(controllers_.at(1).PciAddress, "");
    EXPECT_EQ(controllers_.at(1).Disks.size(), 1U);
    EXPECT_EQ(Status()->state, SourceState::kComplete);
}

TEST_F(RaidScanTest, ListIsFilledAnewAtTheSecondCall) {
    AnswerOneController();
    Scan();
    EXPECT_EQ(scan_->ListControllers(controllers_), 0);
    EXPECT_EQ(controllers_.size(), 1U);
    EXPECT_THAT(controllers_[0].Disks, IsEmpty());
}

TEST_F(RaidScanTest, DisksAreFilledAnewAtTheSecondCall) {
    AnswerOneController();
    Scan();
    EXPECT_EQ(scan_->ReadDisks(controllers_[0]), 0);
    EXPECT_EQ(controllers_[0].Disks.size(), 2U);
}

}  // namespace
}  // namespace Vantix::raid
