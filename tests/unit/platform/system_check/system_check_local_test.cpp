#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/system_check/system_check.h"
#include "support/local_run.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::LocalRun;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Vantix::SystemCheck;

const std::string kId = "/sys/class/dmi/id/";

class SystemCheckLocalTest : public testing::Test {
  protected:
    SystemCheck check_{"", "", "", "", "", ""};
    std::string version_ = "old";
    std::pair<std::string, std::string> mt_sn_;
};

TEST_F(SystemCheckLocalTest, UefiVersionIsRead) {
    SystemTree tree;
    tree.File(kId + "bios_version", " EX1.02 \n");
    const LocalRun run(tree);
    EXPECT_TRUE(check_.GetUEFIVersion(version_));
    EXPECT_EQ(version_, "EX1.02");
    EXPECT_THAT(run.Notices(), IsEmpty());
}

TEST_F(SystemCheckLocalTest, MissingUefiVersionFailsWithASentence) {
    const SystemTree tree = {};
    const LocalRun run(tree);
    EXPECT_FALSE(check_.GetUEFIVersion(version_));
    EXPECT_EQ(version_, "");
    EXPECT_THAT(run.Notices(), ElementsAre(HasSubstr("UEFI or BIOS version")));
}

TEST_F(SystemCheckLocalTest, ForbiddenUefiVersionStandsInTheSummary) {
    SystemTree tree;
    tree.File(kId + "bios_version", "EX1.02\n");
    tree.Forbid(kId + "bios_version");
    const test_support::UnprivilegedUser user(tree.Root());
    const LocalRun run(tree);
    EXPECT_FALSE(check_.GetUEFIVersion(version_));
    EXPECT_THAT(run.Notices(), ElementsAre(HasSubstr("run the scan as root")));
    ASSERT_EQ(run.Sources().size(), 1u);
    EXPECT_THAT(run.Sources()[0].issues, ElementsAre(kId + "bios_version"));
}

TEST_F(SystemCheckLocalTest, MachineTypeIsThatOfTheLocalHost) {
    SystemTree tree;
    tree.File(kId + "product_name", "Rack 1\n").File(kId + "product_serial", "SER12345\n");
    const LocalRun run(tree);
    EXPECT_EQ(check_.GetMachineType(mt_sn_), 0);
    EXPECT_EQ(mt_sn_, std::make_pair(std::string("Rack 1"), std::string("SER12345")));
}

TEST_F(SystemCheckLocalTest, MachineTypeFailsWhereNothingDescribesTheMachine) {
    const SystemTree tree = {};
    const LocalRun run(tree);
    EXPECT_EQ(check_.GetMachineType(mt_sn_), 0x6D2);
}

}  // namespace
