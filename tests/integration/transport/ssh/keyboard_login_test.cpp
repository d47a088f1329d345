// Keyboard-interactive logins against conversations that the test writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/ssh_peer_posix.h"
#include "support/sshd_posix.h"
#include "support/temporary_folder.h"
#include "transport/ssh/remote_shell.h"

namespace Vantix::transport {
namespace {

using test_support::PeerPrompt;
using test_support::SshPeerSetup;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kPassword = "Fake-Pass-1234";

class KeyboardLoginTest : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = test_support::Sshd::Missing();
        if (!missing.empty()) GTEST_SKIP() << missing;
    }

    SshFailure Connect(SshPeerSetup setup) {
        setup.host_key_file = folder_.Path("key");
        test_support::MakeSshKey(setup.host_key_file);
        peer_ = std::make_unique<test_support::SshPeer>(setup);
        SshTarget target;
        target.host = "127.0.0.1";
        target.port = peer_->Port();
        target.user = "tester";
        target.password = kPassword;
        target.host_key = SshHostKeyRule::kOff;
        target.limits.connect = target.limits.authentication = std::chrono::seconds(20);
        target.login_refused = [this](const std::string& what) { refused_.push_back(what); };
        return MakeSshShell(target)->Connect();
    }

    static SshPeerSetup Asking(std::vector<std::vector<PeerPrompt>> rounds,
                               std::vector<std::string> answers = {kPassword}) {
        SshPeerSetup setup;
        setup.rounds = std::move(rounds);
        setup.answers = std::move(answers);
        return setup;
    }

    test_support::TemporaryFolder folder_;
    std::unique_ptr<test_support::SshPeer> peer_;
    std::vector<std::string> refused_;
};

TEST_F(KeyboardLoginTest, HiddenPromptIsAnsweredWithThePassword) {
    const SshFailure failure = Connect(Asking({{{"Password: "}}}));
    EXPECT_FALSE(failure) << failure.text;
    EXPECT_THAT(peer_->Answers(), ElementsAre(kPassword));
}

TEST_F(KeyboardLoginTest, RoundWithoutPromptsIsAnsweredEmpty) {
    const SshFailure failure = Connect(Asking({{{"Password: "}}, {}}));
    EXPECT_FALSE(failure) << failure.text;
    EXPECT_THAT(peer_->Answers(), ElementsAre(kPassword));
}

TEST_F(KeyboardLoginTest, VisiblePromptIsRefused) {
    const SshFailure failure = Connect(Asking({{{"Token: ", true}}}));
    EXPECT_EQ(failure.problem, SshProblem::kNoUsableAuth);
    EXPECT_THAT(failure.text, HasSubstr("asks for more than a password at login: \"Token:\""));
    EXPECT_THAT(peer_->Answers(), IsEmpty());
    EXPECT_THAT(refused_, IsEmpty());
}

TEST_F(KeyboardLoginTest, SecondHiddenPromptDoesNotGetThePasswordAgain) {
    const SshFailure failure = Connect(Asking({{{"Password: "}}, {{"One-time code: "}}}));
    EXPECT_EQ(failure.problem, SshProblem::kNoUsableAuth);
    EXPECT_THAT(failure.text, HasSubstr("One-time code"));
    EXPECT_THAT(peer_->Answers(), ElementsAre(kPassword));
}

TEST_F(KeyboardLoginTest, TwoPromptsAtOnceGetNothing) {
    const SshFailure failure = Connect(Asking({{{"Password: "}, {"Code: "}}}));
    EXPECT_EQ(failure.problem, SshProblem::kNoUsableAuth);
    EXPECT_THAT(peer_->Answers(), IsEmpty());
}

TEST_F(KeyboardLoginTest, PasswordMethodIsTriedBehindAConversationThatWasNotAnswered) {
    SshPeerSetup setup = Asking({{{"Token: ", true}}});
    setup.offers_password = true;
    const SshFailure failure = Connect(setup);
    EXPECT_EQ(failure.problem, SshProblem::kAuthRefused);
    EXPECT_THAT(peer_->Passwords(), ElementsAre(kPassword));
}

TEST_F(KeyboardLoginTest, RefusedPasswordEndsAllMethods) {
    SshPeerSetup setup = Asking({{{"Password: "}}}, {"another"});
    setup.offers_password = true;
    const SshFailure failure = Connect(setup);
    EXPECT_EQ(failure.problem, SshProblem::kAuthRefused);
    EXPECT_THAT(peer_->Answers(), ElementsAre(kPassword));
    EXPECT_THAT(peer_->Passwords(), IsEmpty());
    EXPECT_THAT(refused_, ElementsAre(failure.text));
}

TEST_F(KeyboardLoginTest, WishForANewPasswordIsToldAsSuch) {
    const SshFailure failure = Connect(Asking({{{"Password: "}}, {{"New password: "}}}));
    EXPECT_EQ(failure.problem, SshProblem::kPasswordMustChange);
    EXPECT_THAT(peer_->Answers(), ElementsAre(kPassword));
    EXPECT_THAT(refused_, IsEmpty());
}

TEST_F(KeyboardLoginTest, ConversationWithoutEndIsGivenUp) {
    SshPeerSetup setup = Asking(std::vector<std::vector<PeerPrompt>>(50));
    const SshFailure failure = Connect(setup);
    EXPECT_EQ(failure.problem, SshProblem::kNoUsableAuth);
    EXPECT_THAT(failure.text, HasSubstr("does not stop asking"));
}

TEST_F(KeyboardLoginTest, WordsOfThePromptAreShownClean) {
    const SshFailure failure = Connect(Asking({{{"T\x1b[31mo\nken: ", true}}}));
    EXPECT_THAT(failure.text, HasSubstr("\"T [31mo ken:\""));
    EXPECT_THAT(failure.text, Not(HasSubstr(kPassword)));
}

}  // namespace
}  // namespace Vantix::transport
