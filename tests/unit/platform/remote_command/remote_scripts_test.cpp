#include "platform/remote_command/remote_scripts.h"

#include <gmock/gmock.h>

namespace Vantix::remote {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RemoteScriptsTest, AnswerWithoutLinesLeavesTheMachineUnknown) {
    const RemoteMachine machine = ParseSetupAnswer("\n\nnonsense\nsystem\n");
    EXPECT_EQ(machine.system, "");
    EXPECT_FALSE(machine.is_root);
}

TEST(RemoteScriptsTest, AnswersAreShortCleanText) {
    const std::string much(3000, 'x');
    const RemoteMachine machine =
        ParseSetupAnswer("system " + much + "\nmachine a\xFFz\nname " + much + "\nversion tarsel " +
                         much + "\ntool /" + std::string(5000, 'y') + "\n");
    EXPECT_EQ(machine.system.size(), 80U);
    EXPECT_EQ(machine.machine, "a\xEF\xBF\xBDz");
    EXPECT_EQ(machine.user.size(), 80U);
    EXPECT_LE(machine.tool_version.size(), 80U);
    EXPECT_EQ(machine.tool, "");
}

class HostileFolderTest : public testing::TestWithParam<const char*> {};

TEST_P(HostileFolderTest, IsNeitherTakenNorRemoved) {
    EXPECT_EQ(ParseSetupAnswer(std::string("folder ") + GetParam() + "\n").folder, "");
    EXPECT_EQ(RemoveFolderScript(GetParam()), "exit 1");
}

INSTANTIATE_TEST_SUITE_P(RemoteScripts, HostileFolderTest,
                         testing::Values("/", "", "relative/tarsel.x", "/tarsel", "/home/user",
                                         "/tmp/tarsel.", "/tmp/tarsel.x/..", "/tmp/tar\x07sel.x"));

TEST(RemoteScriptsTest, ToolInARelativePlaceIsNotTaken) {
    EXPECT_EQ(ParseSetupAnswer("tool bin/tarsel\n").tool, "");
}

TEST(RemoteScriptsTest, NamesThatNobodyAskedForAreNotListed) {
    const RemoteFiles files =
        ParseListAnswer("file ../../.profile\nother /etc/passwd\nfile a.xml\n", {"a.xml"});
    EXPECT_THAT(files.regular, ElementsAre("a.xml"));
    EXPECT_THAT(files.other, IsEmpty());
}

TEST(RemoteScriptsTest, LastWordsAreTheLastLineClean) {
    EXPECT_EQ(LastWords("first\nsecond\x1B[0m\r\n \n"), "second [0m");
    EXPECT_EQ(LastWords("only"), "only");
    EXPECT_EQ(LastWords("\n\n"), "");
    EXPECT_EQ(LastWords(""), "");
    EXPECT_EQ(LastWords(std::string(1000, 'x')).size(), 200U);
}

TEST(RemoteScriptsTest, ToolIsNeededWhereItIsNamed) {
    EXPECT_TRUE(NeedsTool(""));
    EXPECT_TRUE(NeedsTool("nice {tarsel} scan --inband"));
    EXPECT_FALSE(NeedsTool("/opt/other/tarsel scan --local --output {folder}"));
}

}  // namespace
}  // namespace Vantix::remote
