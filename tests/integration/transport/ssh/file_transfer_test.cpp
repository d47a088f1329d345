// Files to and from a real sshd, with and without SFTP.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "ssh_test_base.h"

namespace Vantix::transport {
namespace {

using test_support::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Not a multiple of any block, with every byte in it.
std::string Bytes(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>((i * 7 + i / 251) & 0xFFU);
    return bytes;
}

class FileTransferTest : public SshTest {
  protected:
    RemoteShell& Shell(const test_support::SshdSetup& setup = {}) {
        StartServer(setup);
        shell_ = LoggedIn(KeyTarget());
        return *shell_;
    }
    static test_support::SshdSetup WithoutSftp() {
        test_support::SshdSetup setup;
        setup.has_sftp = false;
        return setup;
    }
    static test_support::SshdSetup WithoutSftpAndScp() {
        test_support::SshdSetup setup;
        setup.has_sftp = false;
        setup.shell = "/bin/bash";
        return setup;
    }
    /// A start file that leaves the commands no scp.
    void HideScp() const {
        const std::string file = server_->Home() + "/.bashrc";
        std::ofstream(file)
            << "mkdir -p \"$HOME/bin\"; for name in cat wc chmod sh mkdir; do\n"
               "ln -sf \"/bin/$name\" \"$HOME/bin/$name\"; done; PATH=\"$HOME/bin\"\n";
        server_->GiveToAccount(file);
    }
    std::string Remote(const std::string& name) const { return server_->Home() + "/" + name; }
    std::string PutRemote(const std::string& name, const std::string& content) const {
        std::ofstream(Remote(name), std::ios::binary) << content;
        server_->GiveToAccount(Remote(name));
        return Remote(name);
    }
    static unsigned ModeOf(const std::string& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions());
    }

    std::unique_ptr<RemoteShell> shell_;
};

TEST_F(FileTransferTest, DownloadBySftpBringsEveryByte) {
    RemoteShell& shell = Shell();
    const std::string content = Bytes(3000001);
    const auto outcome = shell.Download(PutRemote("data", content), folder_.Path("data"), kMuch);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kSftp);
    EXPECT_EQ(outcome.bytes, content.size());
    EXPECT_TRUE(folder_.Read("data") == content);
    EXPECT_THAT(outcome.issues, IsEmpty());
}

TEST_F(FileTransferTest, UploadBySftpStoresEveryByteWithItsMode) {
    RemoteShell& shell = Shell();
    const std::string content = Bytes(3000001);
    const auto outcome = shell.Upload(folder_.Write("tool", content), Remote("tool"), 0700);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kSftp);
    EXPECT_TRUE(TemporaryFolder::ReadFile(Remote("tool")) == content);
    EXPECT_EQ(ModeOf(Remote("tool")), 0700U);
}

TEST_F(FileTransferTest, WithoutSftpScpDownloads) {
    RemoteShell& shell = Shell(WithoutSftp());
    const std::string content = Bytes(500001);
    const auto outcome = shell.Download(PutRemote("data", content), folder_.Path("data"), kMuch);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kScp);
    EXPECT_TRUE(folder_.Read("data") == content);
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("no subsystem sftp")));
}

TEST_F(FileTransferTest, WithoutSftpScpUploads) {
    RemoteShell& shell = Shell(WithoutSftp());
    const std::string content = Bytes(500001);
    PutRemote("tool", "an older and\nlonger one");
    const auto outcome = shell.Upload(folder_.Write("tool", content), Remote("tool"), 0700);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kScp);
    EXPECT_TRUE(TemporaryFolder::ReadFile(Remote("tool")) == content);
    EXPECT_EQ(ModeOf(Remote("tool")), 0700U);
}

TEST_F(FileTransferTest, WithoutSftpAndScpTheShellDownloads) {
    RemoteShell& shell = Shell(WithoutSftpAndScp());
    HideScp();
    const std::string content = Bytes(500001);
    const auto outcome = shell.Download(PutRemote("data", content), folder_.Path("data"), kMuch);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kShell);
    EXPECT_TRUE(folder_.Read("data") == content);
    EXPECT_THAT(outcome.issues, ElementsAre(HasSubstr("SFTP: "), HasSubstr("SCP: ")));
}

TEST_F(FileTransferTest, WithoutSftpAndScpTheShellUploads) {
    RemoteShell& shell = Shell(WithoutSftpAndScp());
    HideScp();
    const std::string content = Bytes(500001);
    const auto outcome = shell.Upload(folder_.Write("tool", content), Remote("tool"), 0700);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(outcome.way, TransferWay::kShell);
    EXPECT_TRUE(TemporaryFolder::ReadFile(Remote("tool")) == content);
    EXPECT_EQ(ModeOf(Remote("tool")), 0700U);
}

TEST_F(FileTransferTest, EmptyFilesTravelToo) {
    RemoteShell& shell = Shell();
    EXPECT_FALSE(shell.Upload(folder_.Write("empty", ""), Remote("empty"), 0600).failure);
    const auto outcome = shell.Download(Remote("empty"), folder_.Path("back"), kMuch);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_TRUE(std::filesystem::exists(folder_.Path("back")));
}

TEST_F(FileTransferTest, MissingRemoteFileIsSaidByEveryWay) {
    RemoteShell& shell = Shell();
    const auto by_sftp = shell.Download(Remote("nothing"), folder_.Path("data"), kMuch);
    EXPECT_EQ(by_sftp.failure.problem, SshProblem::kNoSuchFile);
    EXPECT_THAT(by_sftp.failure.text, HasSubstr("nothing"));
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
}

TEST_F(FileTransferTest, MissingRemoteFileIsSaidByScp) {
    RemoteShell& shell = Shell(WithoutSftp());
    EXPECT_EQ(shell.Download(Remote("nothing"), folder_.Path("data"), kMuch).failure.problem,
              SshProblem::kNoSuchFile);
}

TEST_F(FileTransferTest, MissingRemoteFileIsSaidByTheShell) {
    RemoteShell& shell = Shell(WithoutSftpAndScp());
    HideScp();
    EXPECT_EQ(shell.Download(Remote("nothing"), folder_.Path("data"), kMuch).failure.problem,
              SshProblem::kNoSuchFile);
}

TEST_F(FileTransferTest, UnreadableFileFailsByAllWaysAndTheSentenceNamesThem) {
    RemoteShell& shell = Shell();
    std::filesystem::permissions(PutRemote("data", "x"), std::filesystem::perms::none);
    const auto outcome = shell.Download(Remote("data"), folder_.Path("data"), kMuch);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kFileTransfer);
    EXPECT_THAT(outcome.failure.text, HasSubstr("SFTP: SFTP refused to open: Permission denied"));
    EXPECT_THAT(outcome.failure.text, HasSubstr("SCP: "));
    EXPECT_THAT(outcome.failure.text, HasSubstr("shell: "));
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
    EXPECT_EQ(outcome.way, TransferWay::kNone);
}

TEST_F(FileTransferTest, FileBeyondTheLimitIsNotFetched) {
    for (const bool has_sftp : {true, false}) {
        test_support::SshdSetup setup;
        setup.has_sftp = has_sftp;
        RemoteShell& shell = Shell(setup);
        const auto outcome =
            shell.Download(PutRemote("data", Bytes(2000)), folder_.Path("data"), 1999);
        EXPECT_EQ(outcome.failure.problem, SshProblem::kFileTooLarge) << has_sftp;
        EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
        shell_.reset();
    }
}

TEST_F(FileTransferTest, EndlessFileEndsAtTheLimit) {
    RemoteShell& shell = Shell();
    const auto outcome = shell.Download("/dev/zero", folder_.Path("data"), 1000000);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kFileTooLarge);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data.part")));
}

TEST_F(FileTransferTest, FileMadeWhileItIsReadIsFetchedAlthoughItsSizeIsZero) {
    RemoteShell& shell = Shell();
    const auto outcome = shell.Download("/proc/version", folder_.Path("data"), kMuch);
    EXPECT_FALSE(outcome.failure) << outcome.failure.text;
    EXPECT_EQ(folder_.Read("data"), TemporaryFolder::ReadFile("/proc/version"));
}

TEST_F(FileTransferTest, OddPathsAreFilesAndNothingElse) {
    for (const bool has_sftp : {true, false}) {
        test_support::SshdSetup setup;
        setup.has_sftp = has_sftp;
        RemoteShell& shell = Shell(setup);
        for (const std::string name : {"-rf", "it's", "a b\"$(touch made)", "line\nbreak", "*"}) {
            ASSERT_FALSE(shell.Upload(folder_.Write("x", "one"), name, 0600).failure) << name;
            EXPECT_EQ(TemporaryFolder::ReadFile(Remote(name)), "one") << name;
            const auto outcome = shell.Download(name, folder_.Path("back"), kMuch);
            EXPECT_FALSE(outcome.failure) << name << outcome.failure.text;
            EXPECT_EQ(folder_.Read("back"), "one") << name;
        }
        EXPECT_FALSE(std::filesystem::exists(Remote("made")));
        shell_.reset();
    }
}

TEST_F(FileTransferTest, LocalProblemsAreToldAsSuch) {
    RemoteShell& shell = Shell();
    EXPECT_EQ(shell.Upload(folder_.Path("nothing"), Remote("x"), 0600).failure.problem,
              SshProblem::kLocalFile);
    const auto outcome =
        shell.Download(PutRemote("data", "x"), folder_.Path("no-folder/data"), kMuch);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kLocalFile);
}

TEST_F(FileTransferTest, FolderThatIsNotThereFailsTheUpload) {
    RemoteShell& shell = Shell();
    const auto outcome = shell.Upload(folder_.Write("x", "1"), Remote("no-folder/x"), 0600);
    EXPECT_TRUE(outcome.failure);
    EXPECT_THAT(outcome.failure.text, Not(IsEmpty()));
}

TEST_F(FileTransferTest, PipeThatNobodyWritesToEndsWithinTheIdleLimit) {
    StartServer();
    SshTarget target = KeyTarget();
    target.limits.idle = std::chrono::milliseconds(2500);
    target.limits.keep_alive = std::chrono::milliseconds(300);
    shell_ = LoggedIn(target);
    ASSERT_TRUE(shell_->Execute(Line("mkfifo pipe")).Succeeded());
    const auto outcome = shell_->Download(Remote("pipe"), folder_.Path("data"), kMuch);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kTimedOut);
    EXPECT_THAT(outcome.failure.text, HasSubstr("standstill"));
    // The server's half still waits for a writer and would do so for ever. Nothing is written: it
    // may be gone before that arrives.
    EXPECT_TRUE(shell_->Execute(Line(": <> pipe")).Succeeded());
}

}  // namespace
}  // namespace Vantix::transport
