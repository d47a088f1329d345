// The wrapped commands under this machine's own shell.
#include "transport/ssh/command_wrapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/child_process_posix.h"

namespace Vantix::transport {
namespace {

using testing::AllOf;
using testing::StartsWith;

constexpr const char* kShellMark = "begin-0123";

// Runs a line under /bin/sh as a server would: from a shell that leads a process group, or not.
struct Ran {
    int status = 0;
    std::string output;
    std::string errors;
};
Ran RunLine(const std::string& line, bool leads_group) {
    test_support::ChildSetup setup;
    setup.arguments = {"/bin/sh", "-c", line};
    if (leads_group) {
        setup.arguments = {"/usr/bin/setsid", "-w", "/bin/sh", "-c", line};
    }
    setup.environment = {{"PATH", "/usr/bin:/bin"}};
    test_support::ChildProcess process(setup);
    Ran ran;
    ran.status = process.Wait();
    ran.output = process.Output();
    ran.errors = process.Errors();
    return ran;
}

TEST(CommandWrapperInShellTest, CommandRunsBehindTheMarkWithItsStreamsAndStatus) {
    for (const bool leads_group : {true, false}) {
        const Ran ran =
            RunLine(WrapCommand("echo out; echo err >&2; exit 7", kShellMark), leads_group);
        EXPECT_EQ(ran.status, 7);
        EXPECT_THAT(ran.output, AllOf(StartsWith(std::string("\n") + kShellMark + " "),
                                      testing::EndsWith("\nout\n")));
        EXPECT_EQ(ran.errors, std::string("\n") + kShellMark + " .\nerr\n");
    }
}

TEST(CommandWrapperInShellTest, NumberBehindTheMarkIsThatOfTheProcessGroup) {
    for (const bool leads_group : {true, false}) {
        const Ran ran = RunLine(WrapCommand("ps -o pgid= -p $$", kShellMark), leads_group);
        StreamStart start(kShellMark);
        const std::string group = start.Pass(ran.output);
        EXPECT_EQ(group.substr(group.find_first_not_of(' ')), start.Word() + "\n") << leads_group;
    }
}

TEST(CommandWrapperInShellTest, WordsOfTheCommandSurviveTheQuoting) {
    const Ran ran =
        RunLine(WrapCommand("printf %s 'a'\\''b $HOME \\'; printf %s \"\nc\"", kShellMark), true);
    EXPECT_THAT(ran.output, testing::EndsWith("a'b $HOME \\\nc"));
}

TEST(CommandWrapperInShellTest, EndingAGroupThatIsGoneIsNoFailure) {
    // No process has a number that large.
    EXPECT_EQ(RunLine(EndGroupCommand("99999999", ""), false).status, 0);
}

}  // namespace
}  // namespace Vantix::transport
