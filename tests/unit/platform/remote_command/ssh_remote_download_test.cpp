// What is fetched, and what is left behind.
#include "support/ssh_remote_command_test_base.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

using test_support::Breaks;
using test_support::Ends;
using test_support::RunsText;
using testing::_;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Return;
using testing::StartsWith;
using transport::RemoteCommand;
using transport::SshProblem;

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

TEST_F(SshRemoteCommandTest, ReportThatCannotBeSetAsideIsNotTakenForThisRuns) {
    auto remote = MakeReady();
    FolderHolds("");
    output_.Write("Tarsel-update-scan.xml", "of an earlier run");
    fs::create_directories(output_.Path("Tarsel-update-scan.xml.old/occupied"));
    EXPECT_CALL(shell(), Download).Times(0);
    const TarselResult result = remote->DownloadLogs();
    EXPECT_EQ(result.code, WRITE_FILE_FAILED);
    EXPECT_THAT(result.message, EndsWith("of an earlier run cannot be removed; nothing was fetched "
                                         "from server7."));
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
    EXPECT_CALL(shell(), Download(EndsWith("scan.xml"), _, 1000))
        .WillOnce([](const auto&, const std::string& path, auto) {
            std::ofstream(path) << "<SCAN/>";
            return Sent();
        });
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

TEST_F(SshRemoteCommandTest, ReportWithMoreThanAnyScanWritesIsAnInvalidFile) {
    auto remote = MakeReady();
    FolderHolds("file Tarsel-update-scan.xml\n");
    EXPECT_CALL(shell(), Download).WillOnce([](const auto&, const std::string& path, auto) {
        std::ofstream(path) << "<SCAN>" << std::string(100000, 'x') << "</SCAN>";
        return Sent();
    });
    const TarselResult result = remote->DownloadLogs();
    EXPECT_EQ(result.code, INVALID_FILE);
    EXPECT_THAT(result.message, StartsWith("The scan file from server7 holds more than any scan"));
}

TEST_F(SshRemoteCommandTest, LogThatCannotBeFetchedCostsNothing) {
    auto remote = MakeReady();
    FolderHolds("file tarsel.log\n");
    EXPECT_CALL(shell(), Download).WillOnce(Return(Sent(SshProblem::kFileTransfer)));
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
}

TEST_F(SshRemoteCommandTest, LogIsCleanedOfControlCharacters) {
    auto remote = MakeReady();
    FolderHolds("file tarsel.log\n");
    EXPECT_CALL(shell(), Download).WillOnce([](const auto&, const std::string& path, auto) {
        std::ofstream(path, std::ios::binary) << "one\n\x1B[2Jtwo\n";
        return Sent();
    });
    EXPECT_EQ(remote->DownloadLogs().code, SUCCEED);
    EXPECT_EQ(output_.Read("remote-tarsel.log"), "one\n [2Jtwo\n");
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

TEST_F(SshRemoteCommandTest, FolderOfAnInterruptedSetupIsRemoved) {
    transport::RemoteOutcome interrupted = Breaks(SshProblem::kCancelled);
    interrupted.output = kMachine;
    ON_CALL(shell(), Execute(RunsText("mktemp -d"))).WillByDefault(Return(interrupted));
    auto remote = Make();
    EXPECT_EQ(remote->Setup().code, INTERRUPTED_BY_USER);
    EXPECT_CALL(shell(), Execute(RunsText("rm -rf '/tmp/tarsel.Abc123'")))
        .WillOnce(Return(Ends(0)));
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

}  // namespace
}  // namespace Vantix::remote
