#include "service/update_scan_service/detail/target_system_info.h"

#include <string>
#include <utility>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::HasUser;
using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

class TargetSystemInfoTest : public support::BmcScanTestBase {
  protected:
    TarselResult Acquire() { return AcquireTargetSystemInfo(option_, info_); }

    void OsInfoGives(int code) {
        EXPECT_CALL(platform_, GetOSInfo(_, _))
            .WillOnce(DoAll(SetArgReferee<0>(std::make_pair("rhel9", "x86_64")),
                            SetArgReferee<1>("4"), Return(code)));
    }
    void WalkBegins() {
        OsInfoGives(0);
        EXPECT_CALL(platform_, MonotonicSeconds()).WillOnce(Return(100));
        SystemCheckIsMade();
    }
    void IpmiFetchGives(const TarselResult& result, const Connections& connections) {
        EXPECT_CALL(platform_, FetchIPMIConnectionList(HasUser("someone"), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(connections), Return(result)));
    }
    void TypesAre(const ConnectionInfo& connection, const std::string& machine_type,
                  const std::string& bmc_type) {
        MachineTypeIs(connection, 0, machine_type, "SN-1");
        BmcTypeIs(connection, bmc_type);
    }
    /// The local host is asked in vain for both.
    void LocalHostTellsNothing() {
        MachineTypeIs(local_, TIMEOUT, "", "");
        BmcTypeCodeIs(local_, 1, 0);
    }

    const ConnectionInfo ipmi_ = support::AConnection(1, 623);
    const ConnectionInfo local_;
    const TarselResult closed_{CONNECTION_FAILED, "nobody there"};
    TargetSystemInfo info_;
};

// ---- operating system

TEST_F(TargetSystemInfoTest, FailedOsInfoEndsEverything) {
    info_.redfish_supported = true;
    OsInfoGives(0x1006F);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0x1006F);
    EXPECT_EQ(result.message, "Failed to get OS type.");
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get OS info with error is 111 Failed to get OS type."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:111"));
    EXPECT_FALSE(info_.redfish_supported);
}

TEST_F(TargetSystemInfoTest, TraceEnclosesOsInfo) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "Ossa";
    EXPECT_CALL(platform_, GetOSInfo(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0"));
        return 0;
    });
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0"));
}

TEST_F(TargetSystemInfoTest, OsInfoIsReadEvenWhenAllElseIsKnown) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "Ossa";
    OsInfoGives(0);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.os_arch.first, "rhel9");
    EXPECT_EQ(info_.os_arch.second, "x86_64");
    EXPECT_EQ(info_.os_minor_version, "4");
}

// ---- known beforehand

class KnownTypesTest : public TargetSystemInfoTest,
                       public testing::WithParamInterface<std::pair<const char*, bool>> {};

TEST_P(KnownTypesTest, NothingIsProbedAndRedfishFollowsFromTheTypeAlone) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = GetParam().first;
    info_.redfish_supported = !GetParam().second;
    OsInfoGives(0);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(info_.redfish_supported, GetParam().second);
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
}

INSTANTIATE_TEST_SUITE_P(Types, KnownTypesTest,
                         testing::Values(std::make_pair("Tavro", true),
                                         std::make_pair("TAVRO", false),
                                         std::make_pair("Ossa2", false)));

TEST_F(TargetSystemInfoTest, KnownTypesAreNotProbedForDriversEither) {
    option_.scan_type = "dd";
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "AMI";
    OsInfoGives(0);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(TargetSystemInfoTest, KnownMachineTypeAloneIsKept) {
    info_.mt_sn.first = "MT-0";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    BmcTypeIs(rest_, "Tavro");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.mt_sn.first, "MT-0");
    EXPECT_FALSE(log_.Has(3, "Finished to get machine type"));
}

TEST_F(TargetSystemInfoTest, KnownBmcTypeAloneIsKept) {
    info_.bmc_type = "Ossa";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "Ossa");
    EXPECT_TRUE(info_.redfish_supported);
}

// ---- drivers only

class DriversOnlyInfoTest : public TargetSystemInfoTest {
  protected:
    DriversOnlyInfoTest() { option_.scan_type = "dd"; }

    void MachineTypeAndListsAre(bool cfc, bool amd, bool grantly) {
        OsInfoGives(0);
        MachineTypeIs(local_, 0, "MT-1", "SN-1");
        SystemCheckIsMade();
        EXPECT_CALL(platform_, IsCFCSystem("MT-1")).WillOnce(Return(cfc));
        if (cfc) return;
        EXPECT_CALL(platform_, IsAMDSystem("MT-1")).WillOnce(Return(amd));
        if (amd) return;
        EXPECT_CALL(platform_, IsGrantlySystem("MT-1")).WillOnce(Return(grantly));
    }
};

TEST_F(DriversOnlyInfoTest, ListsAreAskedInAFixedOrderAndNoConnectionIsOpened) {
    const testing::InSequence in_sequence;
    MachineTypeAndListsAre(false, false, false);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
    EXPECT_EQ(info_.mt_sn.second, "SN-1");
    EXPECT_EQ(info_.bmc_type, "Tavro");
    EXPECT_FALSE(info_.redfish_supported);
}

TEST_F(DriversOnlyInfoTest, CfcListedMachineIsAmiWhateverElseListsIt) {
    MachineTypeAndListsAre(true, true, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(DriversOnlyInfoTest, AmdListedMachineIsAmi) {
    MachineTypeAndListsAre(false, true, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(DriversOnlyInfoTest, GrantlyListedMachineIsOssa2) {
    MachineTypeAndListsAre(false, false, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "Ossa2");
}

TEST_F(DriversOnlyInfoTest, LogAndTraceTellBothOutcomes) {
    MachineTypeAndListsAre(true, false, false);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Finished to get machine type with bool:1Machine type:MT-1",
                            "Finished to get bmc type with bool:1"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:0"));
}

TEST_F(DriversOnlyInfoTest, FailedMachineTypeIsAnInternalErrorNotItsOwnCode) {
    OsInfoGives(0);
    MachineTypeIs(local_, TIMEOUT, "MT-left-behind", "");
    SystemCheckIsMade();
    EXPECT_CALL(platform_, IsCFCSystem("")).WillOnce(Return(false));
    EXPECT_CALL(platform_, IsAMDSystem("")).WillOnce(Return(false));
    EXPECT_CALL(platform_, IsGrantlySystem("")).WillOnce(Return(false));
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Failed to get system info");
    EXPECT_TRUE(log_.Has(3, "Finished to get machine type with bool:0Machine type:"));
    EXPECT_TRUE(log_.Has(3, "Finished to get bmc type with bool:1"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:18"));
}

TEST_F(DriversOnlyInfoTest, OtherSpellingWalksTheConnections) {
    option_.scan_type = "DD";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    TypesAre(rest_, "MT-1", "Tavro");
    EXPECT_EQ(Acquire().code, 0);
}

// ---- walk over the connections

TEST_F(TargetSystemInfoTest, RedfishThatTellsBothEndsTheWalk) {
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

TEST_F(TargetSystemInfoTest, WalkIsLoggedAndTraced) {
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

TEST_F(TargetSystemInfoTest, AllKindsAreTriedInAFixedOrder) {
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

TEST_F(TargetSystemInfoTest, FailedFetchIsLoggedWithItsCase) {
    WalkBegins();
    RestFetchGives(closed_, {rest_});
    CimFetchGives(ok_, {cim_});
    TypesAre(cim_, "MT-1", "Ossa");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to get connection info for case:5 with error is "
                                           "13 nobody there"));
}

TEST_F(TargetSystemInfoTest, UnsupportedRedfishIsPassedByWithoutAQuestion) {
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

TEST_F(TargetSystemInfoTest, WhatOneConnectionToldIsNotAskedOfTheNext) {
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

TEST_F(TargetSystemInfoTest, FailedMachineTypeIsAskedAgainElsewhere) {
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

TEST_F(TargetSystemInfoTest, SuccessfulButEmptyListIsPassedByLikeAFailedOne) {
    WalkBegins();
    RestFetchGives(ok_, {});
    CimFetchGives(ok_, {cim_});
    TypesAre(cim_, "MT-1", "Ossa");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get connection info for case:5 with error is 0 fetched"));
}

TEST_F(TargetSystemInfoTest, ConnectionIsGivenUpBeforeTheNextKindIsTried) {
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

TEST_F(TargetSystemInfoTest, RefusedLoginOverRedfishIsReturnedAtOnce) {
    WalkBegins();
    RestFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused"), {});
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get connection info becasue of auth failed."));
}

TEST_F(TargetSystemInfoTest, RefusedSystemInterfaceIsReturnedAtOnceToo) {
    WalkBegins();
    RestFetchGives(TarselResult(KCS_CONNECT_FAILED, "no interface"), {});
    EXPECT_EQ(Acquire().code, KCS_CONNECT_FAILED);
}

TEST_F(TargetSystemInfoTest, RefusedLoginOverCimIsReturnedThoughIpmiMightWork) {
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused by CIM"), {});
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused by CIM");
}

TEST_F(TargetSystemInfoTest, RefusedLoginOverIpmiDoesNotEndTheWalk) {
    WalkBegins();
    RestFetchGives(closed_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused by IPMI"), {});
    TypesAre(local_, "MT-1", "BMC");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_FALSE(log_.Has(2, "becasue of auth failed"));
}

// ---- nothing found

TEST_F(TargetSystemInfoTest, FailureOfIpmiIsReportedBeforeThoseOfTheOthers) {
    WalkBegins();
    RestFetchGives(TarselResult(TIMEOUT, "slow"), {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(TarselResult(IPMI_SESSION_FAILED, "no session"), {});
    LocalHostTellsNothing();
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_EQ(result.message, "no session");
}

TEST_F(TargetSystemInfoTest, FailureOfIpmiIsReportedWhenTheOthersWereMerelyUnsupported) {
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

TEST_F(TargetSystemInfoTest, FailureOfRedfishIsReportedBeforeThatOfCim) {
    WalkBegins();
    RestFetchGives(TarselResult(TIMEOUT, "slow"), {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(ok_, {});
    LocalHostTellsNothing();
    EXPECT_EQ(Acquire().code, TIMEOUT);
}

TEST_F(TargetSystemInfoTest, FailureOfCimIsReportedWhenItIsTheOnlyOne) {
    WalkBegins();
    RestFetchGives(ok_, {});
    CimFetchGives(closed_, {});
    IpmiFetchGives(ok_, {});
    LocalHostTellsNothing();
    EXPECT_EQ(Acquire().code, CONNECTION_FAILED);
}

TEST_F(TargetSystemInfoTest, NoStoredFailureIsAnInternalError) {
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

TEST_F(TargetSystemInfoTest, FailuresOfOneCallAreForgottenInTheNext) {
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
