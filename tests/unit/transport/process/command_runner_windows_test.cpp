#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>

#include "common/files/file_path.h"
#include "support/temporary_folder.h"
#include "transport/process/child_pipe_windows.h"
#include "transport/process/command_runner.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using test_support::TemporaryFolder;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

Command Tool(const std::vector<std::string>& arguments) {
    Command command;
    command.program = TARSEL_TEST_TOOL;
    command.arguments = arguments;
    return command;
}

CommandOutcome RunCommand(const Command& command) {
    return SystemCommandRunner().Run(command);
}

CommandOutcome RunTool(const std::vector<std::string>& arguments) {
    return RunCommand(Tool(arguments));
}

bool IsAlive(const std::string& process) {
    const OwnedHandle handle(OpenProcess(SYNCHRONIZE, FALSE, std::stoul(process)));
    return handle.IsOpen() && WaitForSingleObject(handle.Get(), 0) == WAIT_TIMEOUT;
}

TEST(CommandRunnerTest, StreamsAndStatusComeBackApart) {
    const CommandOutcome outcome = RunTool({"out", "out", "error", "err", "exit", "3"});
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 3);
    EXPECT_EQ(outcome.output, "out");
    EXPECT_EQ(outcome.error_output, "err");
    EXPECT_FALSE(outcome.is_output_cut);
}

TEST(CommandRunnerTest, ArgumentsReachTheProgramUnchanged) {
    EXPECT_EQ(RunTool({"words", "two words", "$(id)", "%PATH%", "", "-x", "say \"hi\"", "a b\\",
                       "C:\\x\\", "^&|<>", "*.txt"})
                  .output,
              "<two words><$(id)><%PATH%><><-x><say \"hi\"><a b\\><C:\\x\\><^&|<>><*.txt>");
}

TEST(CommandRunnerTest, MissingProgramIsToldApartFromAFailingOne) {
    Command command;
    command.program = TemporaryFolder().Path("nothing-here.exe");
    const CommandOutcome outcome = RunCommand(command);
    EXPECT_EQ(outcome.end, CommandEnd::kNotFound);
    EXPECT_EQ(outcome.exit_status, -1);
    EXPECT_THAT(outcome.text, HasSubstr("nothing-here"));
}

TEST(CommandRunnerTest, NameWithoutFolderIsLookedUp) {
    Command command;
    command.program = "cmd";
    command.arguments = {"/c", "exit 4"};
    EXPECT_EQ(RunCommand(command).exit_status, 4);
}

TEST(CommandRunnerTest, CurrentFolderIsNotLookedThrough) {
    const TemporaryFolder folder;
    folder.Write("here.exe", TemporaryFolder::ReadFile(TARSEL_TEST_TOOL));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path("."));
    Command command;
    command.program = "here";
    const CommandOutcome outcome = RunCommand(command);
    std::filesystem::current_path(before);
    EXPECT_EQ(outcome.end, CommandEnd::kNotFound);
}

TEST(CommandRunnerTest, ProgramInAFolderWithAnyNameIsStarted) {
    const TemporaryFolder folder;
    const std::string place = folder.Path("with blank and \xC3\xBC");
    std::filesystem::create_directory(FilePath(place));
    Command command;
    command.program = folder.Write("with blank and \xC3\xBC/tool.exe",
                                   TemporaryFolder::ReadFile(TARSEL_TEST_TOOL));
    command.arguments = {"exit", "5"};
    EXPECT_EQ(RunCommand(command).exit_status, 5);
}

TEST(CommandRunnerTest, FileThatIsNoProgramIsNotStarted) {
    const TemporaryFolder folder;
    Command command;
    command.program = folder.Write("data.exe", "no program");
    const CommandOutcome outcome = RunCommand(command);
    EXPECT_EQ(outcome.end, CommandEnd::kNotStarted);
    EXPECT_THAT(outcome.text, HasSubstr("Windows error"));
}

TEST(CommandRunnerTest, StandardInputIsEmpty) {
    EXPECT_EQ(RunTool({"read-input"}).output, "nothing");
}

TEST(CommandRunnerTest, LocaleAndTimeZoneAreTheClassicOnes) {
    _putenv_s("LC_ALL", "de_DE.UTF-8");
    _putenv_s("TZ", "CET-1CEST");
    const CommandOutcome outcome = RunTool({"variables"});
    _putenv_s("LC_ALL", "");
    _putenv_s("TZ", "");
    EXPECT_THAT(outcome.output,
                AllOf(HasSubstr("[LC_ALL=C]"), HasSubstr("[LANGUAGE=C]"), HasSubstr("[TZ=UTC0]")));
}

TEST(CommandRunnerTest, EnvironmentOfTheCallerIsNotHandedOn) {
    _putenv_s("TARSEL_TEST_PRIVATE", "hidden");
    Command command = Tool({"variables"});
    command.environment = {{"TOOL_OPTION", "on"}};
    const CommandOutcome outcome = RunCommand(command);
    _putenv_s("TARSEL_TEST_PRIVATE", "");
    EXPECT_THAT(outcome.output, AllOf(Not(HasSubstr("TARSEL_TEST_PRIVATE")),
                                      HasSubstr("[TOOL_OPTION=on]"), HasSubstr("[PATH=")));
}

// A handle that the program had, too, would keep the file from going.
TEST(CommandRunnerTest, FilesOfTheCallerAreNotHandedOn) {
    const TemporaryFolder folder;
    const std::wstring file = FilePath(folder.Write("secret", "hidden")).wstring();
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    OwnedHandle handle(
        CreateFileW(file.c_str(), GENERIC_READ, 0, &inherited, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(handle.IsOpen());
    Command command = Tool({"sleep", "60000"});
    bool is_gone = false;
    // Asked while the program runs.
    command.is_cancelled = [&] {
        handle.Close();
        is_gone = DeleteFileW(file.c_str()) != 0;
        return true;
    };
    EXPECT_EQ(RunCommand(command).end, CommandEnd::kCancelled);
    EXPECT_TRUE(is_gone);
}

TEST(CommandRunnerTest, LargeOutputOfBothStreamsIsReadWhole) {
    const CommandOutcome outcome = RunTool({"out-bytes", "300000", "error-bytes", "300000"});
    EXPECT_EQ(outcome.output, std::string(300000, 'a'));
    EXPECT_EQ(outcome.error_output, std::string(300000, 'b'));
}

TEST(CommandRunnerTest, OutputBeyondTheLimitIsDroppedAndTold) {
    Command command = Tool({"out-bytes", "100000", "error", "end"});
    command.max_output_bytes = 1000;
    const CommandOutcome outcome = RunCommand(command);
    EXPECT_EQ(outcome.output, std::string(1000, 'a'));
    EXPECT_TRUE(outcome.is_output_cut);
    EXPECT_EQ(outcome.error_output, "end");
    EXPECT_EQ(outcome.exit_status, 0);
}

TEST(CommandRunnerTest, ProgramThatWritesWithoutEndIsEndedAtItsTimeLimit) {
    Command command = Tool({"write-without-end"});
    command.max_output_bytes = 1000;
    command.time_limit = milliseconds(500);
    const CommandOutcome outcome = RunCommand(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_TRUE(outcome.is_output_cut);
}

TEST(CommandRunnerTest, HungProgramIsEndedAndKeepsWhatItSaid) {
    Command command = Tool({"own-number", "sleep", "600000"});
    command.time_limit = milliseconds(1000);
    const CommandOutcome outcome = RunCommand(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_EQ(outcome.exit_status, -1);
    ASSERT_FALSE(outcome.output.empty());
    EXPECT_FALSE(IsAlive(outcome.output));
}

TEST(CommandRunnerTest, ChildrenOfAHungProgramEndWithIt) {
    Command command = Tool({"start-sleeper", "sleep", "600000"});
    command.time_limit = milliseconds(1000);
    const std::string child = RunCommand(command).output;
    ASSERT_FALSE(child.empty());
    for (int n = 0; n < 200 && IsAlive(child); ++n) std::this_thread::sleep_for(milliseconds(10));
    EXPECT_FALSE(IsAlive(child));
}

TEST(CommandRunnerTest, ChildLeftBehindWithTheStreamsDoesNotHoldTheCaller) {
    const CommandOutcome outcome = RunTool({"start-sleeper"});
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_THAT(outcome.output, Not(testing::IsEmpty()));
}

TEST(CommandRunnerTest, ProgramThatClosesItsStreamsIsStillWaitedFor) {
    const CommandOutcome outcome = RunTool({"close-streams", "sleep", "200", "exit", "5"});
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 5);
}

TEST(CommandRunnerTest, CancellingEndsTheProgram) {
    Command command = Tool({"sleep", "600000"});
    int asked = 0;
    command.is_cancelled = [&asked] { return ++asked > 2; };
    EXPECT_EQ(RunCommand(command).end, CommandEnd::kCancelled);
}

TEST(CommandRunnerTest, CodeOfAnExceptionIsNoExitStatus) {
    const CommandOutcome outcome = RunTool({"exit", std::to_string(EXCEPTION_ACCESS_VIOLATION)});
    EXPECT_EQ(outcome.end, CommandEnd::kSignalled);
    EXPECT_EQ(outcome.exit_status, -1);
}

}  // namespace
}  // namespace Vantix::transport
