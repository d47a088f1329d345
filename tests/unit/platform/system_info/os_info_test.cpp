#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/system_info/system_info.h"
#include "support/local_run.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::LocalRun;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::HasSubstr;

struct OsInfo {
    int code = -1;
    std::pair<std::string, std::string> os_arch{"old", "old"};
    std::string minor_version = "old";
};

OsInfo Ask() {
    OsInfo info;
    info.code = SystemInfoScan::GetOSInfo(info.os_arch, info.minor_version);
    return info;
}

OsInfo AskAbout(const SystemTree& tree) {
    const LocalRun run(tree);
    return Ask();
}

TEST(OsInfoTest, NameArchitectureAndMinorVersionAreTold) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=\"rhel\"\nVERSION_ID=\"9.3\"\n");
    tree.File("/proc/sys/kernel/arch", "aarch64\n");
    const OsInfo info = AskAbout(tree);
    EXPECT_EQ(info.code, 0);
    EXPECT_EQ(info.os_arch.first, "rhel9");
    EXPECT_EQ(info.os_arch.second, "aarch64");
    EXPECT_EQ(info.minor_version, "3");
}

TEST(OsInfoTest, ShorterFormTellsTheSamePair) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=sles\nVERSION_ID=15.5\n");
    tree.File("/proc/sys/kernel/arch", "x86_64\n");
    const LocalRun run(tree);
    std::pair<std::string, std::string> os_arch;
    EXPECT_EQ(SystemInfoScan::GetOSInfo(os_arch), 0);
    EXPECT_EQ(os_arch, std::make_pair(std::string("sles15"), std::string("x86_64")));
}

TEST(OsInfoTest, SecondFileStandsInForTheFirst) {
    SystemTree tree;
    tree.File("/usr/lib/os-release", "ID=debian\nVERSION_ID=12\n");
    EXPECT_EQ(AskAbout(tree).os_arch.first, "debian12");
}

TEST(OsInfoTest, FirstFileGoesBeforeTheSecondAndMayBeALink) {
    SystemTree tree;
    tree.File("/usr/lib/os-release", "ID=debian\nVERSION_ID=12\n");
    tree.Link("/etc/os-release", "../usr/lib/os-release-other");
    tree.File("/usr/lib/os-release-other", "ID=rhel\nVERSION_ID=8.10\n");
    EXPECT_EQ(AskAbout(tree).os_arch.first, "rhel8");
}

TEST(OsInfoTest, LinkOutOfTheTreeIsNotFollowed) {
    SystemTree elsewhere;
    elsewhere.File("/os-release", "ID=other\n");
    SystemTree tree;
    tree.Link("/etc/os-release", elsewhere.Root() + "/os-release");
    tree.File("/usr/lib/os-release", "ID=debian\nVERSION_ID=12\n");
    EXPECT_EQ(AskAbout(tree).os_arch.first, "debian12");
}

TEST(OsInfoTest, DebiansOwnFileTellsTheMinorVersion) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=debian\nVERSION_ID=\"12\"\n");
    tree.File("/etc/debian_version", "12.5\n");
    EXPECT_EQ(AskAbout(tree).minor_version, "5");
    tree.File("/etc/debian_version", "trixie/sid\n");
    EXPECT_EQ(AskAbout(tree).minor_version, "");
}

TEST(OsInfoTest, DebiansFileSaysNothingOfItsRelatives) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=example\nID_LIKE=debian\nVERSION_ID=\"3\"\n");
    tree.File("/etc/debian_version", "12.5\n");
    EXPECT_EQ(AskAbout(tree).minor_version, "");
}

TEST(OsInfoTest, RecordedTreeWithoutArchitectureDoesNotGetThisMachines) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=debian\n");
    const OsInfo info = AskAbout(tree);
    EXPECT_EQ(info.code, 0);
    EXPECT_EQ(info.os_arch.second, "");
}

TEST(OsInfoTest, ThisMachineTellsItsArchitecture) {
    const LocalRun run("/");
    const OsInfo info = Ask();
    EXPECT_EQ(info.code, 0);
    EXPECT_FALSE(info.os_arch.first.empty());
    EXPECT_FALSE(info.os_arch.second.empty());
}

TEST(OsInfoTest, WithoutReleaseFilesItFailsWithASentence) {
    const SystemTree tree = {};
    const LocalRun run(tree);
    const OsInfo info = Ask();
    EXPECT_EQ(info.code, 0x1006F);
    EXPECT_EQ(info.os_arch, (std::pair<std::string, std::string>()));
    EXPECT_EQ(info.minor_version, "");
    EXPECT_THAT(run.Notices(), ElementsAre(HasSubstr("/etc/os-release")));
}

TEST(OsInfoTest, ForbiddenReleaseFileStandsInTheSummary) {
    SystemTree tree;
    tree.File("/etc/os-release", "ID=debian\n");
    tree.Forbid("/etc/os-release");
    const test_support::UnprivilegedUser user(tree.Root());
    const LocalRun run(tree);
    EXPECT_EQ(Ask().code, 0x1006F);
    ASSERT_EQ(run.Sources().size(), 1u);
    EXPECT_THAT(run.Sources()[0].issues, ElementsAre("/etc/os-release"));
}

}  // namespace
