// Whether a server's key is known, and what happens when it is not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "ssh_test_base.h"

namespace Vantix::transport {
namespace {

using test_support::SshdSetup;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SshHostKeyTest : public SshTest {
  protected:
    /// The server's key under this rule, with that content of the known-hosts file.
    SshFailure Connect(SshHostKeyRule rule, const std::string& known_hosts) {
        SshTarget target = PasswordTarget();
        target.host_key = rule;
        folder_.Write("known_hosts", known_hosts);
        auto shell = MakeSshShell(target);
        const SshFailure failure = shell->Connect();
        notices_ = shell->Notices();
        return failure;
    }
    std::string Place() const { return "[127.0.0.1]:" + std::to_string(server_->Port()); }
    /// A line of another key for this server.
    std::string OtherLine(const std::string& type = "ed25519") {
        test_support::MakeSshKey(folder_.Path("other_" + type), type);
        const std::string key = folder_.Read("other_" + type + ".pub");
        return Place() + " " + key.substr(0, key.rfind(' ')) + "\n";
    }
    static std::string FingerprintOf(const std::string& public_key_file) {
        test_support::ChildSetup setup;
        setup.arguments = {"/usr/bin/ssh-keygen", "-l", "-f", public_key_file};
        setup.environment = {{"PATH", "/usr/bin:/bin"}};
        test_support::ChildProcess process(setup);
        EXPECT_EQ(process.Wait(), 0);
        const std::string text = process.Output();
        const std::size_t start = text.find("SHA256:");
        return text.substr(start, text.find(' ', start) - start);
    }
    void ExpectNoLoginWasTried() const {
        EXPECT_THAT(server_->Log(), Not(HasSubstr("password for")));
        EXPECT_THAT(server_->Log(), Not(HasSubstr("tester")));
    }

    std::vector<std::string> notices_;
};

TEST_F(SshHostKeyTest, KnownKeyPasses) {
    StartServer();
    EXPECT_FALSE(Connect(SshHostKeyRule::kStrict, server_->KnownHostsLine()));
    EXPECT_THAT(notices_, IsEmpty());
}

TEST_F(SshHostKeyTest, HashedNamePasses) {
    StartServer();
    folder_.Write("hashed", server_->KnownHostsLine());
    test_support::ChildSetup setup;
    setup.arguments = {"/usr/bin/ssh-keygen", "-H", "-f", folder_.Path("hashed")};
    setup.environment = {{"PATH", "/usr/bin:/bin"}};
    ASSERT_EQ(test_support::ChildProcess(setup).Wait(), 0);
    EXPECT_THAT(folder_.Read("hashed"), HasSubstr("|1|"));
    EXPECT_FALSE(Connect(SshHostKeyRule::kStrict, folder_.Read("hashed")));
}

TEST_F(SshHostKeyTest, UnknownKeyIsRefusedWithItsFingerprint) {
    StartServer();
    const SshFailure failure = Connect(SshHostKeyRule::kStrict, "");
    EXPECT_EQ(failure.problem, SshProblem::kHostKeyUnknown);
    EXPECT_THAT(failure.text,
                AllOf(HasSubstr(FingerprintOf(server_->HostKeyFile() + ".pub")),
                      HasSubstr(folder_.Path("known_hosts")), HasSubstr("nothing was sent")));
    ExpectNoLoginWasTried();
}

TEST_F(SshHostKeyTest, KeyOfAnotherServerDoesNotCount) {
    StartServer();
    EXPECT_EQ(Connect(SshHostKeyRule::kStrict, server_->KnownHostsLine(22)).problem,
              SshProblem::kHostKeyUnknown);
}

TEST_F(SshHostKeyTest, NewKeyIsStoredOnWishAndThenKnown) {
    StartServer();
    EXPECT_FALSE(Connect(SshHostKeyRule::kAcceptNew, ""));
    EXPECT_THAT(notices_, ElementsAre(HasSubstr("was new and is stored in")));
    EXPECT_EQ(folder_.Read("known_hosts"), server_->KnownHostsLine());
    EXPECT_FALSE(Connect(SshHostKeyRule::kStrict, folder_.Read("known_hosts")));
    EXPECT_THAT(notices_, IsEmpty());
}

TEST_F(SshHostKeyTest, NewKeyThatCannotBeStoredIsRefused) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.host_key = SshHostKeyRule::kAcceptNew;
    target.known_hosts_file = folder_.Write("file", "") + "/below/known_hosts";
    const SshFailure failure = MakeSshShell(target)->Connect();
    EXPECT_EQ(failure.problem, SshProblem::kHostKeyUnknown);
    EXPECT_THAT(failure.text, HasSubstr("cannot be stored"));
    ExpectNoLoginWasTried();
}

TEST_F(SshHostKeyTest, ChangedKeyShowsBothFingerprintsAndTheLine) {
    StartServer();
    for (const auto rule : {SshHostKeyRule::kStrict, SshHostKeyRule::kAcceptNew}) {
        std::filesystem::remove(folder_.Path("other_ed25519"));
        const SshFailure failure = Connect(rule, "# a comment\n\n" + OtherLine());
        EXPECT_EQ(failure.problem, SshProblem::kHostKeyChanged);
        EXPECT_THAT(failure.text,
                    AllOf(HasSubstr("it shows " + FingerprintOf(server_->HostKeyFile() + ".pub")),
                          HasSubstr("known is " + FingerprintOf(folder_.Path("other_ed25519.pub"))),
                          HasSubstr(folder_.Path("known_hosts") + " line 3"),
                          HasSubstr("nothing was sent")));
    }
    ExpectNoLoginWasTried();
}

TEST_F(SshHostKeyTest, KeyOfAnotherTypeCountsAsChanged) {
    StartServer();
    const SshFailure failure = Connect(SshHostKeyRule::kAcceptNew, OtherLine("ecdsa"));
    EXPECT_EQ(failure.problem, SshProblem::kHostKeyChanged);
    ExpectNoLoginWasTried();
}

TEST_F(SshHostKeyTest, KnownKeyAmongSeveralIsAskedFor) {
    SshdSetup setup;
    setup.has_rsa_key = true;
    StartServer(setup);
    const std::string key =
        test_support::TemporaryFolder::ReadFile(server_->HostKeyFile() + "_rsa.pub");
    EXPECT_FALSE(
        Connect(SshHostKeyRule::kStrict, Place() + " " + key.substr(0, key.rfind(' ')) + "\n"));
}

TEST_F(SshHostKeyTest, RevokedKeyIsRefusedEvenWhenItIsKnown) {
    StartServer();
    const std::string line = server_->KnownHostsLine();
    const SshFailure failure = Connect(SshHostKeyRule::kAcceptNew, line + "@revoked " + line);
    EXPECT_EQ(failure.problem, SshProblem::kHostKeyChanged);
    EXPECT_THAT(failure.text, AllOf(HasSubstr("revoked"), HasSubstr("line 2")));
    ExpectNoLoginWasTried();
}

TEST_F(SshHostKeyTest, ChecksSwitchedOffPassWithANotice) {
    StartServer();
    EXPECT_FALSE(Connect(SshHostKeyRule::kOff, OtherLine()));
    EXPECT_THAT(notices_, ElementsAre(AllOf(HasSubstr("was not checked"), HasSubstr("SHA256:"))));
    EXPECT_EQ(folder_.Read("known_hosts").find(server_->KnownHostsLine()), std::string::npos);
}

}  // namespace
}  // namespace Vantix::transport
