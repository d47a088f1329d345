// Which files below the user's home folder matter: known hosts and keys, never the configuration.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "ssh_test_base.h"

namespace Vantix::transport {
namespace {

using test_support::TemporaryFolder;
using testing::HasSubstr;
using testing::StartsWith;

class SshUserFilesTest : public SshTest {
  protected:
    /// Runs the probe as the owner of an invented home folder and gives what it printed.
    std::string Probe(const std::string& rule, const std::string& password) {
        const std::string id = std::to_string(geteuid()) + ":" + std::to_string(getegid());
        test_support::ChildSetup setup;
        setup.arguments = {TARSEL_LOGIN_PROBE, "127.0.0.1", std::to_string(server_->Port()), rule};
        setup.input = password + "\n";
        setup.environment = {
            {"PATH", "/usr/bin:/bin"},
            {"HOME", home_},
            {"LD_PRELOAD", "libnss_wrapper.so"},
            // A sanitizer's library objects to coming behind the wrapper and to how that loads.
            {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"},
            {"NSS_WRAPPER_DISABLE_DEEPBIND", "1"},
            {"NSS_WRAPPER_PASSWD",
             folder_.Write("passwd", "invented:x:" + id + ":i:" + home_ + ":/bin/sh\n")},
            {"NSS_WRAPPER_GROUP", folder_.Write("group", "")}};
        test_support::ChildProcess process(setup);
        process.Wait();
        return process.Output() + process.Errors();
    }
    void PutFile(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories(home_ + "/.ssh");
        std::ofstream(home_ + "/.ssh/" + name, std::ios::binary) << content;
        std::filesystem::permissions(home_ + "/.ssh/" + name, std::filesystem::perms::owner_read);
    }

    const std::string home_ = folder_.Path("home");
};

TEST_F(SshUserFilesTest, KnownHostsOfTheUserAreTheDefault) {
    StartServer();
    EXPECT_THAT(Probe("strict", test_support::kSshPassword),
                HasSubstr("is not known in " + home_ + "/.ssh/known_hosts"));
    PutFile("known_hosts", server_->KnownHostsLine());
    EXPECT_EQ(Probe("strict", test_support::kSshPassword), "logged in\n");
}

TEST_F(SshUserFilesTest, NewKeyIsStoredThereOnWishAndTheFolderIsMade) {
    StartServer();
    EXPECT_THAT(Probe("accept-new", test_support::kSshPassword), StartsWith("logged in\n"));
    EXPECT_EQ(TemporaryFolder::ReadFile(home_ + "/.ssh/known_hosts"), server_->KnownHostsLine());
}

TEST_F(SshUserFilesTest, UsualKeyFileIsOfferedWhenNothingElseIsGiven) {
    StartServer();
    PutFile("known_hosts", server_->KnownHostsLine());
    PutFile("id_ed25519", TemporaryFolder::ReadFile(server_->KeyFile()));
    EXPECT_EQ(Probe("strict", ""), "logged in\n");
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(SshUserFilesTest, ConfigurationOfTheUserIsNotRead) {
    StartServer();
    PutFile("known_hosts", server_->KnownHostsLine());
    PutFile("config", "Host *\n  UserKnownHostsFile /nowhere/known_hosts\n  User somebody-else\n");
    EXPECT_EQ(Probe("strict", test_support::kSshPassword), "logged in\n");
    EXPECT_EQ(server_->CountInLog("Accepted password for tester"), 1);
}

}  // namespace
}  // namespace Vantix::transport
