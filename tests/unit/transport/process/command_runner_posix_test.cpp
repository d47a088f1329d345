#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/script_file.h"
#include "support/temporary_folder.h"
#include "transport/process/command_runner.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using test_support::TemporaryFolder;
using test_support::WriteScript;
using testing::HasSubstr;
using testing::Not;

class CommandRunnerTest : public testing::Test {
  protected:
    Command Script(const std::string& body) {
        Command command;
        command.program = WriteScript(folder_, "tool", body);
        return command;
    }
    static CommandOutcome Run(const Command& command) { return SystemCommandRunner().Run(command); }
    CommandOutcome RunScript(const std::string& body) { return Run(Script(body)); }

    /// True while a process of that number is there, a zombie apart.
    static bool IsAlive(const std::string& process) {
        const std::string status = TemporaryFolder::ReadFile("/proc/" + process + "/status");
        return !status.empty() && status.find("State:\tZ") == std::string::npos;
    }

    TemporaryFolder folder_;
};

TEST_F(CommandRunnerTest, StreamsAndStatusComeBackApart) {
    const CommandOutcome outcome = RunScript("echo out; echo err >&2; exit 3");
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 3);
    EXPECT_EQ(outcome.output, "out\n");
    EXPECT_EQ(outcome.error_output, "err\n");
    EXPECT_FALSE(outcome.is_output_cut);
}

TEST_F(CommandRunnerTest, ArgumentsReachTheProgramUnchanged) {
    Command command = Script("for word in \"$@\"; do echo \"<$word>\"; done");
    command.arguments = {"two words", "$(id)", "", "-x", "a;b\nc"};
    EXPECT_EQ(Run(command).output, "<two words>\n<$(id)>\n<>\n<-x>\n<a;b\nc>\n");
}

TEST_F(CommandRunnerTest, MissingProgramIsToldApartFromAFailingOne) {
    Command command;
    command.program = folder_.Path("nothing-here");
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kNotFound);
    EXPECT_EQ(outcome.exit_status, -1);
    EXPECT_THAT(outcome.text, HasSubstr("nothing-here"));
}

TEST_F(CommandRunnerTest, NameWithoutFolderIsLookedUp) {
    Command command;
    command.program = "true";
    EXPECT_EQ(Run(command).exit_status, 0);
}

TEST_F(CommandRunnerTest, FileThatIsNoProgramIsNotStarted) {
    Command command;
    command.program = folder_.Write("data", "no program");
    EXPECT_EQ(Run(command).end, CommandEnd::kNotFound);
}

TEST_F(CommandRunnerTest, StandardInputIsEmpty) {
    EXPECT_EQ(RunScript("if read line; then echo got; else echo nothing; fi").output, "nothing\n");
}

TEST_F(CommandRunnerTest, LocaleIsTheClassicOneWhateverTheUsers) {
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    const CommandOutcome outcome = RunScript("echo \"$LC_ALL $LANGUAGE $TZ\"");
    unsetenv("LC_ALL");
    EXPECT_EQ(outcome.output, "C C UTC0\n");
}

TEST_F(CommandRunnerTest, EnvironmentOfTheCallerIsNotHandedOn) {
    setenv("TARSEL_TEST_PRIVATE", "hidden", 1);
    Command command = Script("env");
    command.environment = {{"TOOL_OPTION", "on"}};
    const CommandOutcome outcome = Run(command);
    unsetenv("TARSEL_TEST_PRIVATE");
    EXPECT_THAT(outcome.output, Not(HasSubstr("TARSEL_TEST_PRIVATE")));
    EXPECT_THAT(outcome.output, HasSubstr("TOOL_OPTION=on\n"));
}

TEST_F(CommandRunnerTest, FilesOfTheCallerAreNotHandedOn) {
    const std::string file = folder_.Write("secret", "hidden");
    const int open_file =
        open(file.c_str(), O_RDONLY);  // without close-on-exec, like careless code
    const CommandOutcome outcome = RunScript("ls /proc/self/fd | tr '\\n' ' '");
    close(open_file);
    // 3 is the folder that ls reads.
    EXPECT_EQ(outcome.output, "0 1 2 3 ");
}

TEST_F(CommandRunnerTest, IgnoredSignalsOfTheCallerAreNotHandedOn) {
    const auto before = signal(SIGPIPE, SIG_IGN);
    const CommandOutcome outcome = RunScript("kill -PIPE $$; echo survived");
    signal(SIGPIPE, before);
    EXPECT_EQ(outcome.end, CommandEnd::kSignalled);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(CommandRunnerTest, ProgramHasNoTerminalToAskOn) {
    EXPECT_EQ(RunScript("if (: </dev/tty) 2>/dev/null; then echo asks; else echo none; fi").output,
              "none\n");
}

TEST_F(CommandRunnerTest, LargeOutputOfBothStreamsIsReadWhole) {
    const CommandOutcome outcome = RunScript(
        "head -c 300000 /dev/zero | tr '\\0' a; head -c 300000 /dev/zero | tr '\\0' b >&2");
    EXPECT_EQ(outcome.output, std::string(300000, 'a'));
    EXPECT_EQ(outcome.error_output, std::string(300000, 'b'));
}

TEST_F(CommandRunnerTest, OutputBeyondTheLimitIsDroppedAndTold) {
    Command command = Script("head -c 100000 /dev/zero | tr '\\0' a; echo end >&2");
    command.max_output_bytes = 1000;
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.output, std::string(1000, 'a'));
    EXPECT_TRUE(outcome.is_output_cut);
    EXPECT_EQ(outcome.error_output, "end\n");
    EXPECT_EQ(outcome.exit_status, 0);
}

TEST_F(CommandRunnerTest, ProgramThatWritesWithoutEndIsEndedAtItsTimeLimit) {
    Command command = Script("exec yes");
    command.max_output_bytes = 1000;
    command.time_limit = milliseconds(200);
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_TRUE(outcome.is_output_cut);
}

TEST_F(CommandRunnerTest, HungProgramIsEndedAndKeepsWhatItSaid) {
    Command command = Script("echo before; exec sleep 600");
    command.time_limit = milliseconds(300);
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_EQ(outcome.exit_status, -1);
    EXPECT_EQ(outcome.output, "before\n");
}

TEST_F(CommandRunnerTest, ProgramThatIgnoresThePoliteEndIsKilled) {
    Command command = Script("trap '' TERM; echo $$; while :; do sleep 0.05; done");
    command.time_limit = milliseconds(300);
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    ASSERT_FALSE(outcome.output.empty());
    EXPECT_FALSE(IsAlive(outcome.output.substr(0, outcome.output.size() - 1)));
}

TEST_F(CommandRunnerTest, ChildrenOfAHungProgramEndWithIt) {
    Command command = Script("sleep 600 & echo $!; wait");
    command.time_limit = milliseconds(300);
    const std::string child = Run(command).output;
    ASSERT_FALSE(child.empty());
    for (int n = 0; n < 200 && IsAlive(child.substr(0, child.size() - 1)); ++n) usleep(10000);
    EXPECT_FALSE(IsAlive(child.substr(0, child.size() - 1)));
}

TEST_F(CommandRunnerTest, ChildLeftBehindWithTheStreamsDoesNotHoldTheCaller) {
    Command command = Script("sleep 600 & echo done");
    const CommandOutcome outcome = Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.output, "done\n");
}

TEST_F(CommandRunnerTest, ProgramThatClosesItsStreamsIsStillWaitedFor) {
    const CommandOutcome outcome = RunScript("exec >&- 2>&-; sleep 0.2; exit 5");
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 5);
}

TEST_F(CommandRunnerTest, CancellingEndsTheProgram) {
    Command command = Script("exec sleep 600");
    int asked = 0;
    command.is_cancelled = [&asked] { return ++asked > 2; };
    EXPECT_EQ(Run(command).end, CommandEnd::kCancelled);
}

TEST_F(CommandRunnerTest, DeathBySignalIsNoExitStatus) {
    const CommandOutcome outcome = RunScript("kill -KILL $$");
    EXPECT_EQ(outcome.end, CommandEnd::kSignalled);
    EXPECT_EQ(outcome.exit_status, -1);
}

TEST_F(CommandRunnerTest, StatusTakenByAnIgnoredChildSignalIsUnknownNotWaitedFor) {
    const auto before = signal(SIGCHLD, SIG_IGN);
    const CommandOutcome outcome = RunScript("echo out; exit 3");
    signal(SIGCHLD, before);
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, -1);
    EXPECT_EQ(outcome.output, "out\n");
}

}  // namespace
}  // namespace Vantix::transport
