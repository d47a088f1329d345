// Commands at a real sshd: streams, status, limits, process groups.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "ssh_test_base.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr std::size_t kTenMiB = 10 * 1024 * 1024;
// On a busy machine, too.
constexpr milliseconds kEnoughToStart(1500);

class RemoteCommandTest : public SshTest {
  protected:
    RemoteOutcome Run(const std::string& command_line) { return Run(Line(command_line)); }
    RemoteOutcome Run(const RemoteCommand& command) {
        if (!server_) StartServer();
        if (!shell_) shell_ = LoggedIn(KeyTarget());
        return shell_->Execute(command);
    }

    /// True when the process whose id the command wrote into that file of the home folder ends
    /// within a few seconds; a zombie has ended.
    bool HasEnded(const std::string& file) const {
        const std::string id =
            test_support::TemporaryFolder::ReadFile(server_->Home() + "/" + file);
        EXPECT_THAT(id, Not(IsEmpty()));
        const std::string status = "/proc/" + id.substr(0, id.find('\n')) + "/status";
        for (int i = 0; i < 300; ++i) {
            const std::string text = test_support::TemporaryFolder::ReadFile(status);
            if (text.empty() || text.find("State:\tZ") != std::string::npos) return true;
            std::this_thread::sleep_for(milliseconds(10));
        }
        return false;
    }

    std::unique_ptr<RemoteShell> shell_;
};

TEST_F(RemoteCommandTest, StreamsAndStatusComeBackApart) {
    const RemoteOutcome outcome = Run("echo out; echo err >&2; exit 42");
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.exit_status, 42);
    EXPECT_EQ(outcome.output, "out\n");
    EXPECT_EQ(outcome.error_output, "err\n");
    EXPECT_THAT(outcome.exit_signal, IsEmpty());
    EXPECT_FALSE(outcome.Succeeded());
}

TEST_F(RemoteCommandTest, CommandsFollowEachOtherOverOneConnection) {
    EXPECT_EQ(Run("echo one").output, "one\n");
    EXPECT_EQ(Run("echo two").output, "two\n");
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(RemoteCommandTest, DeathBySignalIsNoExitStatus) {
    const RemoteOutcome outcome = Run("kill -KILL $$");
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.exit_status, -1);
    EXPECT_EQ(outcome.exit_signal, "KILL");
}

TEST_F(RemoteCommandTest, QuotedWordsReachTheCommandUnchanged) {
    const std::string odd = "it's \"$(id)\" `id` \\ ; * ~\n-x \xff";
    EXPECT_EQ(Run("printf %s " + QuoteForShell(odd)).output, odd);
}

TEST_F(RemoteCommandTest, TenMiBOnBothStreamsDoNotStall) {
    RemoteCommand command =
        Line("head -c 10485760 /dev/zero; head -c 10485760 /dev/zero >&2; echo end");
    command.max_output_bytes = 2 * kTenMiB;
    const RemoteOutcome outcome = Run(command);
    EXPECT_TRUE(outcome.Succeeded()) << outcome.failure.text;
    EXPECT_THAT(outcome.output, SizeIs(kTenMiB + 4));
    EXPECT_THAT(outcome.error_output, SizeIs(kTenMiB));
    EXPECT_FALSE(outcome.is_output_cut);
}

TEST_F(RemoteCommandTest, OutputBeyondTheLimitIsCutAndSaid) {
    RemoteCommand command = Line("head -c 300000 /dev/zero; echo short >&2");
    command.max_output_bytes = 100000;
    const RemoteOutcome outcome = Run(command);
    EXPECT_TRUE(outcome.Succeeded()) << outcome.failure.text;
    EXPECT_THAT(outcome.output, SizeIs(100000));
    EXPECT_TRUE(outcome.is_output_cut);
    EXPECT_EQ(outcome.error_output, "short\n");
    EXPECT_FALSE(outcome.is_error_output_cut);
}

TEST_F(RemoteCommandTest, InputIsHandedOverWholeAndClosed) {
    RemoteCommand command = Line("wc -c");
    command.input = std::string(3000000, 'x');
    EXPECT_THAT(Run(command).output, HasSubstr("3000000"));
}

TEST_F(RemoteCommandTest, CommandThatIgnoresItsInputStillEnds) {
    RemoteCommand command = Line("exec 0<&-; echo done");
    command.input = std::string(5000000, 'x');
    EXPECT_EQ(Run(command).output, "done\n");
}

TEST_F(RemoteCommandTest, CommandThatClosesItsStreamsIsStillWaitedFor) {
    const RemoteOutcome outcome = Run("exec >&- 2>&-; sleep 0.2; exit 5");
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.exit_status, 5);
}

TEST_F(RemoteCommandTest, WordsOfStartFilesAreCountedAndLeftOut) {
    test_support::SshdSetup setup;
    setup.shell = "/bin/bash";
    StartServer(setup);
    const std::string file = server_->Home() + "/.bashrc";
    std::ofstream(file) << "echo welcome; echo careful >&2\n";
    server_->GiveToAccount(file);
    const RemoteOutcome outcome = Run("echo out; echo err >&2");
    EXPECT_EQ(outcome.output, "out\n");
    EXPECT_EQ(outcome.error_output, "err\n");
    EXPECT_EQ(outcome.noise_bytes, std::string("welcome\ncareful\n").size());
}

TEST_F(RemoteCommandTest, ServerThatRunsSomethingElseIsToldOf) {
    test_support::SshdSetup setup;
    setup.more_lines = {"ForceCommand echo only this"};
    StartServer(setup);
    const RemoteOutcome outcome = Run("echo out");
    EXPECT_EQ(outcome.failure.problem, SshProblem::kCommandNotStarted);
    EXPECT_THAT(outcome.failure.text, HasSubstr("only this"));
    EXPECT_THAT(outcome.output, IsEmpty());
}

TEST_F(RemoteCommandTest, TimeLimitEndsTheWholeProcessGroup) {
    RemoteCommand command = Line("sleep 600 & echo $! > child; echo $$ > leader; wait");
    command.time_limit = kEnoughToStart;
    const RemoteOutcome outcome = Run(command);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kDeadline);
    EXPECT_THAT(outcome.failure.text, HasSubstr("did not end within its limit"));
    EXPECT_TRUE(HasEnded("leader"));
    EXPECT_TRUE(HasEnded("child"));
}

TEST_F(RemoteCommandTest, ProcessesThatIgnorePolitenessAreEndedToo) {
    RemoteCommand command = Line("trap '' TERM HUP; echo $$ > leader; while :; do sleep 1; done");
    command.time_limit = kEnoughToStart;
    EXPECT_EQ(Run(command).failure.problem, SshProblem::kDeadline);
    EXPECT_TRUE(HasEnded("leader"));
}

TEST_F(RemoteCommandTest, InterruptionEndsTheProcessGroupAndKeepsWhatWasRead) {
    StartServer();
    SshTarget target = KeyTarget();
    bool is_cancelled = false;
    const std::string leader = server_->Home() + "/leader";
    target.is_cancelled = [&] {
        return is_cancelled = is_cancelled || std::filesystem::exists(leader);
    };
    shell_ = LoggedIn(target);
    const RemoteOutcome outcome = Run("echo first; sleep 0.1; echo $$ > leader; sleep 600");
    EXPECT_EQ(outcome.failure.problem, SshProblem::kCancelled);
    EXPECT_EQ(outcome.output, "first\n");
    EXPECT_TRUE(HasEnded("leader"));
}

TEST_F(RemoteCommandTest, TotalLimitEndsTheCommandAndItsGroup) {
    StartServer();
    SshTarget target = KeyTarget();
    target.limits.total = milliseconds(4000);
    shell_ = LoggedIn(target);
    EXPECT_EQ(Run("echo $$ > leader; sleep 600").failure.problem, SshProblem::kDeadline);
    EXPECT_TRUE(HasEnded("leader"));
}

TEST_F(RemoteCommandTest, ProcessLeftBehindDoesNotHoldTheCommandUp) {
    const RemoteOutcome outcome = Run("sleep 600 & echo $! > child; echo out; exit 3");
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.exit_status, 3);
    EXPECT_EQ(outcome.output, "out\n");
    EXPECT_TRUE(HasEnded("child"));
}

TEST_F(RemoteCommandTest, PrefixIsPutBeforeTheCommandThatEndsTheGroup) {
    RemoteCommand command = Line("echo $$ > leader; sleep 600");
    command.time_limit = kEnoughToStart;
    command.end_prefix = "cat > prefix-input; env";
    command.end_input = "for the prefix";
    EXPECT_EQ(Run(command).failure.problem, SshProblem::kDeadline);
    EXPECT_TRUE(HasEnded("leader"));
    EXPECT_EQ(test_support::TemporaryFolder::ReadFile(server_->Home() + "/prefix-input"),
              "for the prefix");
}

TEST_F(RemoteCommandTest, SecondChannelRefusedStillEndsTheCommand) {
    test_support::SshdSetup setup;
    setup.more_lines = {"MaxSessions 1"};
    StartServer(setup);
    RemoteCommand command = Line("echo $$ > leader; sleep 600");
    command.time_limit = kEnoughToStart;
    EXPECT_EQ(Run(command).failure.problem, SshProblem::kDeadline);
    EXPECT_TRUE(HasEnded("leader"));
}

TEST_F(RemoteCommandTest, QuietCommandIsNotIdleWhileItsServerAnswers) {
    StartServer();
    SshTarget target = KeyTarget();
    target.limits.idle = milliseconds(2500);
    target.limits.keep_alive = milliseconds(300);
    shell_ = LoggedIn(target);
    const RemoteOutcome outcome = Run("sleep 3.5; echo out");
    EXPECT_EQ(outcome.output, "out\n") << outcome.failure.text;
}

}  // namespace
}  // namespace Vantix::transport
