// The family as a scan calls it, with a stand-in program in a recorded machine.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "pci_tree.h"
#include "platform/connection/connection.h"
#include "platform/raid/raid.h"
#include "support/arcconf_text.h"

namespace Vantix::ARCCONF {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words
using testing::HasSubstr;
using testing::IsEmpty;

class ArcconfConfigTest : public testing::Test {
  protected:
    ArcconfConfigTest() { option_.system_root = tree_.Root(); }

    /// A script that prints the files "list", "AD" and "PD" beside it.
    void Install(const std::string& script) {
        tree_.File("/usr/sbin/arcconf", "#!/bin/sh\n" + script);
        std::filesystem::permissions(tree_.Root() + "/usr/sbin/arcconf",
                                     std::filesystem::perms::owner_all);
    }
    void InstallAnswers() {
        Install(
            "folder=${0%/*}\n"
            "case \"$*\" in\n"
            "list) cat \"$folder/list\" ;;\n"
            "'getconfig 1 AD') cat \"$folder/AD\" ;;\n"
            "'getconfig 1 PD') cat \"$folder/PD\" ;;\n"
            "*) exit 3 ;;\n"
            "esac\n");
        tree_.File("/usr/sbin/list", List({"Optimal, Slot 8"}));
        tree_.File("/usr/sbin/AD", Adapter("0:d9:0:0", "1.32[0]"));
        tree_.File("/usr/sbin/PD", Devices(Disk(1, "FAKE", "FK-1", "F1", "S1", "Slot 1")));
    }

    test_support::SystemTree tree_;
    VantixConnection::ConnectOption option_;
    std::vector<RaidController> controllers_;
};

TEST_F(ArcconfConfigTest, StandInOfARecordedMachineIsRun) {
    AddServedController(tree_);
    InstallAnswers();
    const VantixConnection::ActiveRun run(option_);
    ArcconfConfig tool;
    EXPECT_EQ(tool.GetControllerList(controllers_, 2), 0);
    ASSERT_EQ(controllers_.size(), 1U);
    EXPECT_EQ(controllers_[0].FirmwareVersion, "1.32[0]");
    EXPECT_EQ(tool.GetCtrlDisks(controllers_[0]), 0);
    ASSERT_EQ(controllers_[0].Disks.size(), 1U);
    EXPECT_EQ(controllers_[0].Disks[0].Name, "FAKE FK-1");
}

TEST_F(ArcconfConfigTest, EveryModeListsAllControllers) {
    AddServedController(tree_);
    InstallAnswers();
    const VantixConnection::ActiveRun run(option_);
    for (const int mode : {0, 2, -1}) {
        ArcconfConfig tool;
        EXPECT_EQ(tool.GetControllerList(controllers_, mode), 0);
        EXPECT_EQ(controllers_.size(), 1U);
    }
}

TEST_F(ArcconfConfigTest, RecordedMachineWithoutProgramTellsOfItsController) {
    AddServedController(tree_);
    const VantixConnection::ActiveRun run(option_);
    ArcconfConfig tool;
    EXPECT_EQ(tool.GetControllerList(controllers_, 2), 0);
    EXPECT_THAT(controllers_, IsEmpty());
    EXPECT_TRUE(option_.run->IsPartial());
}

TEST_F(ArcconfConfigTest, FileThatIsNoProgramIsNoTool) {
    AddServedController(tree_);
    tree_.File("/usr/sbin/arcconf", "not executable");
    const VantixConnection::ActiveRun run(option_);
    ArcconfConfig tool;
    EXPECT_EQ(tool.GetControllerList(controllers_, 2), 0);
    ASSERT_FALSE(option_.run->Notices().empty());
    EXPECT_THAT(option_.run->Notices()[0], HasSubstr("not installed"));
}

TEST_F(ArcconfConfigTest, EndlessOutputIsCutAndSurvived) {
    AddServedController(tree_);
    Install(
        "echo 'Controllers found: 1'\n"
        "head -c 20000000 /dev/zero | tr '\\0' 'x'\n");
    const VantixConnection::ActiveRun run(option_);
    ArcconfConfig tool;
    EXPECT_EQ(tool.GetControllerList(controllers_, 2), 0);
    EXPECT_THAT(controllers_, IsEmpty());
    EXPECT_TRUE(option_.run->IsPartial());
}

TEST_F(ArcconfConfigTest, MachineWithoutControllersIsASuccess) {
    AddNetworkCard(tree_);
    const VantixConnection::ActiveRun run(option_);
    ArcconfConfig tool;
    EXPECT_EQ(tool.GetControllerList(controllers_, 2), 0);
    EXPECT_THAT(option_.run->Sources(), IsEmpty());
}

TEST_F(ArcconfConfigTest, DisksOfAControllerThatWasNotListedAreAskedFor) {
    AddServedController(tree_);
    InstallAnswers();
    const VantixConnection::ActiveRun run(option_);
    RaidController controller;
    controller.Id = 1;
    EXPECT_EQ(ArcconfConfig().GetCtrlDisks(controller), 0);
    EXPECT_EQ(controller.Disks.size(), 1U);
}

}  // namespace
}  // namespace Vantix::ARCCONF
