#include "service/update_scan_service/detail/in_band_bmc_scan.h"

#include <string>
#include <vector>

#include "doubles/progress_bar_mock.h"
#include "support/in_band_bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::HasUser;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

using InBandBmcScanTest = support::InBandBmcScanTestBase;

// ---- facts

TEST_F(InBandBmcScanTest, FailedSystemInfoIsReturnedAsItIsWithTheReportUntouched) {
    report_.SetMT("before");
    ClockShows(100);
    OsInfoIs(TIMEOUT);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to Get inband system info"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start inband inventorying..."));
    EXPECT_EQ(report_.GetMT(), "before");
    EXPECT_EQ(report_.GetOS(), "");
}

TEST_F(InBandBmcScanTest, SystemInfoIsAcquiredOnceOnly) {
    // All four kinds of connection fail: nothing is tried a second time.
    ClockShows(100);
    OsInfoIs(0);
    ClockShows(100);
    SystemCheckIsMade();
    const TarselResult closed(CONNECTION_FAILED, "nobody there");
    RestFetchGives(closed, {});
    CimFetchGives(closed, {});
    EXPECT_CALL(platform_, FetchIPMIConnectionList(_, _)).WillOnce(Return(closed));
    const ConnectionInfo local;
    MachineTypeIs(local, TIMEOUT, "", "");
    BmcTypeCodeIs(local, 1, 0);
    EXPECT_EQ(Scan().code, CONNECTION_FAILED);
}

TEST_F(InBandBmcScanTest, LegacySystemIsRefusedWithASentenceEvenForInformationOnly) {
    option_.info_only = true;
    SystemInfoIs("Tavro", true);
    LegacyCheckAnswers(1);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, LEGACY_SYSTEM_NOT_SUPPORTED);
    EXPECT_EQ(result.message,
              "This system carries the Orvane brand. Please update it with the older Orvane update "
              "tool of its maker.");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_FALSE(log_.Has(3, "isRedfishSupported:"));
}

TEST_F(InBandBmcScanTest, InformationOnlyStoresTheFactsAndAsksForNoInventory) {
    option_.info_only = true;
    option_.report_check_device = true;
    report_.SetScanCount(9);
    SystemInfoIs("Tavro", true);
    LegacyCheckAnswers(0);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetOS(), "rhel9");
    EXPECT_EQ(report_.GetArch(), "x86_64");
    EXPECT_EQ(report_.GetOSMinorVersion(), "4");
    EXPECT_EQ(report_.GetBmcType(), "Tavro");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_TRUE(report_.IsCheckDevice());
    EXPECT_EQ(report_.GetScanCount(), 9);
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(InBandBmcScanTest, FactsAreLoggedInTheirOrder) {
    option_.info_only = true;
    SystemInfoIs("Tavro", true);
    LegacyCheckAnswers(0);
    EXPECT_EQ(Scan().code, 0);
    std::vector<std::string> last_six = log_.Texts(3);
    ASSERT_GT(last_six.size(), 6u);
    last_six.erase(last_six.begin(), last_six.end() - 6);
    EXPECT_THAT(last_six, ElementsAre("isRedfishSupported:1", "OS:rhel9", "Arch:x86_64",
                                      "OS Min version:4", "MT:MT-1", "BMC Type:Tavro"));
}

TEST_F(InBandBmcScanTest, RequestedDeviceCheckAloneDoesNotReachTheReport) {
    option_.info_only = true;
    option_.is_check_device = true;
    report_.SetCheckDevice(true);
    SystemInfoIs("Tavro", true);
    LegacyCheckAnswers(0);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_FALSE(report_.IsCheckDevice());
}

TEST_F(InBandBmcScanTest, ManagementSuiteSkipsTheLegacyCheckAlone) {
    option_.is_zelvar = true;
    option_.info_only = true;
    SystemInfoIs("Tavro", true);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetMT(), "MT-1");
}

TEST_F(InBandBmcScanTest, TimerRunsForTenTimesTheEstimate) {
    doubles::StrictProgressBar progress_bar;
    progress_bar_ = &progress_bar;
    ReachInventory("Ossa", false);
    EXPECT_CALL(progress_bar, SetTimerInterval(1200));
    DriversAre(0, {});
    CimFirmwareIs(uefi_);
    DisksAre(0, {});
    EXPECT_EQ(Scan().code, 0);
}

// ---- inventory

TEST_F(InBandBmcScanTest, HostAndControllerAreAskedInAFixedOrder) {
    ReachInventory("Ossa", false);
    DriversAre(0, driver_);
    CimFirmwareIs(uefi_);
    DisksAre(0, {AnIdentity().Name("disk")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "Succeed.");
    EXPECT_THAT(Names(), ElementsAre("UEFI", "disk", "driver"));
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(InBandBmcScanTest, IdentitiesOverRedfishLeaveNoNeedForAnythingElse) {
    ReachInventory("Tavro", true);
    DriversAre(0, driver_);
    EXPECT_CALL(platform_, GetRESTConnection(HasUser("someone"), _))
        .WillOnce(DoAll(SetArgReferee<1>(rest_), Return(ok_)));
    SystemCheckIsMade();
    RedfishIsSupported(true);
    ReleaseNameIs("winter");
    InventoryGives(rest_, 0, uefi_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "driver"));
    EXPECT_EQ(report_.GetBmcReleaseName(), "winter");
}

TEST_F(InBandBmcScanTest, DriverScanCallsNeitherControllerNorDisks) {
    option_.scan_type = "dd";
    ClockShows(100);
    OsInfoIs(0);
    const ConnectionInfo local;
    MachineTypeIs(local, 0, "MT-1", "SN-1");
    SystemCheckIsMade();
    EXPECT_CALL(platform_, IsCFCSystem("MT-1")).WillOnce(Return(true));
    LegacyCheckAnswers(0);
    EstimateAfter(0);
    DriversAre(0, driver_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("driver"));
    EXPECT_EQ(report_.GetBmcType(), "AMI");
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(InBandBmcScanTest, FirmwareScanReadsNoDrivers) {
    option_.scan_type = "fw";
    ReachInventory("Ossa", false);
    CimFirmwareIs(uefi_);
    DisksAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 1);
    EXPECT_THAT(log_.TraceSteps(), testing::Not(testing::Contains("[B]19:0")));
}

TEST_F(InBandBmcScanTest, DriversAndFirmwareAreTracedButDisksAreNot) {
    ReachInventory("Ossa", false);
    EXPECT_CALL(platform_, GetDriverData(_)).WillOnce([&](auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[B]19:0");
        return 0x10012;
    });
    EXPECT_CALL(platform_, FetchCIMConnectionList(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[B]20:0");
        return ok_;
    });
    EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(_)).WillOnce([&](auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[E]20:1747");
        return 0;
    });
    EXPECT_EQ(Scan().code, 0x10012);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:0",
                                               "[B]19:0", "[E]19:18", "[B]20:0", "[E]20:1747"));
}

TEST_F(InBandBmcScanTest, EveryFirmwareIdentityIsDumped) {
    ReachInventory("Ossa", false);
    DriversAre(0, driver_);
    CimFirmwareIs(uefi_);
    DisksAre(0, {AnIdentity().Name("disk")});
    EXPECT_EQ(Scan().code, 0);
    ASSERT_EQ(log_.Texts(4).size(), 3u);  // the disk was kept, with a record of its own
    EXPECT_EQ(log_.Texts(4)[1].rfind("[Agentless Software Identity Information]\nName:           "
                                     "\tUEFI\n",
                                     0),
              0u);
    EXPECT_NE(log_.Texts(4)[2].find("\tdisk\n"), std::string::npos);
}

TEST_F(InBandBmcScanTest, CountLeavesOutWhatTheReportHeldBefore) {
    report_.PushScanItem(support::AnItem().Name("earlier"));
    ReachInventory("Ossa", false);
    DriversAre(0, driver_);
    CimFirmwareIs(uefi_);
    DisksAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 2);
    EXPECT_EQ(report_.GetScanResults().size(), 3u);
}

}  // namespace
}  // namespace service::detail
