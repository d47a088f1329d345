// Which disks a scan of a host together with its controller reports, and which failure it returns.
#include "support/in_band_bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::Return;
using testing::SetArgReferee;

using InBandDisksTest = support::InBandBmcScanTestBase;

// ---- precedence of failures

TEST_F(InBandDisksTest, DriverFailureOutranksTheOthersAndTheReportIsFilledAllTheSame) {
    ReachInventory("Ossa", false);
    DriversAre(TIMEOUT, driver_);
    CimFetchGives(TarselResult(CONNECTION_FAILED, ""), {});
    DisksAre(UPLOAD_FAILED, {AnIdentity().Name("disk")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(Names(), ElementsAre("driver"));
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(InBandDisksTest, FirmwareFailureOutranksThatOfTheDisks) {
    ReachInventory("Ossa", false);
    DriversAre(0, driver_);
    CimFetchGives(TarselResult(CONNECTION_FAILED, ""), {});
    DisksAre(UPLOAD_FAILED, {});
    EXPECT_EQ(Scan().code, 1747);
}

TEST_F(InBandDisksTest, DiskFailureIsTheResultWhenAllElseWorked) {
    ReachInventory("Ossa", false);
    DriversAre(0, driver_);
    CimFirmwareIs(uefi_);
    DisksAre(TIMEOUT, {AnIdentity().Name("disk")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(Names(), ElementsAre("UEFI", "driver"));
}

TEST_F(InBandDisksTest, ModuleNumberAloneCountsAsADriverFailureHere) {
    ReachInventory("Ossa", false);
    DriversAre(0x10000, driver_);
    CimFetchGives(TarselResult(CONNECTION_FAILED, ""), {});
    DisksAre(0, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10000);
    EXPECT_TRUE(result.IsSucceed());
}

// ---- disks

TEST_F(InBandDisksTest, DiskThatTheControllerReportedIsDropped) {
    ReachInventory("Ossa", false);
    DriversAre(0, {});
    CimFirmwareIs({AnIdentity().Name("drive").SerialNumber("ABC123")});
    DisksAre(0, {AnIdentity().Name("disk").SerialNumber("  ABC123-01")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("drive"));
    EXPECT_EQ(log_.Texts(4)[0], "Remove DUP HDD :disk,sn=  ABC123-01");
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(InBandDisksTest, SerialNumbersAreComparedWithTheirCaseAndInOneDirection) {
    ReachInventory("Ossa", false);
    DriversAre(0, {});
    CimFirmwareIs({AnIdentity().Name("drive").SerialNumber("ABC123")});
    DisksAre(0, {AnIdentity().Name("lower").SerialNumber("abc123"),
                 AnIdentity().Name("part").SerialNumber("ABC")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("drive", "lower", "part"));
}

TEST_F(InBandDisksTest, EmptySerialNumberOfTheControllerDropsNothing) {
    ReachInventory("Ossa", false);
    DriversAre(0, {});
    CimFirmwareIs({AnIdentity().Name("drive")});
    DisksAre(0, {AnIdentity().Name("disk").SerialNumber("S1"), AnIdentity().Name("nameless")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("drive", "disk", "nameless"));
    EXPECT_EQ(log_.Texts(4)[0], "Keep HDD :disk,sn=S1");
    EXPECT_EQ(log_.Texts(4)[1], "Keep HDD :nameless,sn=");
}

TEST_F(InBandDisksTest, KeptDiskCountsAsKnownForTheNext) {
    ReachInventory("Ossa", false);
    DriversAre(0, {});
    CimFirmwareIs(uefi_);
    DisksAre(0, {AnIdentity().Name("disk").SerialNumber("S1"),
                 AnIdentity().Name("same again").SerialNumber("S1")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "disk"));
}

TEST_F(InBandDisksTest, DiskKeepsItsIdentifierWithoutRedfish) {
    ReachInventory("Ossa", false);
    DriversAre(0, {});
    CimFirmwareIs(uefi_);
    DisksAre(0, {AnIdentity().Name("disk").SoftwareId("own").PartNumber("part")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(1).softwareId, "own");
    EXPECT_FALSE(log_.Has(4, "part number :"));
}

TEST_F(InBandDisksTest, PartNumberReplacesTheIdentifierWithRedfishEvenWhenEmpty) {
    ReachInventory("Ossa", true);  // another controller: its firmware still comes over CIM
    DriversAre(0, {});
    CimFirmwareIs(uefi_);
    DisksAre(0, {AnIdentity().Name("disk").SoftwareId("own").PartNumber("part"),
                 AnIdentity().Name("other").SoftwareId("own")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(1).softwareId, "part");
    EXPECT_EQ(report_.GetScanResults().at(2).softwareId, "");
    EXPECT_THAT(log_.Texts(4), testing::IsSupersetOf({"part number :part", "part number :"}));
}

TEST_F(InBandDisksTest, DisksAreReadWhenRedfishNamedNothingThoughCimDid) {
    ReachInventory("Tavro", true);
    DriversAre(0, {});
    EXPECT_CALL(platform_, GetRESTConnection(_, _))
        .WillOnce(DoAll(SetArgReferee<1>(rest_), Return(ok_)));
    SystemCheckIsMade();
    RedfishIsSupported(true);
    ReleaseNameIs("");
    InventoryGives(rest_, 0, {});
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, uefi_);
    DisksAre(0, {AnIdentity().Name("disk")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "disk"));
}

}  // namespace
}  // namespace service::detail
