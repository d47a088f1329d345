// The walk over the kinds of connection that system information is acquired over.
#include <memory>

#include "support/target_system_info_test_base.h"

namespace service::detail {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

using ConnectCaseWalkTest = support::TargetSystemInfoTestBase;

// ---- walk over the connections

TEST_F(ConnectCaseWalkTest, RedfishThatTellsBothEndsTheWalk) {
    const testing::InSequence in_sequence;
    WalkBegins();
    RestFetchGives(ok_, {rest_, support::AConnection(5, 4431)});
    RedfishIsSupported(true);
    TypesAre(rest_, "MT-1", "Tavro");
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
    EXPECT_EQ(info_.mt_sn.second, "SN-1");
    EXPECT_EQ(info_.bmc_type, "Tavro");
    EXPECT_TRUE(info_.redfish_supported);
}

TEST_F(ConnectCaseWalkTest, WalkIsLoggedAndTraced) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    TypesAre(rest_, "MT-1", "Tavro");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(
        log_.Texts(3),
        ElementsAre("Try to get system info on case:5", "Finished to get machine type with bool:1",
                    "Finished to get bmc type with bool:1",
                    "Both machine type and BMC type have been got sucessfully."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:0"));
    EXPECT_THAT(log_.Texts(2), IsEmpty());
}

TEST_F(ConnectCaseWalkTest, AllKindsAreTriedInAFixedOrder) {
    const testing::InSequence in_sequence;
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(closed_, {});
    TypesAre(local_, "MT-1", "BMC");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "BMC");
    EXPECT_FALSE(info_.redfish_supported);
    EXPECT_TRUE(log_.Has(3, "Try to get system info on case:11"));
}

TEST_F(ConnectCaseWalkTest, FailedFetchIsLoggedWithItsCase) {
    WalkBegins();
    RestFetchGives(closed_, {rest_});
    CimFetchGives(ok_, {cim_});
    TypesAre(cim_, "MT-1", "Ossa");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to get connection info for case:5 with error is "
                                           "13 nobody there"));
}

TEST_F(ConnectCaseWalkTest, UnsupportedRedfishIsPassedByWithoutAQuestion) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(false);
    CimFetchGives(ok_, {cim_});
    TypesAre(cim_, "MT-1", "Ossa");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Redfish is not supported, continue with next connect case."));
    EXPECT_FALSE(info_.redfish_supported);
}

TEST_F(ConnectCaseWalkTest, WhatOneConnectionToldIsNotAskedOfTheNext) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    BmcTypeCodeIs(rest_, 7, 0);
    CimFetchGives(ok_, {cim_});
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
    EXPECT_EQ(info_.bmc_type, "Tavro");
    EXPECT_TRUE(info_.redfish_supported);
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to acquire BMC type with error is 7"));
    EXPECT_TRUE(log_.Has(3, "Finished to get bmc type with bool:0"));
}

TEST_F(ConnectCaseWalkTest, FailedMachineTypeIsAskedAgainElsewhere) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    MachineTypeIs(rest_, TIMEOUT, "MT-left-behind", "SN-left-behind");
    BmcTypeIs(rest_, "Tavro");
    CimFetchGives(ok_, {cim_});
    MachineTypeIs(cim_, 0, "MT-1", "");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
    EXPECT_EQ(info_.mt_sn.second, "");
    EXPECT_TRUE(log_.Has(3, "Finished to get machine type with bool:0"));
}

TEST_F(ConnectCaseWalkTest, SuccessfulButEmptyListIsPassedByLikeAFailedOne) {
    WalkBegins();
    RestFetchGives(ok_, {});
    CimFetchGives(ok_, {cim_});
    TypesAre(cim_, "MT-1", "Ossa");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get connection info for case:5 with error is 0 fetched"));
}

TEST_F(ConnectCaseWalkTest, ConnectionIsGivenUpBeforeTheNextKindIsTried) {
    ConnectionInfo held = rest_;
    held.channel = std::make_shared<int>(1);
    const std::weak_ptr<void> channel = held.channel;
    WalkBegins();
    RestFetchGives(ok_, {held});
    const long scripted_copies = channel.use_count();
    RedfishIsSupported(false);
    EXPECT_CALL(platform_, FetchCIMConnectionList(_, _)).WillOnce([&](const auto&, auto&) {
        EXPECT_LE(channel.use_count(), scripted_copies);
        return TarselResult(AUTHENTICATION_FAILED, "refused");
    });
    EXPECT_EQ(Acquire().code, AUTHENTICATION_FAILED);
}

// ---- refused for good

TEST_F(ConnectCaseWalkTest, RefusedLoginOverRedfishIsReturnedAtOnce) {
    WalkBegins();
    RestFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused"), {});
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get connection info becasue of auth failed."));
}

TEST_F(ConnectCaseWalkTest, RefusedSystemInterfaceIsReturnedAtOnceToo) {
    WalkBegins();
    RestFetchGives(TarselResult(KCS_CONNECT_FAILED, "no interface"), {});
    EXPECT_EQ(Acquire().code, KCS_CONNECT_FAILED);
}

TEST_F(ConnectCaseWalkTest, RefusedLoginOverCimIsReturnedThoughIpmiMightWork) {
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused by CIM"), {});
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused by CIM");
}

TEST_F(ConnectCaseWalkTest, RefusedLoginOverIpmiDoesNotEndTheWalk) {
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused by IPMI"), {});
    TypesAre(local_, "MT-1", "BMC");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_FALSE(log_.Has(2, "becasue of auth failed"));
}

// ---- nothing found

TEST_F(ConnectCaseWalkTest, FailureOfIpmiIsReportedBeforeThoseOfTheOthers) {
    WalkBegins();
    RestFetchGives(TarselResult(TIMEOUT, "slow"), {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(TarselResult(IPMI_SESSION_FAILED, "no session"), {});
    LocalHostTellsNothing();
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_EQ(result.message, "no session");
}

TEST_F(ConnectCaseWalkTest, FailureOfIpmiIsReportedWhenTheOthersWereMerelyUnsupported) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(false);
    CimFetchGives(ok_, {});
    IpmiFetchGives(closed_, {});
    LocalHostTellsNothing();
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "nobody there");
}

TEST_F(ConnectCaseWalkTest, FailureOfRedfishIsReportedBeforeThatOfCim) {
    WalkBegins();
    RestFetchGives(TarselResult(TIMEOUT, "slow"), {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(ok_, {});
    LocalHostTellsNothing();
    EXPECT_EQ(Acquire().code, TIMEOUT);
}

TEST_F(ConnectCaseWalkTest, FailureOfCimIsReportedWhenItIsTheOnlyOne) {
    WalkBegins();
    RestFetchGives(ok_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(ok_, {});
    LocalHostTellsNothing();
    EXPECT_EQ(Acquire().code, CONNECTION_FAILED);
}

TEST_F(ConnectCaseWalkTest, NoStoredFailureIsAnInternalError) {
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(false);
    CimFetchGives(ok_, {});
    IpmiFetchGives(ok_, {});
    LocalHostTellsNothing();
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Failed to get system info");
}

TEST_F(ConnectCaseWalkTest, FailuresOfOneCallAreForgottenInTheNext) {
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(closed_, {});
    LocalHostTellsNothing();
    EXPECT_EQ(Acquire().code, CONNECTION_FAILED);
    testing::Mock::VerifyAndClearExpectations(&platform_);

    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);  // neither waited for nor asked whether it is starting
    TypesAre(rest_, "MT-1", "Tavro");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_FALSE(log_.Has(3, "Retry on REST again"));
}

}  // namespace
}  // namespace service::detail
