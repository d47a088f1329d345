// What is decided before ipmitool is started; its answers are checked where the real one is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTooLong =
    "Unable to access IPMI service with a password over 20 characters according to IPMI standard.";

class IpmiStartTest : public testing::Test {
  protected:
    IpmiStartTest() {
        option_.target_address = "127.0.0.1";
        option_.user = "operator";
        option_.password = "invented-pass";
        connection_.host = "left over";
    }

    TarselResult Fetch() { return FetchIPMIConnection(option_, connection_); }

    ConnectOption option_;
    ConnectionInfo connection_;
};

TEST_F(IpmiStartTest, PasswordOfTwentyOneBytesHasItsOwnCodeAndText) {
    option_.password = std::string(21, 'x');
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, IPMI_PASSWORD_TOO_LONG);
    EXPECT_EQ(result.message, kTooLong);
    EXPECT_EQ(connection_.host, "");
}

TEST_F(IpmiStartTest, PasswordWithLineEndOrTabHasTheSameCode) {
    for (const char* password : {"a\tb", "a\rb", "a\nb"}) {
        option_.password = password;
        EXPECT_EQ(Fetch().message, kTooLong);
    }
}

TEST_F(IpmiStartTest, RefusedLoginOutranksAnOverlongPassword) {
    option_.password = std::string(21, 'x');
    option_.run->LoginRefused("Redfish");
    EXPECT_EQ(Fetch().code, AUTHENTICATION_FAILED);
}

TEST_F(IpmiStartTest, FailureOfTrustOutranksAll) {
    option_.run->LoginRefused("Redfish");
    option_.run->RecordFailure(TarselResult(VERIFY_CERTIFICATE_FAILED, "not trusted"));
    EXPECT_EQ(Fetch().message, "not trusted");
}

TEST_F(IpmiStartTest, PasswordThatMustBeChangedIsNotTried) {
    option_.run->RecordFailure(TarselResult(PASSWORD_MUST_BE_CHANGED, "change it"));
    EXPECT_EQ(Fetch().code, PASSWORD_MUST_BE_CHANGED);
}

TEST_F(IpmiStartTest, LongUserNameIsNamed) {
    option_.user = "seventeen-letters";
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("seventeen-letters"));
}

TEST_F(IpmiStartTest, FailedListIsEmpty) {
    option_.password = std::string(21, 'x');
    std::vector<ConnectionInfo> list(2);
    EXPECT_EQ(FetchIPMIConnectionList(option_, list).code, IPMI_PASSWORD_TOO_LONG);
    EXPECT_THAT(list, IsEmpty());
}

}  // namespace
}  // namespace Vantix::VantixConnection
