#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CimConnectionTest : public ::testing::Test {
  protected:
    CimConnectionTest() { option_.target_address = "192.0.2.7"; }
    TarselResult Fetch() { return FetchCIMConnectionList(option_, list_); }

    ConnectOption option_;
    std::vector<ConnectionInfo> list_{ConnectionInfo()};
};

TEST_F(CimConnectionTest, SaysThatCimIsNotBuiltInAndWhatToDo) {
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("192.0.2.7"));
    EXPECT_THAT(result.message, HasSubstr("CIM"));
    EXPECT_THAT(result.message, HasSubstr("enable Redfish"));
    EXPECT_EQ(result.message.back(), '.');
}

TEST_F(CimConnectionTest, ListIsEmptiedFirst) {
    Fetch();
    EXPECT_THAT(list_, IsEmpty());
}

TEST_F(CimConnectionTest, CancelledRunIsInterrupted) {
    option_.run->RecordFailure(TarselResult(TIMEOUT, "late"));
    option_.run->Cancel();
    EXPECT_EQ(Fetch().code, INTERRUPTED_BY_USER);
}

class TargetFailureTest : public CimConnectionTest, public ::testing::WithParamInterface<int> {};

TEST_P(TargetFailureTest, OfTheRedfishLegIsHandedOnWordForWord) {
    option_.run->RecordFailure(TarselResult(GetParam(), "told by the other leg"));
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, GetParam());
    EXPECT_EQ(result.message, "told by the other leg");
}

INSTANTIATE_TEST_SUITE_P(All, TargetFailureTest,
                         ::testing::Values(AUTHENTICATION_FAILED, VERIFY_CERTIFICATE_FAILED,
                                           PASSWORD_MUST_BE_CHANGED, NO_AVAILABLE_USER_ID,
                                           INTERRUPTED_BY_USER, CONNECTION_FAILED, TIMEOUT));

TEST_F(CimConnectionTest, OtherFailureOfTheRedfishLegIsQuoted) {
    option_.run->RecordFailure(TarselResult(NO_RESTFUL_SERVICE, "no service there"));
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("(over Redfish: no service there)"));
}

TEST_F(CimConnectionTest, QuotedSentenceDoesNotEndInTheMiddle) {
    option_.run->RecordFailure(TarselResult(NO_RESTFUL_SERVICE, "No service there."));
    EXPECT_THAT(Fetch().message, HasSubstr("(over Redfish: No service there)."));
}

TEST_F(CimConnectionTest, FailureWithoutWordsIsQuotedByItsRegisteredText) {
    option_.run->RecordFailure(TarselResult(NO_RESTFUL_SERVICE, ""));
    const std::string text = GetResultMessage(NO_RESTFUL_SERVICE);
    EXPECT_THAT(Fetch().message, HasSubstr(text.substr(0, text.find_last_not_of('.') + 1)));
}

}  // namespace
}  // namespace Vantix::VantixConnection
