// When the HTTPS service of a module is not asked at all; the answers of a real one are checked
// where the simulator is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {
namespace {

using testing::HasSubstr;

class VeskConnectionTest : public testing::Test {
  protected:
    VeskConnectionTest() {
        option_.target_address = "127.0.0.1";
        option_.port = 9;
        connection_.host = "left over";
        connection_.connect_case = kConnectCaseCim;
    }

    TarselResult Fetch() { return FetchVeskHttpsConnection(option_, connection_); }
    TarselResult FetchAfter(int code) {
        option_.run->RecordFailure(TarselResult(code, "the earlier words"));
        return Fetch();
    }

    ConnectOption option_;
    ConnectionInfo connection_;
};

TEST_F(VeskConnectionTest, FailureThatHoldsHereTooIsRepeatedInItsOwnWords) {
    for (const int code :
         {AUTHENTICATION_FAILED, VERIFY_CERTIFICATE_FAILED, PASSWORD_MUST_BE_CHANGED,
          INTERRUPTED_BY_USER, CONNECTION_FAILED, TIMEOUT}) {
        const TarselResult result = FetchAfter(code);
        EXPECT_EQ(result.code, code);
        EXPECT_EQ(result.message, "the earlier words");
    }
}

TEST_F(VeskConnectionTest, OutputIsResetAlsoWhenNothingIsTried) {
    (void)FetchAfter(CONNECTION_FAILED);
    EXPECT_EQ(connection_.host, "");
    EXPECT_EQ(connection_.connect_case, kConnectCaseLocal);
}

TEST_F(VeskConnectionTest, WishForSessionsOnlyIsNotTurnedIntoBasic) {
    option_.auth = AuthMethod::kSession;
    EXPECT_EQ(FetchAfter(NO_RESTFUL_SERVICE).message, "the earlier words");
}

TEST_F(VeskConnectionTest, SpentLoginBudgetAllowsNoLogin) {
    option_.run->LoginRefused("Redfish");
    const TarselResult result = Fetch();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("No further login is tried"));
}

TEST_F(VeskConnectionTest, CancelledRunTriesNothing) {
    option_.run->Cancel();
    EXPECT_EQ(Fetch().code, INTERRUPTED_BY_USER);
}

}  // namespace
}  // namespace Vantix::VantixConnection
