#include "service/update_scan_service/detail/hypervisor_scan.h"

#include <string>
#include <utility>
#include <vector>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

// Platform names in the log say EXSI where the library does, on purpose.
class HypervisorScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return HypervisorScan(option_, report_, nullptr); }

    void VersionIsUnsupported(bool unsupported) {
        EXPECT_CALL(platform_, EXSIInventoryConstructor(IsConnection(cim_)));
        EXPECT_CALL(platform_, IsUnSpportedEXSIVersion(IsConnection(cim_)))
            .WillOnce(Return(unsupported));
    }
    void PreConfigurationGives(int code) {
        EXPECT_CALL(platform_, CIMServerConfigConstructor(IsConnection(cim_)));
        EXPECT_CALL(platform_, PrevConfig(IsConnection(cim_))).WillOnce(Return(code));
    }
    void OsInfoGives(int code, const std::string& os = "", const std::string& arch = "") {
        EXPECT_CALL(platform_, GetEsxiOSInfo(IsConnection(cim_), _))
            .WillOnce(DoAll(SetArgReferee<1>(std::make_pair(os, arch)), Return(code)))
            .RetiresOnSaturation();
    }
    void WaitsAMinute() { EXPECT_CALL(platform_, SleepMilliseconds(60000)).RetiresOnSaturation(); }

    /// All up to the question for the operating system works.
    void PrepareHost() {
        CimFetchGives(ok_, {cim_});
        VersionIsUnsupported(false);
        PreConfigurationGives(0);
    }
    /// All up to the inventory works.
    void ReachInventory() {
        PrepareHost();
        OsInfoGives(0, "esxi7", "x86_64");
        MachineTypeIs(cim_, 0, "MT-1", "SN-1");
    }

    void ExpectUntouchedReport() const {
        EXPECT_EQ(report_.GetOS(), "");
        EXPECT_EQ(report_.GetArch(), "");
        EXPECT_EQ(report_.GetMT(), "");
        EXPECT_EQ(report_.GetScanCount(), 9);
        EXPECT_THAT(report_.GetScanResults(), IsEmpty());
    }

    HypervisorScanTest() { report_.SetScanCount(9); }

    const Identities two_identities_ = {
        AnIdentity().Name("UEFI").SoftwareId("UEFI").Version("1"),
        AnIdentity().Name("NIC").Description("b").ElementName("c").Version("d")};
};

TEST_F(HypervisorScanTest, HostIsAskedInAFixedOrder) {
    const testing::InSequence in_sequence;
    ReachInventory();
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(HypervisorScanTest, SuccessFillsTheReportAndHasNoMessage) {
    ReachInventory();
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetOS(), "esxi7");
    EXPECT_EQ(report_.GetArch(), "x86_64");
    EXPECT_EQ(report_.GetBmcType(), "Tavro");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetScanCount(), 2);
    ASSERT_EQ(report_.GetScanResults().size(), 2u);
    EXPECT_EQ(report_.GetScanResults()[0].pldm, "1");
    EXPECT_EQ(report_.GetScanResults()[1].name, "NIC");
}

TEST_F(HypervisorScanTest, LogAndTraceTellEveryStep) {
    ReachInventory();
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Do preconfig for EXSI server first, which host is 127.0.0.1",
                            "Start ESXI inventorying..."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:0", "[B]20:0", "[E]20:0"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    EXPECT_THAT(log_.Texts(2), IsEmpty());
}

TEST_F(HypervisorScanTest, EveryIdentityIsDumpedUnderTheHostsOwnHeading) {
    ReachInventory();
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
    ASSERT_EQ(log_.Texts(4).size(), 2u);
    EXPECT_EQ(log_.Texts(4)[1],
              "[ESXI Software Identity Information]\n"
              "Name:           \tNIC\n"
              "Description:    \tb\n"
              "Element Name:   \tc\n"
              "Version String: \td\n");
}

TEST_F(HypervisorScanTest, FirstOfSeveralConnectionsIsUsedThroughout) {
    CimFetchGives(ok_, {cim_, support::AConnection(2, 5990)});
    VersionIsUnsupported(false);
    PreConfigurationGives(0);
    OsInfoGives(0, "esxi7", "x86_64");
    MachineTypeIs(cim_, 0, "MT-1", "SN-1");
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
}

// ---- connection, version, pre-configuration

TEST_F(HypervisorScanTest, FailedConnectionIsReturnedAsItIsAndNothingWasLogged) {
    CimFetchGives(TarselResult(CONNECTION_FAILED, "nobody there"), {cim_});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "nobody there");
    EXPECT_THAT(log_.Records(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, EmptyConnectionListIsAGenericFailure) {
    CimFetchGives(ok_, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get connections list fail."));
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, UnsupportedVersionIsRefusedBeforeAnythingElse) {
    CimFetchGives(ok_, {cim_});
    VersionIsUnsupported(true);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, ESXI_INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Tarsel do not support this installed VMWare ESXi Version.");
    EXPECT_THAT(log_.Texts(3), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, NumberOfAFailedPreConfigurationBecomesTheCode) {
    CimFetchGives(ok_, {cim_});
    VersionIsUnsupported(false);
    PreConfigurationGives(-3);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, -3);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Do preconfig for EXSI server first, which host is 127.0.0.1",
                            "Failed to do preconfig for EXSI server with error is -3"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, AnyNumberEndsTheScanEvenOneThatReadsAsSuccess) {
    CimFetchGives(ok_, {cim_});
    VersionIsUnsupported(false);
    PreConfigurationGives(0x10000);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10000);
    EXPECT_TRUE(result.IsSucceed());
    ExpectUntouchedReport();
}

// ---- operating system, with its waits

TEST_F(HypervisorScanTest, SecondAttemptThatSucceedsCostsOneWait) {
    const testing::InSequence in_sequence;
    PrepareHost();
    OsInfoGives(TIMEOUT);
    WaitsAMinute();
    OsInfoGives(0, "esxi7", "x86_64");
    MachineTypeIs(cim_, 0, "MT-1", "SN-1");
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetOS(), "esxi7");
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(HypervisorScanTest, ThreeFailuresCostThreeWaitsTheLastOneIncluded) {
    const testing::InSequence in_sequence;
    PrepareHost();
    OsInfoGives(TIMEOUT);
    WaitsAMinute();
    OsInfoGives(TIMEOUT);
    WaitsAMinute();
    OsInfoGives(CONNECTION_FAILED);
    WaitsAMinute();
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "Connection failed.");
    EXPECT_THAT(log_.Texts(1),
                ElementsAre("Failed to get EXSI OS info with error is 13 Connection failed."));
    EXPECT_THAT(log_.Traces(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, ModuleNumberAloneIsNoFailedAttempt) {
    PrepareHost();
    OsInfoGives(0x10000, "esxi7", "x86_64");
    MachineTypeIs(cim_, 0, "MT-1", "SN-1");
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeIs(cim_, "Tavro");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(HypervisorScanTest, UserIsToldOfEveryWait) {
    std::vector<std::string> activities;
    option_.connect_option.run->on_activity = [&](const std::string& text) {
        activities.push_back(text);
    };
    PrepareHost();
    OsInfoGives(TIMEOUT);
    OsInfoGives(TIMEOUT);
    OsInfoGives(TIMEOUT);
    EXPECT_CALL(platform_, SleepMilliseconds(60000)).Times(3);
    EXPECT_EQ(Scan().code, TIMEOUT);
    ASSERT_EQ(activities.size(), 3u);
    EXPECT_EQ(activities[2], "no answer about the system, waiting 60 seconds (3 of 3)");
}

TEST_F(HypervisorScanTest, WhoAskedToStopIsNotKeptWaiting) {
    PrepareHost();
    EXPECT_CALL(platform_, GetEsxiOSInfo(_, _)).Times(3).WillRepeatedly([&](auto&, auto&) {
        option_.connect_option.run->Cancel();
        return INTERRUPTED_BY_USER;
    });
    EXPECT_EQ(Scan().code, INTERRUPTED_BY_USER);
}

// ---- machine type, inventory, controller type

TEST_F(HypervisorScanTest, FailedMachineTypeIsReturnedWithItsRegisteredText) {
    PrepareHost();
    OsInfoGives(0, "esxi7", "x86_64");
    MachineTypeIs(cim_, 0x10012, "", "");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10012);
    EXPECT_EQ(result.message, GetResultMessage(0x10012));
    EXPECT_THAT(log_.Texts(1),
                ElementsAre("Failed to get EXSI MT with error is 18 " + GetResultMessage(0x10012)));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:18"));
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, FailedInventoryHasACodeOfItsOwn) {
    ReachInventory();
    InventoryGives(cim_, TIMEOUT, two_identities_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GET_FIRMWARE_INFO_FAILED);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get software ID with error is 18 Timeout."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:0", "[B]20:0", "[E]20:18"));
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, SuccessfulButEmptyInventoryFailsToo) {
    ReachInventory();
    InventoryGives(cim_, 0, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GET_FIRMWARE_INFO_FAILED);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get software ID with error is 0 Succeed."));
    EXPECT_THAT(log_.TraceSteps().back(), "[E]20:0");
    ExpectUntouchedReport();
}

TEST_F(HypervisorScanTest, UnreadableControllerTypeStaysEmptyInAFullReport) {
    ReachInventory();
    InventoryGives(cim_, 0, two_identities_);
    BmcTypeCodeIs(cim_, 5, 0);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetBmcType(), "");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScanCount(), 2);
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to acquire BMC type with error is 5",
                                           "Failed to get BMC type"));
}

TEST_F(HypervisorScanTest, TraceEnclosesMachineTypeAndInventory) {
    PrepareHost();
    OsInfoGives(0, "esxi7", "x86_64");
    EXPECT_CALL(platform_, GetMachineType(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0"));
        return 0;
    });
    EXPECT_CALL(platform_, AgentlessSoftwareIdentityConstructor(_)).WillOnce([&](auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[B]20:0");
    });
    EXPECT_CALL(platform_, GetPLDMSoftwareIdentities(_, _)).WillOnce(Return(TIMEOUT));
    EXPECT_EQ(Scan().code, GET_FIRMWARE_INFO_FAILED);
}

}  // namespace
}  // namespace service::detail
