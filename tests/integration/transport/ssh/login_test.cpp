// Logins at a real sshd by key, agent and password; what is tried, counted and told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "ssh_test_base.h"

namespace Vantix::transport {
namespace {

using test_support::SshdSetup;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kWrongPassword = "Wrong-Pass-9";

class SshLoginTest : public SshTest {
  protected:
    void SetUp() override {
        SshTest::SetUp();
        // Whatever agent the person at this machine has stays out of it.
        unsetenv("SSH_AUTH_SOCK");
    }
    static SshFailure Connect(const SshTarget& target) { return MakeSshShell(target)->Connect(); }
    static SshdSetup PasswordOnly() {
        SshdSetup setup;
        setup.takes_key = false;
        return setup;
    }
    static SshdSetup KeyOnly() {
        SshdSetup setup;
        setup.takes_password = false;
        return setup;
    }
};

TEST_F(SshLoginTest, KeyOpensTheAccount) {
    StartServer();
    EXPECT_FALSE(Connect(KeyTarget()));
    EXPECT_EQ(server_->CountInLog("Accepted publickey for tester"), 1);
}

TEST_F(SshLoginTest, PasswordOpensTheAccount) {
    StartServer();
    EXPECT_FALSE(Connect(PasswordTarget()));
    EXPECT_EQ(server_->CountInLog("Accepted password for tester"), 1);
}

TEST_F(SshLoginTest, KeyGoesBeforeThePassword) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.key_file = server_->KeyFile();
    EXPECT_FALSE(Connect(target));
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(SshLoginTest, PasswordIsTriedBehindARefusedKey) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.key_file = server_->StrangeKeyFile();
    EXPECT_FALSE(Connect(target));
    EXPECT_EQ(server_->CountInLog("Accepted password"), 1);
}

TEST_F(SshLoginTest, ServerThatWantsKeyAndPasswordGetsBoth) {
    SshdSetup setup;
    setup.more_lines = {"AuthenticationMethods publickey,password"};
    StartServer(setup);
    SshTarget target = PasswordTarget();
    target.key_file = server_->KeyFile();
    EXPECT_FALSE(Connect(target));
    EXPECT_EQ(server_->CountInLog("Partial publickey"), 1);
    EXPECT_EQ(server_->CountInLog("Accepted password"), 1);
}

TEST_F(SshLoginTest, RefusedKeyIsNamedAndCountsAsNoRefusedPassword) {
    StartServer(KeyOnly());
    SshTarget target = Target();
    target.key_file = server_->StrangeKeyFile();
    target.login_refused = [](const std::string& what) { ADD_FAILURE() << what; };
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kAuthRefused);
    EXPECT_THAT(failure.text, AllOf(HasSubstr("refused the key " + server_->StrangeKeyFile()),
                                    HasSubstr("user tester"), HasSubstr("it takes publickey")));
}

TEST_F(SshLoginTest, WrongPasswordIsTriedOnceAndCounted) {
    StartServer();
    SshTarget target = Target();
    target.password = kWrongPassword;
    std::vector<std::string> refused;
    target.login_refused = [&](const std::string& what) { refused.push_back(what); };
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kAuthRefused);
    EXPECT_THAT(failure.text, HasSubstr("refused the password of user tester"));
    EXPECT_THAT(refused, ElementsAre(failure.text));
    EXPECT_EQ(server_->CountInLog("Failed password for tester"), 1);
}

TEST_F(SshLoginTest, SpentBudgetSendsNothingOfTheUser) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.may_try_login = [] { return false; };
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kAuthRefused);
    EXPECT_THAT(failure.text, HasSubstr("no further login"));
    EXPECT_THAT(server_->Log(), Not(HasSubstr("tester from")));
}

TEST_F(SshLoginTest, UnknownUserIsRefusedLikeAWrongPassword) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.user = "nobody-here";
    EXPECT_EQ(Connect(target).problem, SshProblem::kAuthRefused);
    EXPECT_EQ(server_->CountInLog("Failed password for invalid user"), 1);
}

TEST_F(SshLoginTest, ServerWithoutAFittingMethodIsToldWithItsList) {
    StartServer(PasswordOnly());
    const SshFailure failure = Connect(KeyTarget());
    EXPECT_EQ(failure.problem, SshProblem::kNoUsableAuth);
    EXPECT_THAT(failure.text, AllOf(HasSubstr("as user tester"), HasSubstr("takes password")));
}

TEST_F(SshLoginTest, KeyFileThatIsNotThereIsALocalProblemAndSendsNothing) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.key_file = folder_.Path("nothing");
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kLocalFile);
    EXPECT_THAT(failure.text, HasSubstr("nothing is not readable"));
    EXPECT_THAT(server_->Log(), Not(HasSubstr("password for tester")));
}

TEST_F(SshLoginTest, FileThatIsNoKeyIsALocalProblem) {
    StartServer();
    SshTarget target = Target();
    target.key_file = folder_.Write("text", "no key\n");
    EXPECT_EQ(Connect(target).problem, SshProblem::kLocalFile);
}

TEST_F(SshLoginTest, KeyWithPassphraseNeedsIt) {
    StartServer();
    const std::string file = folder_.Path("locked");
    test_support::MakeSshKey(file, "ed25519", "Fake-Phrase-5");
    folder_.Write("keys", folder_.Read("locked.pub"));
    SshTarget target = Target();
    target.key_file = file;
    const SshFailure without = Connect(target);
    EXPECT_EQ(without.problem, SshProblem::kLocalFile);
    EXPECT_THAT(without.text, HasSubstr("another passphrase"));
    target.key_passphrase = "Fake-Phrase-5";
    // The server does not know it: that it was asked shows that the key could be opened.
    EXPECT_EQ(Connect(target).problem, SshProblem::kAuthRefused);
}

// An agent that holds one key, for as long as the object lives.
class Agent {
  public:
    Agent(const std::string& socket, const std::string& key_file) : agent_(Setup(socket)) {
        EXPECT_TRUE(agent_.WaitForOutput("SSH_AUTH_SOCK"));
        test_support::ChildSetup setup;
        setup.arguments = {"/usr/bin/ssh-add", "-q", key_file};
        setup.environment = {{"PATH", "/usr/bin:/bin"}, {"SSH_AUTH_SOCK", socket}};
        test_support::ChildProcess adding(setup);
        EXPECT_EQ(adding.Wait(), 0) << adding.Errors();
        setenv("SSH_AUTH_SOCK", socket.c_str(), 1);
    }
    ~Agent() { unsetenv("SSH_AUTH_SOCK"); }

  private:
    static test_support::ChildSetup Setup(const std::string& socket) {
        test_support::ChildSetup setup;
        setup.arguments = {"/usr/bin/ssh-agent", "-D", "-a", socket};
        setup.environment = {{"PATH", "/usr/bin:/bin"}};
        return setup;
    }
    test_support::ChildProcess agent_;
};

TEST_F(SshLoginTest, AgentsKeyOpensTheAccountWhenNothingElseIsGiven) {
    StartServer(KeyOnly());
    const Agent agent(folder_.Path("agent"), server_->KeyFile());
    const SshFailure failure = Connect(Target());
    EXPECT_FALSE(failure) << failure.text;
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(SshLoginTest, AgentsKeysStayAwayWhereAKeyFileIsGiven) {
    StartServer(KeyOnly());
    const Agent agent(folder_.Path("agent"), server_->KeyFile());
    SshTarget target = Target();
    target.key_file = server_->StrangeKeyFile();
    EXPECT_EQ(Connect(target).problem, SshProblem::kAuthRefused);
}

TEST_F(SshLoginTest, AgentsKeysStayAwayWhereThePasswordIsTaken) {
    StartServer();
    const Agent agent(folder_.Path("agent"), server_->StrangeKeyFile());
    EXPECT_FALSE(Connect(PasswordTarget()));
    EXPECT_EQ(server_->CountInLog("Accepted password"), 1);
    EXPECT_THAT(server_->Log(), Not(HasSubstr("publickey for tester")));
}

TEST_F(SshLoginTest, AgentsKeysAreOfferedWhereNoPasswordIsTaken) {
    StartServer(KeyOnly());
    const Agent agent(folder_.Path("agent"), server_->KeyFile());
    EXPECT_FALSE(Connect(PasswordTarget()));
    EXPECT_EQ(server_->CountInLog("Accepted publickey"), 1);
}

TEST_F(SshLoginTest, ExpiredPasswordIsToldAtTheFirstCommand) {
    SshdSetup setup;
    setup.is_password_expired = true;
    StartServer(setup);
    auto shell = LoggedIn(PasswordTarget());
    const RemoteOutcome outcome = shell->Execute(Line("echo out"));
    EXPECT_EQ(outcome.failure.problem, SshProblem::kPasswordMustChange);
    EXPECT_THAT(outcome.failure.text, HasSubstr("must be changed first"));
}

TEST_F(SshLoginTest, BannerIsKeptApartFromAllOutput) {
    SshdSetup setup;
    setup.more_lines = {"Banner " + folder_.Write("banner", "Authorized\x01 use only\n")};
    StartServer(setup);
    auto shell = LoggedIn(PasswordTarget());
    EXPECT_EQ(shell->LoginBanner(), "Authorized  use only");
    const RemoteOutcome outcome = shell->Execute(Line("echo out"));
    EXPECT_EQ(outcome.output, "out\n");
    EXPECT_THAT(outcome.error_output, IsEmpty());
    EXPECT_EQ(outcome.noise_bytes, 0U);
}

TEST_F(SshLoginTest, SecretsStandInNoTextOfAFailure) {
    StartServer();
    SshTarget target = Target();
    target.password = kWrongPassword;
    target.key_file = folder_.Path("locked");
    target.key_passphrase = "Fake-Phrase-5";
    test_support::MakeSshKey(target.key_file, "ed25519", target.key_passphrase);
    std::string texts;
    target.login_refused = [&](const std::string& what) { texts += what; };
    auto shell = MakeSshShell(target);
    texts += shell->Connect().text;
    EXPECT_THAT(texts, HasSubstr("refused the password"));
    EXPECT_THAT(texts, Not(HasSubstr(kWrongPassword)));
    EXPECT_THAT(texts, Not(HasSubstr("Fake-Phrase")));
    EXPECT_THAT(server_->Log(), Not(HasSubstr(kWrongPassword)));
}

}  // namespace
}  // namespace Vantix::transport
