#include "transport/ssh/command_wrapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/child_process_posix.h"

namespace Vantix::transport {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kMark = "begin-0123";

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

TEST(CommandWrapperTest, MarksAreLongAndDiffer) {
    EXPECT_GE(RandomMark().size(), 24U);
    EXPECT_NE(RandomMark(), RandomMark());
}

TEST(CommandWrapperTest, CommandRunsBehindTheMarkWithItsStreamsAndStatus) {
    for (const bool leads_group : {true, false}) {
        const Ran ran = RunLine(WrapCommand("echo out; echo err >&2; exit 7", kMark), leads_group);
        EXPECT_EQ(ran.status, 7);
        EXPECT_THAT(ran.output, AllOf(StartsWith(std::string("\n") + kMark + " "),
                                      testing::EndsWith("\nout\n")));
        EXPECT_EQ(ran.errors, std::string("\n") + kMark + " .\nerr\n");
    }
}

TEST(CommandWrapperTest, NumberBehindTheMarkIsThatOfTheProcessGroup) {
    for (const bool leads_group : {true, false}) {
        const Ran ran = RunLine(WrapCommand("ps -o pgid= -p $$", kMark), leads_group);
        StreamStart start(kMark);
        const std::string group = start.Pass(ran.output);
        EXPECT_EQ(group.substr(group.find_first_not_of(' ')), start.Word() + "\n") << leads_group;
    }
}

TEST(CommandWrapperTest, WordsOfTheCommandSurviveTheQuoting) {
    const Ran ran =
        RunLine(WrapCommand("printf %s 'a'\\''b $HOME \\'; printf %s \"\nc\"", kMark), true);
    EXPECT_THAT(ran.output, testing::EndsWith("a'b $HOME \\\nc"));
}

TEST(CommandWrapperTest, EndingAGroupThatIsGoneIsNoFailure) {
    // No process has a number that large.
    EXPECT_EQ(RunLine(EndGroupCommand("99999999", ""), false).status, 0);
}

TEST(CommandWrapperTest, PrefixStandsBeforeTheShellThatEndsTheGroup) {
    EXPECT_THAT(EndGroupCommand("123", "sudo -n"), StartsWith("sudo -n sh -c '"));
    EXPECT_THAT(
        EndGroupCommand("123", ""),
        AllOf(StartsWith("exec sh -c '"), HasSubstr("-TERM -123"), HasSubstr("-KILL -123")));
}

TEST(StreamStartTest, BytesBehindTheMarkPass) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("\nbegin-0123 4711\ndata"), "data");
    EXPECT_TRUE(start.HasBegun());
    EXPECT_EQ(start.Word(), "4711");
    EXPECT_EQ(start.NoiseBytes(), 0U);
    EXPECT_EQ(start.Pass("more\n"), "more\n");
}

TEST(StreamStartTest, NoiseBeforeTheMarkIsCounted) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("welcome\nbegin-0123\n"), "");
    EXPECT_EQ(start.Pass("\nbegin-0123 1\nx"), "x");
    EXPECT_EQ(start.NoiseBytes(), std::string("welcome\nbegin-0123\n").size());
}

TEST(StreamStartTest, MarkMayComeByteByByte) {
    StreamStart start(kMark);
    std::string passed;
    for (const char byte : std::string("noise\nbegin-0123 12\nout")) {
        passed += start.Pass(std::string(1, byte));
    }
    EXPECT_EQ(passed, "out");
    EXPECT_EQ(start.Word(), "12");
    EXPECT_EQ(start.NoiseBytes(), 5U);
}

TEST(StreamStartTest, EndlessNoiseIsCountedAndNotKept) {
    StreamStart start(kMark);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(start.Pass(std::string(1000, 'x')), "");
    EXPECT_FALSE(start.HasBegun());
    EXPECT_LT(start.Noise().size(), 10000U);
    EXPECT_EQ(start.Pass("\nbegin-0123 1\nout"), "out");
    EXPECT_EQ(start.NoiseBytes(), 1000000U);
}

TEST(StreamStartTest, MarkInTheMiddleOfALineIsNone) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("echo begin-0123 $$\n"), "");
    EXPECT_FALSE(start.HasBegun());
}

TEST(StreamStartTest, BinaryDataPassUnchanged) {
    StreamStart start(kMark);
    const std::string data("\0\xff\n\r", 4);
    EXPECT_EQ(start.Pass("\nbegin-0123 1\n" + data), data);
}

}  // namespace
}  // namespace Vantix::transport
