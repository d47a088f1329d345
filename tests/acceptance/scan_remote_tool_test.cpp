// The tool carried to a server, and its scan there.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "acceptance/scan_remote_test_base.h"
#include "support/golden_file.h"

namespace acceptance {
namespace {

namespace fs = std::filesystem;

using test_support::MatchesGoldenFile;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ScanRemoteToolTest : public ScanRemoteTestBase {
  protected:
    /// The package of this build, made once for all tests of the program.
    static const std::string& Packages() {
        static const test_support::TemporaryFolder folder;
        static const std::string path = [] {
            const std::string command =
                std::string(TARSEL_SOURCE) + "/scripts/package.sh --from '" + TARSEL_BUILD + "' '" +
                folder.Path("packages") + "' >'" + folder.Path("log") + "' 2>&1";
            const int status = std::system(command.c_str());
            EXPECT_EQ(status, 0) << folder.Read("log");
            return folder.Path("packages");
        }();
        return path;
    }

    /// Scans the simulated BMC from the server, and keeps there what was made there.
    [[nodiscard]] std::string ScanFromThere() const {
        const std::string password = Home("password");
        std::ofstream(password) << kPassword << "\n";
        fs::permissions(password, fs::perms::owner_read | fs::perms::owner_write);
        server_->GiveToAccount(password);
        return "{tarsel} scan --bmc " + Target() + " --pin " + bmc_->Fingerprint() +
               " --password-file " + password +
               " --output {folder} >~/tables; status=$?; "
               "cp {folder}/*.xml ~; exit $status";
    }

    static std::string CodeIn(const std::string& common_result) {
        const std::size_t start = common_result.find("<CODE>");
        return start == std::string::npos
                   ? "none"
                   : common_result.substr(start, common_result.find("</CODE>") - start);
    }

    [[nodiscard]] std::string MadeThere(const std::string& name) const {
        return test_support::TemporaryFolder::ReadFile(Home(name));
    }
};

// Tests that run what the package holds.
class ScanRemoteCarriedToolTest : public ScanRemoteToolTest {
  protected:
    void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "a package brings its libraries, and a sanitizer wants its own to come "
                        "first; build without sanitizers";
#endif
        ScanRemoteTestBase::SetUp();
    }
};

TEST_F(ScanRemoteCarriedToolTest, CarriedToolGivesTheScanFileAndTheTablesMadeThere) {
    StartBmc();
    const Ended ended = Run(RemoteScanBy(ScanFromThere(), {"--package-dir", Packages()}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(MadeThere("Tarsel-update-scan.xml"), HasSubstr("<PACKAGE>"));
    EXPECT_EQ(Output("Tarsel-update-scan.xml"), MadeThere("Tarsel-update-scan.xml"));
    EXPECT_EQ(ended.output, MadeThere("tables"));
    EXPECT_THAT(Output("remote-tarsel.log"), HasSubstr("tarsel " TARSEL_VERSION " scan of"));
    EXPECT_FALSE(fs::exists(RemoteFolder()));
}

// The account may read the tree, so nothing is missing without root's rights.
TEST_F(ScanRemoteCarriedToolTest, RecordedServerScannedThereGivesWhatItGivesHere) {
    const std::string scenario = TARSEL_SCENARIOS "/own-server/";
    const std::string command = "{tarsel} scan --local --quiet --sysroot " + scenario +
                                "sysroot --output {folder} >~/tables && cp {folder}/*.xml ~";
    const Ended ended = Run(RemoteScanBy(command, {"--package-dir", Packages()}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(Output("Tarsel-update-scan.xml"), MadeThere("Tarsel-update-scan.xml"));
    EXPECT_EQ(ended.output, MadeThere("tables"));
    EXPECT_TRUE(MatchesGoldenFile(ended.output, scenario + "expected-local-tables.txt"));
    EXPECT_TRUE(
        MatchesGoldenFile(Output("Tarsel-update-scan.xml"), scenario + "expected-local-scan.xml"));
}

// What this machine is does not matter here; that its scan of itself was made, fetched and is the
// verdict does.
TEST_F(ScanRemoteCarriedToolTest, WithoutACommandTheServerScansItself) {
    const Ended ended = Run(RemoteScan({"--package-dir", Packages(), "--keep-remote"}));
    const std::string told = "The remote folder was kept: ";
    const std::size_t start = ended.errors.find(told);
    ASSERT_NE(start, std::string::npos) << ended.errors;
    const std::string folder = ended.errors.substr(
        start + told.size(), ended.errors.find(" on ", start) - start - told.size());
    const std::string there =
        test_support::TemporaryFolder::ReadFile(folder + "/common_result.xml");
    EXPECT_THAT(Output("remote-tarsel.log"), HasSubstr("connect_mode       = 16"));
    EXPECT_EQ(CodeIn(Output("common_result.xml")), CodeIn(there)) << ended.errors;
    fs::remove_all(folder);
}

TEST_F(ScanRemoteCarriedToolTest, ServerWithoutSftpGivesTheSame) {
    test_support::SshdSetup setup;
    setup.has_sftp = false;
    StartServer(setup);
    StartBmc();
    const Ended ended = Run(RemoteScanBy(ScanFromThere(), {"--package-dir", Packages()}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(Output("Tarsel-update-scan.xml"), MadeThere("Tarsel-update-scan.xml"));
    EXPECT_THAT(Output("tarsel.log"), Not(HasSubstr("over SFTP")));
}

TEST_F(ScanRemoteCarriedToolTest, FailedScanThereIsAFailedScanHereWithItsExitCode) {
    StartBmc();
    const std::string command = ScanFromThere();
    std::ofstream(Home("password")) << "Wrong-Invented-Pass\n";
    const Ended ended = Run(RemoteScanBy(command, {"--package-dir", Packages()}));
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_THAT(MadeThere("common_result.xml"), HasSubstr("<CODE>12</CODE>"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>12</CODE>"));
}

TEST_F(ScanRemoteToolTest, InstalledToolIsUsedWithoutAPackage) {
    test_support::SshdSetup setup;
    setup.more_lines = {"SetEnv PATH=" + fs::path(TARSEL_COMMAND).parent_path().string() +
                        ":/usr/bin:/bin"};
    StartServer(setup);
    StartBmc();
    const Ended ended = Run(RemoteScanBy(ScanFromThere()));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(Output("Tarsel-update-scan.xml"), MadeThere("Tarsel-update-scan.xml"));
}

TEST_F(ScanRemoteToolTest, MissingToolHasTheTextOfItsCode) {
    const Ended ended = Run(RemoteScan({}));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors,
                HasSubstr("Fail to find the matching tool package for remote machine."));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>41</CODE>"));
}

TEST_F(ScanRemoteToolTest, FolderWithoutFittingPackageHasTheTextOfItsCode) {
    folder_.Write("tarsel-" TARSEL_VERSION "-Linux-invented.tar.gz", "x");
    const Ended ended = Run(RemoteScan({"--package-dir", folder_.Path("")}));
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors,
                HasSubstr("Fail to find the matching tool package for remote machine."));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>41</CODE>"));
}

// The account's own sudo takes the place of the system's.
TEST_F(ScanRemoteToolTest, PasswordReachesSudoByItsStandardInputOnly) {
    test_support::SshdSetup setup;
    const std::string bin = folder_.Path("bin");
    fs::create_directory(bin);
    setup.more_lines = {"SetEnv PATH=" + bin + ":/usr/bin:/bin"};
    StartServer(setup);
    folder_.Write("bin/sudo",
                  "#!/bin/sh\n"
                  "echo \"$*\" >>~/sudo-arguments\n"
                  "[ \"$1\" = -n ] && { echo 'a password is required' >&2; exit 1; }\n"
                  "IFS= read -r word; printf '%s\\n' \"$word\" >>~/sudo-words\n"
                  "while [ \"$1\" != -- ]; do shift; done; shift; exec \"$@\"\n");
    fs::permissions(folder_.Path("bin/sudo"),
                    fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    StartBmc();
    const Ended ended = Run(RemoteScanBy(ScanFromThere(), {"--package-dir", Packages()}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    const std::string password = test_support::kSshPassword;
    EXPECT_EQ(MadeThere("sudo-words"), password + "\n" + password + "\n");
    EXPECT_THAT(MadeThere("sudo-arguments"), StartsWith("-n -- /"));
    EXPECT_THAT(MadeThere("sudo-arguments"), Not(HasSubstr(password)));
}

}  // namespace
}  // namespace acceptance
