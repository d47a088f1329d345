#include "service/update_scan_service/detail/amd_platform_scan.h"

#include "support/amd_platform_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::APciDevice;
using testing::ElementsAre;
using testing::IsEmpty;

using AmdPlatformScanTest = support::AmdPlatformScanTestBase;

// ---- facts

TEST_F(AmdPlatformScanTest, FailedOsInfoEndsTheScan) {
    OsInfoIs(18);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GET_OS_TYPE_FAILED);
    EXPECT_EQ(result.message, "Failed to get AMD os info.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("GetOSInfo failed with error is 18"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start AMI inventorying..."));
    EXPECT_EQ(report_.GetOS(), "");
    EXPECT_EQ(report_.GetBmcType(), "");
}

TEST_F(AmdPlatformScanTest, FailedMachineTypeEndsTheScan) {
    OsInfoIs(0);
    LocalMachineTypeIs(-1);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Failed to get AMD machine type.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("GetMachineType failed with error is -1"));
    EXPECT_EQ(report_.GetOS(), "");
}

TEST_F(AmdPlatformScanTest, ModuleNumberAloneIsAFailureOfTheFactsHere) {
    OsInfoIs(0x10000);
    EXPECT_EQ(Scan().code, GET_OS_TYPE_FAILED);
}

TEST_F(AmdPlatformScanTest, SuccessFillsTheReportAndHasNoMessage) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {AnIdentity().Name("disk").SoftwareId("D")});
    DiskDriversAre(0, {AnIdentity().Name("disk driver").SoftwareId("DD")});
    DriversAre(0, driver_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetOS(), "rhel9");
    EXPECT_EQ(report_.GetArch(), "x86_64");
    EXPECT_EQ(report_.GetBmcType(), "AMI");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetScanCount(), 5);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "disk", "disk driver", "driver"));
}

TEST_F(AmdPlatformScanTest, CountLeavesOutWhatTheReportHeldBefore) {
    report_.PushScanItem(support::AnItem().Name("earlier"));
    ReachInventory();
    RedfishGives(0, bmc_);
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 2);
}

// ---- scan type

TEST_F(AmdPlatformScanTest, DriverScanAttemptsNoConnection) {
    option_.scan_type = "dd";
    ReachInventory();
    DriversAre(0, driver_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("driver"));
    EXPECT_EQ(report_.GetBmcType(), "AMI");
    EXPECT_EQ(report_.GetScanCount(), 1);
    EXPECT_THAT(log_.Traces(), IsEmpty());
}

TEST_F(AmdPlatformScanTest, FirmwareScanReadsNoDrivers) {
    option_.scan_type = "fw";
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 2);
}

// ---- Redfish

TEST_F(AmdPlatformScanTest, MissingAccountSlotIsReturnedAtOnce) {
    ReachInventory();
    RestFetchGives(TarselResult(NO_AVAILABLE_USER_ID, "all slots are taken"), {rest_});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, NO_AVAILABLE_USER_ID);
    EXPECT_EQ(result.message, "all slots are taken");
    EXPECT_EQ(report_.GetOS(), "");
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(AmdPlatformScanTest, IdentitiesOverRedfishLeaveNoNeedForIpmi) {
    ReachInventory();
    RedfishGives(60, bmc_);  // the code is logged, the identities decide
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start AMI inventorying...", "Try redfish",
                                           "AgentlessSoftwareIdentity ret:60with connect case: 5"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(AmdPlatformScanTest, FirstOfSeveralConnectionsIsUsed) {
    ReachInventory();
    RestFetchGives(ok_, {rest_, support::AConnection(5, 4431)});
    InventoryGives(rest_, 0, bmc_);
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(AmdPlatformScanTest, EmptyRedfishInventoryStaysAFailureThoughIpmiWorks) {
    ReachInventory();
    RedfishGives(60, {});
    IpmiGives(Vantix::INVENTORY_SUCCESS, bmc_);
    RestOfTheHostIsPlain();
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GET_FIRMWARE_INFO_FAILED);
    EXPECT_EQ(result.message, "Failed to get firmware information.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("GetPLDMSoftwareIdentities failed with error is 60"));
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1"));
    EXPECT_EQ(report_.GetBmcType(), "AMI");
}

TEST_F(AmdPlatformScanTest, FailedRedfishConnectionIsNoFailureWhenIpmiWorks) {
    ReachInventory();
    RestFetchGives(closed_, {rest_});
    IpmiGives(Vantix::INVENTORY_SUCCESS, bmc_);
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start AMI inventorying...", "try ipmi"));
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1"));
}

TEST_F(AmdPlatformScanTest, EmptyConnectionListIsLikeAFailedConnection) {
    ReachInventory();
    RestFetchGives(ok_, {});
    IpmiGives(Vantix::INVENTORY_SUCCESS, bmc_);
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_FALSE(log_.Has(3, "Try redfish"));
}

// ---- IPMI

TEST_F(AmdPlatformScanTest, FailedIpmiReadIsTheResultAndTheScanGoesOn) {
    ReachInventory();
    RestFetchGives(closed_, {});
    IpmiGives(Vantix::INVENTORY_FAILED, {});
    RestOfTheHostIsPlain();
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Failed to get system software identity.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("GetXFWSoftwareIdentity failed with error is 1"));
    EXPECT_THAT(Names(), ElementsAre("device 1"));
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(AmdPlatformScanTest, FirstFailureIsNeverOverwritten) {
    ReachInventory();
    RedfishGives(0, {});
    IpmiGives(Vantix::INVENTORY_FAILED, {});
    PciDevicesAre({});
    DisksAre(0, {});
    DiskDriversAre(TIMEOUT, {});
    DriversAre(CONNECTION_FAILED, {});
    EXPECT_EQ(Scan().code, GET_FIRMWARE_INFO_FAILED);
    EXPECT_EQ(log_.Texts(1).size(), 3u);
}

// ---- normalisation

TEST_F(AmdPlatformScanTest, CfcVersionsAreNormalisedAndTheHostIsStillRead) {
    option_.is_cfc_system = true;
    ReachInventory();
    RedfishGives(0, {AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1")});
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "BMCImage1-1");
    EXPECT_EQ(report_.GetScanCount(), 2);
}

TEST_F(AmdPlatformScanTest, CspVersionsAreNormalisedAndTheHostIsStillRead) {
    option_.is_csp_system = true;
    ReachInventory();
    RedfishGives(0, {AnIdentity().SoftwareId("BMC").Version("BMCImage1-1")});
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "1");
    EXPECT_EQ(report_.GetScanCount(), 2);
}

TEST_F(AmdPlatformScanTest, BothFlagsLeaveOnlyRedfishIdentitiesAndDrivers) {
    option_.is_cfc_system = true;
    option_.is_csp_system = true;
    ReachInventory();
    RedfishGives(0, {AnIdentity().Name("BMC").SoftwareId("BMC").Version("BMC-BMCImage1-1")});
    DriversAre(0, driver_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "driver"));
    EXPECT_EQ(report_.GetScanResults()[0].version, "1");
    EXPECT_EQ(report_.GetScanCount(), 2);
    EXPECT_THAT(log_.Traces(), IsEmpty());
}

TEST_F(AmdPlatformScanTest, BothFlagsKeepIpmiAwayFromAFailedConnectionToo) {
    option_.is_cfc_system = true;
    option_.is_csp_system = true;
    ReachInventory();
    RestFetchGives(closed_, {});
    DriversAre(0, driver_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("driver"));
}

TEST_F(AmdPlatformScanTest, WhatIpmiTellsIsNeverNormalised) {
    option_.is_cfc_system = true;
    ReachInventory();
    RestFetchGives(closed_, {});
    IpmiGives(Vantix::INVENTORY_SUCCESS, {AnIdentity().SoftwareId("BMC").Version("BMC-1")});
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "BMC-1");
}

}  // namespace
}  // namespace service::detail
