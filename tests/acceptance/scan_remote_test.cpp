#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "acceptance/scan_remote_test_base.h"

namespace acceptance {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::Not;

class ScanRemoteTest : public ScanRemoteTestBase {};

// ---- login --------------------------------------------------------------------------------------

TEST_F(ScanRemoteTest, KeyLogsInWithoutPassword) {
    test_support::ChildSetup setup =
        RemoteScanBy(LeaveResult("0"), {"--ssh-key", server_->KeyFile()});
    setup.environment.erase("TARSEL_PASSWORD");
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(ScanRemoteTest, EncryptedKeyLogsInWithItsPassphrase) {
    const std::string key = folder_.Path("locked");
    fs::copy_file(server_->KeyFile(), key);
    ASSERT_EQ(std::system(("ssh-keygen -q -p -P '' -N 'Fake-Phrase-1' -f " + key).c_str()), 0);
    test_support::ChildSetup setup = RemoteScanBy(LeaveResult("0"), {"--ssh-key", key});
    setup.environment.erase("TARSEL_PASSWORD");
    setup.environment["TARSEL_SSH_PASSPHRASE"] = "Fake-Phrase-1";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
}

TEST_F(ScanRemoteTest, WrongPasswordIsTriedOnce) {
    test_support::ChildSetup setup = RemoteScanBy(LeaveResult("0"));
    setup.environment["TARSEL_PASSWORD"] = "Wrong-Invented-1";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4);
    EXPECT_EQ(server_->CountInLog("Failed password"), 1);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>12</CODE>"));
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
}

TEST_F(ScanRemoteTest, StrangeKeyHasTheExitCodeOfARefusedLogin) {
    test_support::ChildSetup setup =
        RemoteScanBy(LeaveResult("0"), {"--ssh-key", server_->StrangeKeyFile()});
    setup.environment.erase("TARSEL_PASSWORD");
    EXPECT_EQ(Run(setup).exit_code, 4);
}

TEST_F(ScanRemoteTest, ChangedHostKeyEndsBeforeAnythingIsSent) {
    const std::string line = server_->KnownHostsLine();
    const std::string key =
        test_support::TemporaryFolder::ReadFile(server_->StrangeKeyFile() + ".pub");
    folder_.Write("known_hosts", line.substr(0, line.find(' ') + 1) + key);
    const Ended ended = Run(RemoteScanBy(LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 6) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("SHA256:"));
    EXPECT_EQ(server_->Log().find("password"), std::string::npos);
}

TEST_F(ScanRemoteTest, UnknownHostKeyIsRefusedUnlessNewOnesAreAccepted) {
    folder_.Write("known_hosts", "");
    EXPECT_EQ(Run(RemoteScanBy(LeaveResult("0"))).exit_code, 6);
    const Ended accepted = Run(RemoteScanBy(LeaveResult("0"), {"--host-key", "accept-new"}));
    EXPECT_EQ(accepted.exit_code, 0) << accepted.errors;
    EXPECT_EQ(Run(RemoteScanBy(LeaveResult("0"))).exit_code, 0);
}

TEST_F(ScanRemoteTest, AnyHostKeyIsTakenOnWishAndSaidAloud) {
    folder_.Write("known_hosts", "");
    const Ended ended = Run(RemoteScanBy(LeaveResult("0"), {"--host-key", "off"}));
    EXPECT_EQ(ended.exit_code, 0);
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
}

TEST_F(ScanRemoteTest, ServerThatIsNotThereIsUnreachable) {
    server_->Stop();
    const Ended ended = Run(RemoteScanBy(LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("Nobody answered over SSH at 127.0.0.1"));
}

TEST_F(ScanRemoteTest, PasswordIsAskedForWithoutShowingIt) {
    test_support::ChildSetup setup = RemoteScanBy(LeaveResult("0"));
    setup.environment.erase("TARSEL_PASSWORD");
    setup.has_terminal = true;
    test_support::ChildProcess scan(setup);
    ASSERT_TRUE(scan.WaitForErrors("Password for " + ServerTarget() + " (empty: only keys): "));
    EXPECT_FALSE(scan.TerminalEchoes());
    scan.Type(std::string(test_support::kSshPassword) + "\n");
    EXPECT_EQ(scan.Wait(), 0) << scan.Errors();
    EXPECT_THAT(scan.Errors(), Not(HasSubstr(test_support::kSshPassword)));
}

TEST_F(ScanRemoteTest, WithoutKeyPasswordAndTerminalTheLoginFailsAndSaysWhatToGive) {
    test_support::ChildSetup setup = RemoteScanBy(LeaveResult("0"));
    setup.environment.erase("TARSEL_PASSWORD");
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("--ssh-key"));
}

// ---- what the remote run leaves -----------------------------------------------------------------

TEST_F(ScanRemoteTest, RunWithoutScanFileSucceedsWithAnEmptyReport) {
    const Ended ended = Run(RemoteScanBy(LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), HasSubstr("<TOTAL>0</TOTAL>"));
}

TEST_F(ScanRemoteTest, RunWithoutResultFails) {
    const Ended ended = Run(RemoteScanBy("true"));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("Failed to extract remote common result"));
}

TEST_F(ScanRemoteTest, ResultOfAnEarlierRunIsNotTakenForThisOnes) {
    EXPECT_EQ(Run(RemoteScanBy(LeaveResult("0"))).exit_code, 0);
    EXPECT_EQ(Run(RemoteScanBy("true")).exit_code, 1);
}

TEST_F(ScanRemoteTest, VerdictOfTheRemoteRunIsTheVerdict) {
    const Ended ended = Run(RemoteScanBy(LeaveResult("12", "Refused there.") + "; exit 4"));
    EXPECT_EQ(ended.exit_code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("Refused there"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<MESSAGE>Refused there.</MESSAGE>"));
}

TEST_F(ScanRemoteTest, PartialRemoteRunIsPartialHere) {
    const Ended ended =
        Run(RemoteScanBy("printf '<RESULT><CODE>0</CODE><EXITCODE>3</EXITCODE><SOURCES><SOURCE>"
                         "<NAME>disks</NAME><STATE>denied</STATE></SOURCE></SOURCES></RESULT>' "
                         ">{folder}/common_result.xml; exit 3"));
    EXPECT_EQ(ended.exit_code, 3) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("disks"));
}

TEST_F(ScanRemoteTest, FailedCommandTellsWhy) {
    const Ended ended = Run(RemoteScanBy("echo 'no such thing' >&2; exit 9"));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("ended with the exit code 9 and left no result (no such "
                                        "thing)"));
}

TEST_F(ScanRemoteTest, ServerThatGoesAwayDuringTheRunIsUnreachable) {
    const Ended ended = Run(RemoteScanBy("kill -9 $PPID; sleep 5"));
    EXPECT_EQ(ended.exit_code, 5) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("The SSH connection was cut to 127.0.0.1"));
    EXPECT_THAT(ended.errors,
                HasSubstr("The remote folder could not be removed: " + RemoteFolder()));
    fs::remove_all(RemoteFolder());
}

TEST_F(ScanRemoteTest, NoiseOfStartFilesDoesNotReachTheData) {
    test_support::SshdSetup setup;
    const std::string shell = folder_.Path("noisy");
    folder_.Write("noisy", "#!/bin/sh\necho folder /tmp/tarsel.forged\nexec /bin/sh \"$@\"\n");
    fs::permissions(shell, fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    setup.shell = shell;
    StartServer(setup);
    const Ended ended = Run(RemoteScanBy(LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("tarsel.log"), HasSubstr("bytes that the start files of the account"));
    EXPECT_THAT(RemoteFolder(), Not(HasSubstr("forged")));
}

TEST_F(ScanRemoteTest, ChattyCommandDoesNotStall) {
    const Ended ended =
        Run(RemoteScanBy("head -c 10485760 /dev/zero | tr '\\0' x; head -c "
                         "10485760 /dev/zero | tr '\\0' y >&2; " +
                         LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
}

// ---- a hostile server ---------------------------------------------------------------------------

TEST_F(ScanRemoteTest, SymbolicLinkIsNotFollowed) {
    const Ended ended = Run(
        RemoteScanBy("ln -s /etc/hostname {folder}/Tarsel-update-scan.xml; " + LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>16</CODE>"));
    EXPECT_FALSE(fs::exists(folder_.Path("out/Tarsel-update-scan.xml")));
}

TEST_F(ScanRemoteTest, HugeScanFileIsNotFetched) {
    const Ended ended = Run(RemoteScanBy(
        "head -c 2000000 /dev/zero >{folder}/Tarsel-update-scan.xml; " + LeaveResult("0"),
        {"--max-body", "1"}));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>16</CODE>"));
    EXPECT_FALSE(fs::exists(folder_.Path("out/Tarsel-update-scan.xml")));
}

TEST_F(ScanRemoteTest, MalformedScanFileIsAnInvalidFile) {
    const Ended ended = Run(RemoteScanBy(
        "echo '<SCAN><CONTENT>' >{folder}/Tarsel-update-scan.xml; " + LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>7</CODE>"));
}

TEST_F(ScanRemoteTest, UnusableScanFileDoesNotTakeThePlaceOfTheEarlierOne) {
    EXPECT_EQ(Run(RemoteScanBy(LeaveResult("0"))).exit_code, 0);
    const std::string earlier = Output("Tarsel-update-scan.xml");
    const Ended ended =
        Run(RemoteScanBy("echo '<SCAN>' >{folder}/Tarsel-update-scan.xml; " + LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_EQ(Output("Tarsel-update-scan.xml.old"), earlier);
    EXPECT_EQ(Output("Tarsel-update-scan.xml.remote"), "<SCAN>\n");
    EXPECT_THAT(ended.errors, HasSubstr("Tarsel-update-scan.xml.remote"));
}

TEST_F(ScanRemoteTest, ScanFileOfCountlessElementsIsNotRead) {
    const Ended ended = Run(
        RemoteScanBy("{ echo '<SCAN>'; head -c 7000000 /dev/zero | sed 's/\\x00/<a\\/>/g'; echo "
                     "'</SCAN>'; } >{folder}/Tarsel-update-scan.xml; " +
                     LeaveResult("0")));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("holds more than any scan writes"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>7</CODE>"));
}

TEST_F(ScanRemoteTest, KeyFileThatIsNoneIsToldAsSuch) {
    test_support::ChildSetup setup =
        RemoteScanBy(LeaveResult("0"), {"--ssh-key", folder_.Write("id", "no key")});
    setup.environment.erase("TARSEL_PASSWORD");
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("The key file cannot be used to log in to 127.0.0.1"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>10</CODE>"));
}

TEST_F(ScanRemoteTest, DeeplyNestedFilesDoNoHarm) {
    const std::string deep = "head -c 400000 /dev/zero | sed 's/\\x00/<a>/g' >{folder}/";
    const Ended ended =
        Run(RemoteScanBy(deep + "Tarsel-update-scan.xml; " + deep + "common_result.xml"));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>7</CODE>"));
}

TEST_F(ScanRemoteTest, ControlBytesReachNeitherScreenNorFiles) {
    const Ended ended =
        Run(RemoteScanBy("printf '\\033]0;owned\\007' >&2; "
                         "printf '\\033[2J\\n' >&2; exit 1",
                         {"-v", "-v"}));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors + ended.output + Output("tarsel.log"), Not(HasSubstr("\033")));
}

TEST_F(ScanRemoteTest, OnlyTheKnownFilesLandInTheOutputFolder) {
    EXPECT_EQ(Run(RemoteScanBy("touch '{folder}/../x' {folder}/more.xml {folder}/..x; rm -f "
                               "'{folder}/../x'; " +
                               LeaveResult("0")))
                  .exit_code,
              0);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.Path("out"))) {
        names.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("Tarsel-update-scan.xml", "common_result.xml",
                                                     "tarsel.log"));
}

// ---- end and traces -----------------------------------------------------------------------------

TEST_F(ScanRemoteTest, NothingIsLeftOnTheServer) {
    EXPECT_EQ(Run(RemoteScanBy(LeaveResult("0"))).exit_code, 0);
    EXPECT_THAT(RemoteFolder(), HasSubstr("/tarsel."));
    EXPECT_FALSE(fs::exists(RemoteFolder()));
}

TEST_F(ScanRemoteTest, FolderStaysOnWishAndItsPlaceIsTold) {
    const Ended ended = Run(RemoteScanBy(LeaveResult("0"), {"--keep-remote"}));
    EXPECT_EQ(ended.exit_code, 0);
    EXPECT_THAT(ended.errors, HasSubstr("The remote folder was kept: " + RemoteFolder()));
    EXPECT_TRUE(fs::exists(RemoteFolder() + "/common_result.xml"));
    EXPECT_EQ(fs::status(RemoteFolder()).permissions(), fs::perms::owner_all);
    fs::remove_all(RemoteFolder());
}

class HangingRemoteRunTest : public ScanRemoteTestBase {
  protected:
    static constexpr const char* kHang = "sleep 300 & echo $! >~/child; echo $$ >~/process; wait";

    [[nodiscard]] bool IsRunning(const std::string& file) const {
        const std::string line = test_support::TemporaryFolder::ReadFile(Home(file));
        const std::string status = test_support::TemporaryFolder::ReadFile(
            "/proc/" + line.substr(0, line.find('\n')) + "/status");
        return !line.empty() && !status.empty() && status.find("State:\tZ") == std::string::npos;
    }

    bool EndsSoon(const std::string& file) const {
        for (int i = 0; i < 500 && IsRunning(file); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return !IsRunning(file);
    }
};

TEST_F(HangingRemoteRunTest, IsEndedByTheDeadline) {
    const Ended ended = Run(RemoteScanBy(kHang, {"--deadline", "6"}));
    EXPECT_EQ(ended.exit_code, 5) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("--deadline"));
    EXPECT_TRUE(fs::exists(Home("process")));
    EXPECT_TRUE(EndsSoon("process"));
    EXPECT_TRUE(EndsSoon("child"));
    EXPECT_FALSE(fs::exists(RemoteFolder()));
}

TEST_F(HangingRemoteRunTest, IsEndedByASignal) {
    test_support::ChildProcess scan(RemoteScanBy(kHang));
    for (int i = 0; i < 3000 && !IsRunning("process"); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ASSERT_TRUE(IsRunning("process")) << scan.Errors();
    scan.Signal(SIGTERM);
    EXPECT_EQ(scan.Wait(), 128 + SIGTERM) << scan.Errors();
    EXPECT_TRUE(EndsSoon("process"));
    EXPECT_TRUE(EndsSoon("child"));
    EXPECT_FALSE(fs::exists(RemoteFolder()));
}

TEST_F(ScanRemoteTest, SecretStandsInNoOutputAndNoFile) {
    const Ended ended = Run(RemoteScanBy("env; cat; " + LeaveResult("0"), {"-v", "-v", "-v"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    std::string all = ended.output + ended.errors + server_->Log();
    for (const auto& entry : fs::recursive_directory_iterator(folder_.Path(""))) {
        if (entry.is_regular_file()) {
            all += test_support::TemporaryFolder::ReadFile(entry.path().string());
        }
    }
    EXPECT_THAT(all, HasSubstr("the command on 127.0.0.1"));
    EXPECT_THAT(all, Not(HasSubstr(test_support::kSshPassword)));
}

}  // namespace
}  // namespace acceptance
