#include "service/update_scan_service/detail/bmc_connection_scan.h"

#include <string>
#include <vector>

#include "doubles/progress_bar_mock.h"
#include "service/update_scan_service/update_scan_report.h"
#include "support/bmc_connection_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::AnItem;
using support::IsConnection;
using testing::_;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using BmcConnectionScanTest = support::BmcConnectionScanTestBase;

TEST_F(BmcConnectionScanTest, RedfishScanFillsTheReport) {
    ReleaseNameIs("winter");
    ScanFinds(rest_, "Tavro", {AnIdentity().Name("a"), AnIdentity().Name("b")});
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetBmcType(), "Tavro");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetBmcReleaseName(), "winter");
    EXPECT_EQ(report_.GetScanCount(), 2);
    ASSERT_EQ(report_.GetScanResults().size(), 2u);
    EXPECT_EQ(report_.GetScanResults()[1].name, "b");
}

TEST_F(BmcConnectionScanTest, PlatformIsAskedInAFixedOrder) {
    doubles::StrictProgressBar progress_bar;
    progress_bar_ = &progress_bar;
    const testing::InSequence in_sequence;
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    ReleaseNameIs("");
    LegacyListAnswers("MT-1", 0);
    BmcTypeIs(rest_, "Ossa2");
    EstimateIs("MT-1", 60);
    EXPECT_CALL(progress_bar, SetTimerInterval(600));
    InventoryGives(rest_, 0, one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
}

TEST_F(BmcConnectionScanTest, LogTellsEveryStep) {
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_THAT(log_.Texts(3), ElementsAre("Run Ossa Scan with connect case:5", "Get machine type.",
                                           "BMC type: Tavro",
                                           "Agentless SoftwareIdentity ret:0 with connect case:5"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    EXPECT_THAT(log_.Texts(2), IsEmpty());
}

TEST_F(BmcConnectionScanTest, TraceBracketsMachineTypeAndInventory) {
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:0", "[B]21:0", "[E]21:0"));
}

TEST_F(BmcConnectionScanTest, TraceEntriesEncloseTheirCalls) {
    ReleaseNameIs("");
    LegacyListAnswers("MT-1", 0);
    BmcTypeIs(rest_, "Tavro");
    EstimateIs("MT-1", 60);
    EXPECT_CALL(platform_, GetMachineType(IsConnection(rest_), _)).WillOnce([&](auto&, auto& pair) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0"));
        EXPECT_TRUE(log_.Has(3, "Get machine type."));
        pair.first = "MT-1";
        return 0;
    });
    EXPECT_CALL(platform_, AgentlessSoftwareIdentityConstructor(_)).WillOnce([&](auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[B]21:0");
    });
    EXPECT_CALL(platform_, GetPLDMSoftwareIdentities(_, _)).WillOnce([&](auto&, auto& list) {
        list = one_identity_;
        return 0;
    });
    EXPECT_EQ(Scan(rest_).code, 0);
}

TEST_F(BmcConnectionScanTest, ItemsFollowThoseAlreadyInTheReport) {
    report_.PushScanItem(AnItem().Name("earlier"));
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetScanCount(), 1);
    ASSERT_EQ(report_.GetScanResults().size(), 2u);
    EXPECT_EQ(report_.GetScanResults()[0].name, "earlier");
}

TEST_F(BmcConnectionScanTest, EveryIdentityIsDumpedInARecordOfItsOwn) {
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro",
              {AnIdentity().Name("a").Description("b").ElementName("c").Version("d"),
               AnIdentity().Name("second")});
    EXPECT_EQ(Scan(rest_).code, 0);
    ASSERT_EQ(log_.Texts(4).size(), 2u);
    EXPECT_EQ(log_.Texts(4)[0],
              "[Agentless Software Identity Information]\n"
              "Name:           \ta\n"
              "Description:    \tb\n"
              "Element Name:   \tc\n"
              "Version String: \td\n");
    EXPECT_NE(log_.Texts(4)[1].find("Name:           \tsecond\n"), std::string::npos);
}

// ---- machine type and release name
// ----------------------------------------------------------------

TEST_F(BmcConnectionScanTest, FailedMachineTypeIsReturnedWithItsRegisteredText) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, TIMEOUT, "", "");
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get Ossa MT with error is 18 Timeout."));
}

TEST_F(BmcConnectionScanTest, FailedMachineTypeKeepsItsWholeCodeButTracesItsLowHalf) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0x10075, "", "");
    EXPECT_EQ(Scan(rest_).code, 0x10075);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:117"));
}

TEST_F(BmcConnectionScanTest, FailedMachineTypeLeavesThePlatformFactsAlone) {
    report_.SetMT("before");
    report_.SetBmcType("before");
    report_.SetScanCount(9);
    ReleaseNameIs("");
    MachineTypeIs(rest_, TIMEOUT, "MT-1", "SN-1");
    EXPECT_EQ(Scan(rest_).code, TIMEOUT);
    EXPECT_EQ(report_.GetMT(), "before");
    EXPECT_EQ(report_.GetScope(), "");
    EXPECT_EQ(report_.GetBmcType(), "before");
    EXPECT_EQ(report_.GetScanCount(), 9);
}

TEST_F(BmcConnectionScanTest, ModuleNumberAloneIsNoFailureOfTheMachineType) {
    option_.info_only = true;
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0x10000, "MT-1", "SN-1");
    EXPECT_EQ(Scan(rest_).code, 0x10000);
    EXPECT_EQ(report_.GetMT(), "MT-1");
}

TEST_F(BmcConnectionScanTest, ReleaseNameIsStoredEvenWhenTheMachineTypeFails) {
    ReleaseNameIs("winter");
    MachineTypeIs(rest_, TIMEOUT, "", "");
    EXPECT_EQ(Scan(rest_).code, TIMEOUT);
    EXPECT_EQ(report_.GetBmcReleaseName(), "winter");
}

TEST_F(BmcConnectionScanTest, ReleaseNameIsEmptiedOverOtherConnections) {
    report_.SetBmcReleaseName("winter");
    ScanFailsOver(cim_);
    EXPECT_EQ(Scan(cim_).code, TIMEOUT);
    EXPECT_EQ(report_.GetBmcReleaseName(), "");
}

TEST_F(BmcConnectionScanTest, NewerEnclosureInterfaceIsNotAskedForAReleaseName) {
    const ConnectionInfo enclosure = support::AConnection(10, 4439);
    ScanFinds(enclosure, "Vesk", one_identity_);
    EXPECT_EQ(Scan(enclosure).code, 0);
    EXPECT_TRUE(log_.Has(3, "Run Ossa Scan with connect case:10"));
}

// ---- information only, legacy systems
// ---------------------------------------------------------------

TEST_F(BmcConnectionScanTest, InfoOnlyTakesNoInventory) {
    option_.info_only = true;
    report_.SetBmcType("before");
    report_.SetScanCount(9);
    ReleaseNameIs("winter");
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "Succeed.");
    EXPECT_EQ(report_.GetBmcType(), "");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetScanCount(), 0);
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(BmcConnectionScanTest, LegacySystemIsRefusedWithoutAMessage) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "OLD-1", "SN-1");
    LegacyListAnswers("OLD-1", 7);
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, LEGACY_SYSTEM_NOT_SUPPORTED);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(BmcConnectionScanTest, RefusalOfALegacySystemIsToldToTheUser) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "OLD-1", "SN-1");
    LegacyListAnswers("OLD-1", 7);
    Scan(rest_);
    EXPECT_THAT(option_.connect_option.run->Notices(), ElementsAre(HasSubstr("Orvane brand")));
}

TEST_F(BmcConnectionScanTest, ManagementSuiteScansListedMachineTypesNormally) {
    option_.is_zelvar = true;
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "OLD-1", "SN-1");
    BmcTypeIs(rest_, "Ossa");
    EstimateIs("OLD-1", 60);
    InventoryGives(rest_, 0, one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetMT(), "OLD-1");
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(BmcConnectionScanTest, EmptyMachineTypeIsNotLookedUp) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "", "");
    BmcTypeIs(rest_, "BMC");
    EstimateIs("", 60);
    InventoryGives(rest_, 0, one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
}

// ---- type of the controller, estimate
// ---------------------------------------------------------------

TEST_F(BmcConnectionScanTest, UnknownControllerTypeEndsTheScan) {
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    LegacyListAnswers("MT-1", 0);
    BmcTypeCodeIs(rest_, 13, 0);
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Failed to get BMC type.");
    EXPECT_THAT(log_.Texts(2), ElementsAre("Failed to acquire BMC type with error is 13",
                                           "Failed to get bmc type"));
    EXPECT_EQ(report_.GetMT(), "");
}

TEST_F(BmcConnectionScanTest, EstimateIsAskedWithoutAProgressBarToo) {
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
}

TEST_F(BmcConnectionScanTest, TimerRunsForTenTimesTheEstimate) {
    doubles::StrictProgressBar progress_bar;
    progress_bar_ = &progress_bar;
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_CALL(progress_bar, SetTimerInterval(600));
    EXPECT_EQ(Scan(rest_).code, 0);
}

}  // namespace
}  // namespace service::detail
