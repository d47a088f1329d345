// Servers that are absent, silent, broken or old: every wait ends, and the sentence says why.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "ssh_test_base.h"
#include "support/tcp_relay_posix.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test_support::RelayFault;
using test_support::SshdSetup;
using test_support::TcpRelay;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class BadSshServerTest : public SshTest {
  protected:
    static SshTarget Nobody(int port) {
        SshTarget target;
        target.host = "127.0.0.1";
        target.port = port;
        target.user = "tester";
        target.password = test_support::kSshPassword;
        target.host_key = SshHostKeyRule::kOff;
        target.limits.connect = milliseconds(500);
        target.limits.authentication = milliseconds(500);
        return target;
    }
    static SshFailure Connect(const SshTarget& target) { return MakeSshShell(target)->Connect(); }
    /// A password target through the relay that does not wait long for signs of life, but longer
    /// than a busy machine takes for one.
    SshTarget Hasty(const TcpRelay& relay) {
        SshTarget target = PasswordTarget(relay.Port());
        target.limits.idle = milliseconds(2500);
        target.limits.keep_alive = milliseconds(300);
        return target;
    }
};

TEST_F(BadSshServerTest, ClosedPortIsToldAtOnce) {
    const SshFailure failure = Connect(Nobody(test_support::FreeTcpPort()));
    EXPECT_EQ(failure.problem, SshProblem::kRefused);
    EXPECT_THAT(failure.text, AllOf(HasSubstr("127.0.0.1 port "), HasSubstr("refused")));
}

TEST_F(BadSshServerTest, UnknownNameIsToldAsSuch) {
    SshTarget target = Nobody(22);
    target.host = "no-such-host.invalid";
    target.limits.connect = milliseconds(5000);
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kNotResolved);
    EXPECT_THAT(failure.text, HasSubstr("no-such-host.invalid"));
}

TEST_F(BadSshServerTest, NameIsLookedUpAndAllItsAddressesAreTried) {
    StartServer();
    SshTarget target = PasswordTarget();
    target.host = "localhost";
    target.host_key = SshHostKeyRule::kOff;
    const SshFailure failure = Connect(target);
    EXPECT_FALSE(failure) << failure.text;
}

TEST_F(BadSshServerTest, SilentServerEndsWithinTheConnectLimit) {
    TcpRelay silent(0);
    const auto start = steady_clock::now();
    const SshFailure failure = Connect(Nobody(silent.Port()));
    EXPECT_EQ(failure.problem, SshProblem::kTimedOut);
    EXPECT_THAT(failure.text, HasSubstr("did not answer within the limit"));
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(BadSshServerTest, InterruptionEndsTheWaitForASilentServer) {
    TcpRelay silent(0);
    SshTarget target = Nobody(silent.Port());
    target.limits.connect = std::chrono::seconds(60);
    int asked = 0;
    target.is_cancelled = [&] { return ++asked > 3; };
    EXPECT_EQ(Connect(target).problem, SshProblem::kCancelled);
}

TEST_F(BadSshServerTest, TotalLimitHoldsBeforeTheOthers) {
    TcpRelay silent(0);
    SshTarget target = Nobody(silent.Port());
    target.limits.connect = std::chrono::seconds(60);
    target.limits.total = milliseconds(300);
    EXPECT_EQ(Connect(target).problem, SshProblem::kDeadline);
}

TEST_F(BadSshServerTest, ServerThatStopsInTheMiddleOfTheKeyExchangeEndsWithinTheLimit) {
    StartServer();
    for (const std::size_t bytes : {10U, 60U, 700U, 1300U}) {
        TcpRelay relay(server_->Port(), bytes, RelayFault::kStall);
        SshTarget target = Hasty(relay);
        target.limits.connect = milliseconds(600);
        EXPECT_EQ(Connect(target).problem, SshProblem::kTimedOut) << bytes;
    }
}

TEST_F(BadSshServerTest, ServerThatHangsUpInTheMiddleOfTheKeyExchangeIsToldAtOnce) {
    StartServer();
    for (const std::size_t bytes : {10U, 60U, 700U, 1300U}) {
        TcpRelay relay(server_->Port(), bytes, RelayFault::kCut);
        SshTarget target = Hasty(relay);
        target.limits.connect = std::chrono::seconds(60);
        EXPECT_EQ(Connect(target).problem, SshProblem::kProtocol) << bytes;
    }
}

TEST_F(BadSshServerTest, ServerThatFallsSilentDuringLoginEndsWithinTheLimit) {
    StartServer();
    TcpRelay relay(server_->Port());
    SshTarget target = PasswordTarget(relay.Port());
    target.limits.authentication = milliseconds(600);
    target.may_try_login = [&] {
        relay.FaultAfter(0);
        return true;
    };
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kTimedOut);
    EXPECT_THAT(failure.text, HasSubstr("did not end the login within the limit"));
}

TEST_F(BadSshServerTest, ConnectionCutDuringLoginIsNoRefusedPassword) {
    StartServer();
    TcpRelay relay(server_->Port(), static_cast<std::size_t>(-1), RelayFault::kCut);
    SshTarget target = PasswordTarget(relay.Port());
    int asked = 0;
    target.may_try_login = [&] {
        if (++asked == 2) relay.FaultAfter(0);
        return true;
    };
    target.login_refused = [](const std::string& what) { ADD_FAILURE() << what; };
    EXPECT_EQ(Connect(target).problem, SshProblem::kConnectionLost);
}

TEST_F(BadSshServerTest, ServerThatBabblesIsToldAsOneWithoutSsh) {
    TcpRelay babbler(0, 1, RelayFault::kStall, std::string(100000, 'x'));
    SshTarget target = Nobody(babbler.Port());
    target.limits.connect = std::chrono::seconds(60);
    const SshFailure failure = Connect(target);
    EXPECT_EQ(failure.problem, SshProblem::kProtocol);
    EXPECT_THAT(failure.text, HasSubstr("no SSH session came about"));
}

TEST_F(BadSshServerTest, ServerOfAnotherProtocolEndsWithinTheLimit) {
    TcpRelay web(0, 1, RelayFault::kStall, "HTTP/1.1 400 Bad Request\r\n\r\n");
    EXPECT_TRUE(Connect(Nobody(web.Port())));
}

TEST_F(BadSshServerTest, CommandOverASilencedConnectionEndsWithinTheIdleLimit) {
    StartServer();
    TcpRelay relay(server_->Port());
    auto shell = LoggedIn(Hasty(relay));
    relay.FaultAfter(0);
    const RemoteOutcome outcome = shell->Execute(Line("echo out"));
    EXPECT_EQ(outcome.failure.problem, SshProblem::kTimedOut);
    EXPECT_THAT(outcome.failure.text, HasSubstr("no sign of life"));
}

TEST_F(BadSshServerTest, SilencedCommandKeepsWhatCameBefore) {
    StartServer();
    TcpRelay relay(server_->Port());
    auto shell = LoggedIn(Hasty(relay));
    relay.FaultAfter(4600);
    const RemoteOutcome outcome = shell->Execute(Line("head -c 4000 /dev/zero; sleep 20"));
    EXPECT_TRUE(outcome.failure);
    EXPECT_EQ(outcome.output.size(), 4000U);
    EXPECT_EQ(outcome.exit_status, -1);
}

TEST_F(BadSshServerTest, DownloadOverASilencedConnectionEndsAndLeavesNoFile) {
    StartServer();
    TcpRelay relay(server_->Port());
    auto shell = LoggedIn(Hasty(relay));
    ASSERT_TRUE(shell->Execute(Line("head -c 5000000 /dev/zero > data")).Succeeded());
    relay.FaultAfter(1000000);
    const auto outcome = shell->Download("data", folder_.Path("data"), kMuch);
    EXPECT_EQ(outcome.failure.problem, SshProblem::kTimedOut);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("data.part")));
}

TEST_F(BadSshServerTest, DownloadOverACutConnectionIsToldAtOnceAndLeavesNoFile) {
    for (const bool has_sftp : {true, false}) {
        SshdSetup setup;
        setup.has_sftp = has_sftp;
        StartServer(setup);
        TcpRelay relay(server_->Port(), static_cast<std::size_t>(-1), RelayFault::kCut);
        SshTarget target = PasswordTarget(relay.Port());
        auto shell = LoggedIn(target);
        ASSERT_TRUE(shell->Execute(Line("head -c 5000000 /dev/zero > data")).Succeeded());
        relay.FaultAfter(1000000);
        const auto outcome = shell->Download("data", folder_.Path("data"), kMuch);
        EXPECT_EQ(outcome.failure.problem, SshProblem::kConnectionLost) << outcome.failure.text;
        EXPECT_FALSE(std::filesystem::exists(folder_.Path("data")));
        EXPECT_FALSE(std::filesystem::exists(folder_.Path("data.part")));
    }
}

TEST_F(BadSshServerTest, UploadOverACutConnectionIsToldAtOnce) {
    StartServer();
    TcpRelay relay(server_->Port(), static_cast<std::size_t>(-1), RelayFault::kCut);
    auto shell = LoggedIn(PasswordTarget(relay.Port()));
    relay.FaultAfter(3000);
    const std::string file = folder_.Write("data", std::string(20000000, 'x'));
    EXPECT_EQ(shell->Upload(file, "data", 0600).failure.problem, SshProblem::kConnectionLost);
}

TEST_F(BadSshServerTest, CutConnectionIsToldForLaterCallsToo) {
    StartServer();
    TcpRelay relay(server_->Port(), static_cast<std::size_t>(-1), RelayFault::kCut);
    auto shell = LoggedIn(PasswordTarget(relay.Port()));
    relay.FaultAfter(0);
    EXPECT_EQ(shell->Execute(Line("echo out")).failure.problem, SshProblem::kConnectionLost);
    EXPECT_EQ(shell->Execute(Line("echo out")).failure.problem, SshProblem::kConnectionLost);
    EXPECT_TRUE(shell->Download("data", folder_.Path("data"), kMuch).failure);
}

TEST_F(BadSshServerTest, CallsWithoutAConnectionFailAndDoNotCrash) {
    auto shell = MakeSshShell(Nobody(22));
    EXPECT_TRUE(shell->Execute(Line("echo out")).failure);
    EXPECT_TRUE(shell->Download("data", folder_.Path("data"), kMuch).failure);
    EXPECT_THAT(shell->LoginBanner(), IsEmpty());
}

TEST_F(BadSshServerTest, OldKeyExchangeIsToldWithBothOffers) {
    SshdSetup setup;
    setup.more_lines = {"KexAlgorithms diffie-hellman-group14-sha1"};
    StartServer(setup);
    const SshFailure failure = Connect(PasswordTarget());
    EXPECT_EQ(failure.problem, SshProblem::kNoCommonAlgorithm);
    EXPECT_THAT(failure.text,
                AllOf(HasSubstr("diffie-hellman-group14-sha1"), HasSubstr("curve25519-sha256")));
}

TEST_F(BadSshServerTest, OldAlgorithmsWorkOnWish) {
    SshdSetup setup;
    setup.has_rsa_key = true;
    setup.more_lines = {"KexAlgorithms diffie-hellman-group14-sha1", "HostKeyAlgorithms ssh-rsa",
                        "Ciphers aes128-cbc", "MACs hmac-sha1"};
    StartServer(setup);
    SshTarget target = PasswordTarget();
    const std::string key =
        test_support::TemporaryFolder::ReadFile(server_->HostKeyFile() + "_rsa.pub");
    folder_.Write("known_hosts", "[127.0.0.1]:" + std::to_string(target.port) + " " +
                                     key.substr(0, key.rfind(' ')) + "\n");
    EXPECT_EQ(Connect(target).problem, SshProblem::kNoCommonAlgorithm);
    target.is_legacy_allowed = true;
    const SshFailure failure = Connect(target);
    EXPECT_FALSE(failure) << failure.text;
}

}  // namespace
}  // namespace Vantix::transport
