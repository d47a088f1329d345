// Connections with real ipmitool and a real IPMI peer: how each ends.
#include "integration/platform/ipmi/ipmi_test_base.h"

namespace ipmi_tests {
namespace {

using test_support::SilentUdpPort;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using IpmiConnectionTest = IpmiSimulatorTest;

TEST_F(IpmiConnectionTest, RightLoginGivesAnIpmiConnection) {
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    ASSERT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(connection.connect_case, Vantix::VantixConnection::kConnectCaseIpmi);
    EXPECT_EQ(connection.host, "127.0.0.1");
    EXPECT_EQ(connection.port, simulator_->Port());
    EXPECT_NE(connection.channel, nullptr);
}

TEST_F(IpmiConnectionTest, ListHoldsTheOneConnection) {
    std::vector<ConnectionInfo> list(3);
    EXPECT_TRUE(FetchIPMIConnectionList(option_, list).IsSucceed());
    EXPECT_THAT(list, SizeIs(1));
}

TEST_F(IpmiConnectionTest, EmptyPasswordIsALoginLikeAnother) {
    option_.user = "guest";
    option_.password.clear();
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_TRUE(result.IsSucceed()) << result;
}

TEST_F(IpmiConnectionTest, WrongPasswordIsAnAuthenticationFailure) {
    option_.password = "wrong-invented";
    ConnectionInfo connection;
    connection.host = "left over";
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("for the account \"operator\""));
    EXPECT_EQ(connection.host, "");
    EXPECT_EQ(connection.channel, nullptr);
}

TEST_F(IpmiConnectionTest, RefusedLoginEndsAllFurtherLoginsOfTheRun) {
    option_.password = "wrong-invented";
    ConnectionInfo connection;
    (void)FetchIPMIConnection(option_, connection);
    EXPECT_FALSE(option_.run->MayTryLogin());
    option_.password = test_support::kIpmiPassword;
    EXPECT_EQ(FetchIPMIConnection(option_, connection).code, AUTHENTICATION_FAILED);
    EXPECT_EQ(GetRESTConnection(option_, connection).code, AUTHENTICATION_FAILED);
}

TEST_F(IpmiConnectionTest, LoginRefusedOverAnotherProtocolEndsIpmi) {
    option_.run->LoginRefused("Redfish");
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("No further login is tried"));
}

TEST_F(IpmiConnectionTest, UnknownUserIsAnAuthenticationFailure) {
    option_.user = "nobody";
    ConnectionInfo connection;
    EXPECT_EQ(FetchIPMIConnection(option_, connection).code, AUTHENTICATION_FAILED);
}

TEST_F(IpmiConnectionTest, DisabledUserIsAnAuthenticationFailure) {
    option_.user = "off";
    option_.password = "off-pass";
    ConnectionInfo connection;
    EXPECT_EQ(FetchIPMIConnection(option_, connection).code, AUTHENTICATION_FAILED);
}

TEST_F(IpmiConnectionTest, PasswordThatIpmiCannotCarryIsNeverSent) {
    for (const std::string& password : {std::string(21, 'x'), std::string("tab\there")}) {
        option_.password = password;
        ConnectionInfo connection;
        const TarselResult result = FetchIPMIConnection(option_, connection);
        EXPECT_EQ(result.code, IPMI_PASSWORD_TOO_LONG);
        EXPECT_EQ(result.message,
                  "Unable to access IPMI service with a password over 20 characters according to "
                  "IPMI standard.");
        EXPECT_TRUE(option_.run->MayTryLogin());
    }
}

TEST_F(IpmiConnectionTest, UserNameThatIpmiDoesNotKnowIsNamed) {
    option_.user = "a-name-of-seventeen";
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("a-name-of-seventeen"));
}

TEST_F(IpmiConnectionTest, PeerWithoutTheSuiteOfTheUserEndsWithItsOwnCode) {
    option_.ipmi_cipher = 17;
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("cipher suite"));
}

TEST_F(IpmiConnectionTest, NameThatIsNotResolvedIsSaid) {
    option_.target_address = "no-such-host.invalid";
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("could not be resolved"));
}

// The tool's own waits: about ten seconds, once.
TEST_F(IpmiConnectionTest, SilentHostIsSaidAndNotAskedTwice) {
    const SilentUdpPort silence;
    option_.ipmi_port = silence.Port();
    ConnectionInfo connection;
    EXPECT_EQ(FetchIPMIConnection(option_, connection).code, CONNECTION_FAILED);
    const StandInTool tool("touch \"$0.used\"");
    const TarselResult again = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(again.code, CONNECTION_FAILED);
    EXPECT_THAT(again.message, HasSubstr("Nobody answered over IPMI"));
    EXPECT_THAT(tool.Read("ipmitool.used"), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(tool.Path("ipmitool.used")));
}

TEST_F(IpmiConnectionTest, TargetWhoseCertificateWasNotAcceptedGetsNoLogin) {
    option_.run->RecordFailure(TarselResult(VERIFY_CERTIFICATE_FAILED, "not trusted"));
    ConnectionInfo connection;
    const TarselResult result = FetchIPMIConnection(option_, connection);
    EXPECT_EQ(result.code, VERIFY_CERTIFICATE_FAILED);
    EXPECT_EQ(result.message, "not trusted");
}

TEST_F(IpmiConnectionTest, HttpsThatDoesNotAnswerSaysNothingOfIpmi) {
    ConnectionInfo connection;
    EXPECT_EQ(GetRESTConnection(option_, connection).code, CONNECTION_FAILED);
    EXPECT_TRUE(FetchIPMIConnection(option_, connection).IsSucceed());
}

TEST_F(IpmiConnectionTest, CancelledRunStartsNothing) {
    option_.run->Cancel();
    ConnectionInfo connection;
    EXPECT_EQ(FetchIPMIConnection(option_, connection).code, INTERRUPTED_BY_USER);
}

}  // namespace
}  // namespace ipmi_tests
