#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tarsel/terminal.h"

namespace tarsel {
namespace {

TEST(TerminalTest, VariableIsTakenOutOfTheEnvironment) {
    setenv("TARSEL_TEST_VARIABLE", "value", 1);
    std::string value;
    EXPECT_TRUE(TakeEnvironmentVariable("TARSEL_TEST_VARIABLE", value));
    EXPECT_EQ(value, "value");
    EXPECT_EQ(std::getenv("TARSEL_TEST_VARIABLE"), nullptr);
}

TEST(TerminalTest, MemoryOfTheVariableIsOverwritten) {
    char storage[] = "TARSEL_TEST_VARIABLE=value";
    putenv(storage);
    std::string value;
    EXPECT_TRUE(TakeEnvironmentVariable("TARSEL_TEST_VARIABLE", value));
    EXPECT_EQ(std::memchr(storage, 'v', sizeof storage), nullptr);
}

TEST(TerminalTest, MissingAndEmptyVariablesAreNone) {
    std::string value;
    EXPECT_FALSE(TakeEnvironmentVariable("TARSEL_TEST_MISSING", value));
    setenv("TARSEL_TEST_VARIABLE", "", 1);
    EXPECT_FALSE(TakeEnvironmentVariable("TARSEL_TEST_VARIABLE", value));
    EXPECT_EQ(std::getenv("TARSEL_TEST_VARIABLE"), nullptr);
}

TEST(TerminalTest, WipedTextIsEmpty) {
    std::string text = "FakePass1";
    WipeText(text);
    EXPECT_TRUE(text.empty());
}

TEST(TerminalTest, RedirectedErrorOutputIsNotInteractive) {
    testing::internal::CaptureStderr();
    const bool is_interactive = IsErrorOutputInteractive();
    testing::internal::GetCapturedStderr();
    EXPECT_FALSE(is_interactive);
}

TEST(TerminalTest, ColumnsHaveADefault) {
    testing::internal::CaptureStderr();
    const std::size_t columns = TerminalColumns();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(columns, 80U);
}

TEST(TerminalTest, StandardOutputTakesAWholeText) {
    const std::string text(200000, 'x');
    testing::internal::CaptureStdout();
    const WriteState state = WriteStandardOutput(text);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), text);
    EXPECT_EQ(state, WriteState::kOk);
}

// Puts a descriptor in the place of the standard output, in a child process only.
int WriteInto(int descriptor) {
    std::signal(SIGPIPE, SIG_IGN);
    dup2(descriptor, STDOUT_FILENO);
    return static_cast<int>(WriteStandardOutput("text"));
}

TEST(TerminalDeathTest, GoneReaderIsNoFailure) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    EXPECT_EXIT(std::_Exit(WriteInto(ends[1])),
                testing::ExitedWithCode(static_cast<int>(WriteState::kReaderGone)), "");
    close(ends[1]);
}

TEST(TerminalDeathTest, ClosedStandardOutputIsAFailure) {
    EXPECT_EXIT(
        {
            close(STDOUT_FILENO);
            std::_Exit(static_cast<int>(WriteStandardOutput("text")));
        },
        testing::ExitedWithCode(static_cast<int>(WriteState::kFailed)), "");
}

// What the next file is opened as, in a child process without standard descriptors.
int NextDescriptor() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(descriptor);
    OccupyStandardDescriptors();
    return open("/dev/null", O_RDWR);
}

TEST(TerminalDeathTest, ClosedStandardDescriptorsAreGivenToNobody) {
    EXPECT_EXIT(std::_Exit(NextDescriptor() > STDERR_FILENO ? 0 : 1), testing::ExitedWithCode(0),
                "");
}

TEST(TerminalDeathTest, OccupiedStandardOutputIsStillAFailure) {
    EXPECT_EXIT(
        {
            NextDescriptor();
            std::_Exit(static_cast<int>(WriteStandardOutput("text")));
        },
        testing::ExitedWithCode(static_cast<int>(WriteState::kFailed)), "");
}

TEST(TerminalTest, OpenStandardOutputIsLeftAlone) {
    testing::internal::CaptureStdout();
    OccupyStandardDescriptors();
    WriteStandardOutput("text");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "text");
}

}  // namespace
}  // namespace tarsel
