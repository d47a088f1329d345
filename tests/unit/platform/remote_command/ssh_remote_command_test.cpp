#include "platform/remote_command/ssh_remote_command.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "support/remote_shell_mock.h"
#include "support/temporary_folder.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

using test_support::Breaks;
using test_support::Ends;
using test_support::RunsText;
using testing::_;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::NiceMock;
using testing::Not;
using testing::Return;
using testing::StartsWith;
using transport::RemoteCommand;
using transport::RemoteOutcome;
using transport::SshFailure;
using transport::SshProblem;
using transport::TransferOutcome;
using transport::TransferWay;

constexpr const char* kFolder = "/tmp/tarsel.Abc123";
constexpr const char* kMachine =
    "system Linux\nmachine x86_64\nuser 0\nname root\nfolder /tmp/tarsel.Abc123\n";
constexpr const char* kTool = "tool /usr/bin/tarsel\nversion tarsel 0.1.0\n";
constexpr const char* kPackageName = "tarsel-0.1.0-Linux-x86_64.tar.gz";

TransferOutcome Sent(SshProblem problem = SshProblem::kNone) {
    TransferOutcome outcome;
    outcome.failure.problem = problem;
    outcome.way = problem == SshProblem::kNone ? TransferWay::kSftp : TransferWay::kNone;
    return outcome;
}

class SshRemoteCommandTest : public testing::Test {
  protected:
    SshRemoteCommandTest() {
        settings_.target = "server7";
        settings_.output_dir = output_.Path("");
        settings_.tool_version = "0.1.0";
        settings_.run = run_;
        settings_.patience = std::make_shared<Patience>(run_, std::chrono::seconds(0));
        fs::create_directory(packages_.Path("empty"));
    }

    // The machine answers like this unless a test says otherwise.
    void AnswersWith(const std::string& machine) {
        ON_CALL(shell(), Execute(RunsText("mktemp -d"))).WillByDefault(Return(Ends(0, machine)));
    }

    NiceMock<test_support::RemoteShellMock>& shell() { return *shell_; }

    std::unique_ptr<SshRemoteCommand> Make() {
        return std::make_unique<SshRemoteCommand>(std::move(owned_), settings_);
    }

    std::unique_ptr<SshRemoteCommand> MakeReady(const std::string& machine = std::string(kMachine) +
                                                                             kTool) {
        AnswersWith(machine);
        auto remote = Make();
        EXPECT_EQ(remote->Setup().code, SUCCEED);
        return remote;
    }

    // The private folder holds these; each is fetched with its name as content.
    void FolderHolds(const std::string& listing) {
        ON_CALL(shell(), Execute(RunsText("printf 'file %s")))
            .WillByDefault(Return(Ends(0, listing)));
        ON_CALL(shell(), Download)
            .WillByDefault(
                [](const std::string& remote_path, const std::string& local_path, std::uint64_t) {
                    std::ofstream(local_path) << remote_path;
                    return Sent();
                });
    }

    test_support::TemporaryFolder output_;
    test_support::TemporaryFolder packages_;
    std::shared_ptr<VantixConnection::RunContext> run_ =
        std::make_shared<VantixConnection::RunContext>();
    RemoteSettings settings_;
    std::unique_ptr<NiceMock<test_support::RemoteShellMock>> owned_ =
        std::make_unique<NiceMock<test_support::RemoteShellMock>>();
    NiceMock<test_support::RemoteShellMock>* shell_ = owned_.get();
};

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

// ---- download -----------------------------------------------------------------------------------

TEST_F(SshRemoteCommandTest, EveryFileLandsUnderItsBaseName) {
    auto remote = MakeReady();
    FolderHolds("file Tarsel-update-scan.xml\nfile common_result.xml\nfile tarsel.log\n");
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
    EXPECT_EQ(output_.Read("Tarsel-update-scan.xml"), "/tmp/tarsel.Abc123/Tarsel-update-scan.xml");
    EXPECT_EQ(output_.Read("common_result.xml"), "/tmp/tarsel.Abc123/common_result.xml");
    EXPECT_EQ(output_.Read("remote-tarsel.log"), "/tmp/tarsel.Abc123/tarsel.log");
    EXPECT_FALSE(fs::exists(output_.Path("tarsel.log")));
}

TEST_F(SshRemoteCommandTest, MissingFilesAreNoFailureAndOldOnesAreNotTakenForThem) {
    auto remote = MakeReady();
    for (const char* const name :
         {"Tarsel-update-scan.xml", "common_result.xml", "remote-tarsel.log"}) {
        output_.Write(name, "of an earlier run");
    }
    FolderHolds("");
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
    EXPECT_FALSE(fs::exists(remote->GetLocalPath("Tarsel-update-scan.xml")));
    EXPECT_FALSE(fs::exists(remote->GetLocalPath("common_result.xml")));
    EXPECT_FALSE(fs::exists(remote->GetLocalPath("remote-tarsel.log")));
    EXPECT_EQ(output_.Read("Tarsel-update-scan.xml.old"), "of an earlier run");
}

TEST_F(SshRemoteCommandTest, SymbolicLinkIsNotFetched) {
    auto remote = MakeReady();
    FolderHolds("other Tarsel-update-scan.xml\nfile common_result.xml\n");
    EXPECT_CALL(shell(), Download).Times(0);
    const TarselResult result = remote->DownloadLogs();
    EXPECT_EQ(result.code, DOWNLOAD_FAILED);
    EXPECT_THAT(result.message, StartsWith("Tarsel-update-scan.xml on server7 is no regular file"));
}

TEST_F(SshRemoteCommandTest, EveryDownloadHasALimit) {
    settings_.max_report_bytes = 1000;
    auto remote = MakeReady();
    FolderHolds("file Tarsel-update-scan.xml\nfile common_result.xml\nfile tarsel.log\n");
    EXPECT_CALL(shell(), Download(EndsWith("scan.xml"), _, 1000)).WillOnce(Return(Sent()));
    EXPECT_CALL(shell(), Download(EndsWith("result.xml"), _, 4 * 1024 * 1024))
        .WillOnce(Return(Sent()));
    EXPECT_CALL(shell(), Download(EndsWith(".log"), _, 16 * 1024 * 1024)).WillOnce(Return(Sent()));
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, HugeReportIsAFailedDownload) {
    auto remote = MakeReady();
    FolderHolds("file Tarsel-update-scan.xml\n");
    EXPECT_CALL(shell(), Download).WillOnce(Return(Sent(SshProblem::kFileTooLarge)));
    EXPECT_EQ(remote->DownloadLogs().code, DOWNLOAD_FAILED);
}

TEST_F(SshRemoteCommandTest, LogThatCannotBeFetchedCostsNothing) {
    auto remote = MakeReady();
    FolderHolds("file tarsel.log\n");
    EXPECT_CALL(shell(), Download).WillOnce(Return(Sent(SshProblem::kFileTransfer)));
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, SourcesOfTheRemoteRunBecomeThoseOfThisOne) {
    auto remote = MakeReady();
    FolderHolds("file common_result.xml\n");
    EXPECT_CALL(shell(), Download).WillOnce([](const auto&, const std::string& path, auto) {
        std::ofstream(path) << "<RESULT><CODE>0</CODE><EXITCODE>3</EXITCODE><SOURCES><SOURCE>"
                               "<NAME>disks</NAME><STATE>failed</STATE></SOURCE></SOURCES>"
                               "</RESULT>";
        return Sent();
    });
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
    EXPECT_TRUE(run_->IsPartial());
}

TEST_F(SshRemoteCommandTest, FolderThatIsGoneIsAFailedDownload) {
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("printf 'file %s"))).WillByDefault(Return(Ends(1)));
    EXPECT_EQ(remote->DownloadLogs().code, DOWNLOAD_FAILED);
}

TEST_F(SshRemoteCommandTest, LocalPathIsTheOutputFolderAndTheBaseNameAlone) {
    const auto remote = Make();
    const std::string file = (fs::path(settings_.output_dir) / "x.xml").string();
    EXPECT_EQ(remote->GetLocalPath("x.xml"), file);
    EXPECT_EQ(remote->GetLocalPath("../../etc/x.xml"), file);
    EXPECT_EQ(remote->GetLocalPath("/etc/x.xml"), file);
    EXPECT_EQ(remote->GetLocalPath("C:\\x\\x.xml"), file);
}

TEST_F(SshRemoteCommandTest, NameThatIsNoFileNameHasNoLocalPath) {
    const auto remote = Make();
    for (const char* const name : {"", ".", "..", "a/..", "a/", "\\"}) {
        EXPECT_EQ(remote->GetLocalPath(name), "") << name;
    }
    EXPECT_EQ(remote->GetLocalPath(std::string("x\0y", 3)), "");
}

// ---- end ----------------------------------------------------------------------------------------

TEST_F(SshRemoteCommandTest, FolderIsRemovedAtTheEnd) {
    auto remote = MakeReady();
    EXPECT_CALL(shell(), Execute(RunsText("rm -rf '/tmp/tarsel.Abc123'")))
        .WillOnce(Return(Ends(0)));
    remote.reset();
    EXPECT_THAT(run_->Notices(), IsEmpty());
}

TEST_F(SshRemoteCommandTest, FolderIsRemovedAlsoAfterAnInterruption) {
    auto remote = MakeReady();
    run_->Cancel();
    EXPECT_CALL(shell(), Execute(RunsText("rm -rf"))).WillOnce([this](const RemoteCommand&) {
        EXPECT_FALSE(settings_.patience->IsOver());
        return Ends(0);
    });
    remote.reset();
}

TEST_F(SshRemoteCommandTest, FolderIsKeptOnDemandAndItsPlaceIsTold) {
    settings_.keeps_folder = true;
    auto remote = MakeReady();
    EXPECT_CALL(shell(), Execute).Times(0);
    remote.reset();
    EXPECT_THAT(run_->Notices(),
                ElementsAre("The remote folder was kept: /tmp/tarsel.Abc123 on server7."));
}

TEST_F(SshRemoteCommandTest, FolderThatCannotBeRemovedIsTold) {
    auto remote = MakeReady();
    ON_CALL(shell(), Execute(RunsText("rm -rf")))
        .WillByDefault(Return(Breaks(SshProblem::kConnectionLost)));
    remote.reset();
    EXPECT_THAT(run_->Notices(), ElementsAre("The remote folder could not be removed: "
                                             "/tmp/tarsel.Abc123 on server7."));
}

// ---- factory ------------------------------------------------------------------------------------

class RemoteCommandFactoryTest : public testing::Test {
  protected:
    std::string ErrorOf(const std::string& uri, const std::string& output_dir,
                        const std::string& package_dir) const {
        try {
            RemoteCommandFactory::create(Uri(uri, false), output_dir, package_dir, false);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(RemoteCommandFactoryTest, ChannelIsMadeWithoutContactingAnybody) {
    EXPECT_EQ(ErrorOf("ssh://host.invalid", folder_.Path(""), ""), "");
    EXPECT_EQ(ErrorOf("ssh://host.invalid", "", folder_.Path("")), "");
}

TEST_F(RemoteCommandFactoryTest, OtherSchemeIsRefused) {
    EXPECT_EQ(ErrorOf("telnet://host", folder_.Path(""), ""),
              "Remote machines are reached over SSH only, not over telnet.");
}

TEST_F(RemoteCommandFactoryTest, MissingFoldersAreRefused) {
    EXPECT_EQ(ErrorOf("ssh://host", folder_.Path("no"), ""),
              "The output folder \"" + folder_.Path("no") + "\" is no folder.");
    EXPECT_EQ(ErrorOf("ssh://host", folder_.Path(""), folder_.Path("no")),
              "The package folder \"" + folder_.Path("no") + "\" is no folder.");
}

}  // namespace
}  // namespace Vantix::remote
