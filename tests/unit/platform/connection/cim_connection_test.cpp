// What is decided before anything is sent; the rest is checked against simulated machines.
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
    CimConnectionTest() { option_.target_address = "127.0.0.1"; }
    TarselResult Fetch() { return FetchCIMConnectionList(option_, list_); }

    ConnectOption option_;
    std::vector<ConnectionInfo> list_{ConnectionInfo()};
};

TEST_F(CimConnectionTest, CancelledRunIsInterruptedAndTheListEmptied) {
    option_.run->RecordFailure(TarselResult(TIMEOUT, "late"));
    option_.run->Cancel();
    EXPECT_EQ(Fetch().code, INTERRUPTED_BY_USER);
    EXPECT_THAT(list_, IsEmpty());
}

TEST_F(CimConnectionTest, SpentLoginBudgetIsARefusedLogin) {
    option_.run->LoginRefused("elsewhere");
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("No further login is tried on 127.0.0.1:5989"));
    EXPECT_THAT(list_, IsEmpty());
}

TEST_F(CimConnectionTest, AddressThatIsNoneIsNotConnectedTo) {
    option_.target_address = "no host";
    option_.connect_mode = kConnectModeChassis;
    EXPECT_EQ(Fetch().code, CONNECTION_FAILED);
    EXPECT_THAT(list_, IsEmpty());
}

class TargetFailureTest : public CimConnectionTest, public ::testing::WithParamInterface<int> {};

TEST_P(TargetFailureTest, OfTheRedfishLegIsHandedOnWordForWord) {
    option_.run->RecordFailure(TarselResult(GetParam(), "told by the other leg"));
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, GetParam());
    EXPECT_EQ(result.message, "told by the other leg");
    EXPECT_THAT(list_, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, TargetFailureTest,
                         ::testing::Values(AUTHENTICATION_FAILED, VERIFY_CERTIFICATE_FAILED,
                                           PASSWORD_MUST_BE_CHANGED, INTERRUPTED_BY_USER,
                                           CONNECTION_FAILED, TIMEOUT));

}  // namespace
}  // namespace Vantix::VantixConnection
