#include "platform/remote_command/ssh_remote_command.h"

#include "support/ssh_remote_command_test_base.h"

namespace Vantix::remote {
namespace {

using test_support::Breaks;
using test_support::Ends;
using test_support::RunsText;
using testing::_;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Return;
using testing::StartsWith;
using transport::RemoteCommand;
using transport::RemoteOutcome;
using transport::SshFailure;
using transport::SshProblem;

// ---- setup --------------------------------------------------------------------------------------

TEST_F(SshRemoteCommandTest, NothingIsSentBeforeSetup) {
    EXPECT_CALL(shell(), Connect).Times(0);
    EXPECT_CALL(shell(), Execute).Times(0);
    Make();
}

TEST_F(SshRemoteCommandTest, RefusedLoginIsSetupsResult) {
    EXPECT_CALL(shell(), Connect).WillOnce(Return(SshFailure{SshProblem::kAuthRefused, "no"}));
    EXPECT_CALL(shell(), Execute).Times(0);
    const TarselResult result = Make()->Setup();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("server7"));
}

TEST_F(SshRemoteCommandTest, RemoteLogOfAnEarlierRunDoesNotExplainThisOne) {
    output_.Write("remote-tarsel.log", "of an earlier run");
    EXPECT_CALL(shell(), Connect).WillOnce(Return(SshFailure{SshProblem::kAuthRefused, "no"}));
    EXPECT_EQ(Make()->Setup().code, AUTHENTICATION_FAILED);
    EXPECT_FALSE(std::filesystem::exists(output_.Path("remote-tarsel.log")));
}

TEST_F(SshRemoteCommandTest, NoticesOfTheChannelReachTheUser) {
    EXPECT_CALL(shell(), Notices).WillOnce(Return(std::vector<std::string>{"A new key."}));
    const auto remote = MakeReady();
    EXPECT_THAT(run_->Notices(), ElementsAre("A new key."));
}

TEST_F(SshRemoteCommandTest, MachineWithoutPrivateFolderIsNotSupported) {
    AnswersWith("system Linux\nmachine x86_64\n");
    const TarselResult result = Make()->Setup();
    EXPECT_EQ(result.code, REMOTE_MACHINE_NOT_SUPPORTED);
    EXPECT_THAT(result.message, StartsWith("No private folder could be made on server7"));
}

TEST_F(SshRemoteCommandTest, InstalledToolOfThisVersionIsUsed) {
    settings_.package_dir = packages_.Path("empty");
    EXPECT_CALL(shell(), Upload).Times(0);
    MakeReady();
}

TEST_F(SshRemoteCommandTest, ToolIsCarriedWhereThereIsNone) {
    settings_.package_dir = packages_.Path("");
    const std::string package = packages_.Write(kPackageName, "x");
    EXPECT_CALL(shell(), Upload(package, std::string(kFolder) + "/package.tar.gz", 0600))
        .WillOnce(Return(Sent()));
    AnswersWith(kMachine);
    EXPECT_CALL(shell(), Execute(_)).Times(testing::AnyNumber());
    EXPECT_CALL(shell(), Execute(RunsText("tar -xzf")))
        .WillOnce(Return(Ends(0,
                              "tool /tmp/tarsel.Abc123/tool/bin/tarsel\n"
                              "version tarsel 0.1.0\n")));
    EXPECT_EQ(Make()->Setup().code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, ToolIsCarriedWhereAnotherVersionIsInstalled) {
    settings_.package_dir = packages_.Path("");
    packages_.Write(kPackageName, "x");
    AnswersWith(std::string(kMachine) + "tool /usr/bin/tarsel\nversion tarsel 0.0.9\n");
    EXPECT_CALL(shell(), Upload).WillOnce(Return(Sent(SshProblem::kFileTransfer)));
    EXPECT_EQ(Make()->Setup().code, UPLOAD_FAILED);
}

TEST_F(SshRemoteCommandTest, WrongArchitectureHasTheRegisteredText) {
    settings_.package_dir = packages_.Path("");
    packages_.Write("tarsel-0.1.0-Linux-aarch64.tar.gz", "x");
    AnswersWith(kMachine);
    EXPECT_CALL(shell(), Upload).Times(0);
    const TarselResult result = Make()->Setup();
    EXPECT_EQ(result.code, NO_MATCHING_TOOL_PACKAGE);
    EXPECT_THAT(result.message, StartsWith(GetResultMessage(NO_MATCHING_TOOL_PACKAGE)));
    EXPECT_THAT(result.message, HasSubstr(kPackageName));
}

TEST_F(SshRemoteCommandTest, CarriedToolThatDoesNotRunIsNotSupported) {
    settings_.package_dir = packages_.Path("");
    packages_.Write(kPackageName, "x");
    AnswersWith(kMachine);
    ON_CALL(shell(), Upload).WillByDefault(Return(Sent()));
    ON_CALL(shell(), Execute(RunsText("tar -xzf")))
        .WillByDefault(Return(Ends(2, "", "tarsel: cannot open shared object file\n")));
    const TarselResult result = Make()->Setup();
    EXPECT_EQ(result.code, REMOTE_MACHINE_NOT_SUPPORTED);
    EXPECT_THAT(result.message, HasSubstr("(tarsel: cannot open shared object file)"));
}

TEST_F(SshRemoteCommandTest, PackageOfAnotherVersionInsideIsNoMatch) {
    settings_.package_dir = packages_.Path("");
    packages_.Write(kPackageName, "x");
    AnswersWith(kMachine);
    ON_CALL(shell(), Upload).WillByDefault(Return(Sent()));
    ON_CALL(shell(), Execute(RunsText("tar -xzf")))
        .WillByDefault(Return(Ends(0, "tool /tmp/x\nversion tarsel 7.7\n")));
    const TarselResult result = Make()->Setup();
    EXPECT_EQ(result.code, NO_MATCHING_TOOL_PACKAGE);
    EXPECT_THAT(result.message, HasSubstr("holds version 7.7 instead of 0.1.0"));
}

// ---- run ----------------------------------------------------------------------------------------

TEST_F(SshRemoteCommandTest, EmptyCommandIsTheLocalScanOfTheTool) {
    auto remote = MakeReady();
    EXPECT_CALL(shell(), Execute(_)).Times(testing::AnyNumber());
    EXPECT_CALL(shell(), Execute(RunsText("'/usr/bin/tarsel' scan --local --quiet --output "
                                          "'/tmp/tarsel.Abc123'")))
        .WillOnce(Return(Ends(0)));
    EXPECT_EQ(remote->Run("").code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, MissingToolIsToldWhenTheCommandNeedsIt) {
    auto remote = MakeReady(kMachine);
    const TarselResult result = remote->Run("");
    EXPECT_EQ(result.code, NO_MATCHING_TOOL_PACKAGE);
    EXPECT_THAT(result.message, HasSubstr("tarsel 0.1.0 is not installed there"));
}

TEST_F(SshRemoteCommandTest, CommandOfTheUsersOwnNeedsNoTool) {
    auto remote = MakeReady(kMachine);
    EXPECT_CALL(shell(), Execute(_)).Times(testing::AnyNumber());
    EXPECT_CALL(shell(), Execute(RunsText("/opt/own/scan --into '/tmp/tarsel.Abc123'")))
        .WillOnce(Return(Ends(0)));
    EXPECT_EQ(remote->Run("/opt/own/scan --into {folder}").code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, FailedCommandThatLeftAResultIsASuccess) {
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("scan --local"))).WillByDefault(Return(Ends(4)));
    FolderHolds("file common_result.xml\n");
    EXPECT_EQ(remote->Run("").code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, FailedCommandWithoutResultTellsItsLastWords) {
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("scan --local")))
        .WillByDefault(Return(Ends(127, "", "first\nsh: no\x1B such thing\n\n")));
    FolderHolds("file Tarsel-update-scan.xml\nother common_result.xml\n");
    const TarselResult result = remote->Run("");
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message,
              "The command on server7 ended with the exit code 127 and left no result (sh: no  "
              "such thing); see tarsel.log for more.");
}

TEST_F(SshRemoteCommandTest, LogOfAFailedCommandIsFetched) {
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("scan --local"))).WillByDefault(Return(Ends(1)));
    FolderHolds("file tarsel.log\n");
    EXPECT_EQ(remote->Run("").code, GENERIC_FAILURE);
    EXPECT_EQ(output_.Read("remote-tarsel.log"), "/tmp/tarsel.Abc123/tarsel.log");
}

TEST_F(SshRemoteCommandTest, KilledCommandTellsTheSignal) {
    auto remote = MakeReady();
    RemoteOutcome killed = Ends(-1);
    killed.exit_signal = "KILL";
    ON_CALL(shell(), Execute(RunsText("scan --local"))).WillByDefault(Return(killed));
    FolderHolds("");
    EXPECT_THAT(remote->Run("").message, HasSubstr("ended by the signal KILL"));
}

TEST_F(SshRemoteCommandTest, PasswordForSudoIsInputOfTheRun) {
    settings_.password = "Invented-Pass-7";
    auto remote =
        MakeReady("system Linux\nmachine x86_64\nuser 1000\nname me\nfolder /tmp/tarsel.Abc123\n" +
                  std::string(kTool));
    EXPECT_CALL(shell(), Execute(_)).Times(testing::AnyNumber());
    EXPECT_CALL(shell(), Execute(RunsText("sudo -n -- '/usr/bin/tarsel' --version")))
        .WillOnce(Return(Ends(1)));
    EXPECT_CALL(shell(), Execute(RunsText("sudo -k -S -p tarsel-")))
        .WillRepeatedly(Return(Ends(0)));
    EXPECT_CALL(shell(), Execute(AllOf(RunsText("scan --local"), Not(RunsText("Invented")))))
        .WillOnce([](const RemoteCommand& command) {
            EXPECT_EQ(command.input, "Invented-Pass-7\n");
            EXPECT_EQ(command.end_input, "Invented-Pass-7\n");
            EXPECT_THAT(command.end_prefix, StartsWith("sudo -k -S"));
            return Ends(0);
        });
    EXPECT_EQ(remote->Run("").code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, DeadlineIsToldFromInterruption) {
    Patience::Clock::time_point now = Patience::Clock::now();
    settings_.patience =
        std::make_shared<Patience>(run_, std::chrono::seconds(5), [&now] { return now; });
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("scan --local"))).WillByDefault([&](const RemoteCommand&) {
        now += std::chrono::seconds(6);
        return Breaks(SshProblem::kCancelled);
    });
    EXPECT_EQ(remote->Run("").code, TIMEOUT);
    run_->Cancel();
    EXPECT_EQ(remote->Run("").code, INTERRUPTED_BY_USER);
}

}  // namespace
}  // namespace Vantix::remote
