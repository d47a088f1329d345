#include "service/update_scan_service/detail/amd_platform_scan.h"

#include <string>
#include <utility>
#include <vector>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::ADriver;
using support::AnIdentity;
using support::IsConnection;
using testing::_;
using testing::Contains;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

PciInfo ADevice(const std::string& id, const std::string& slot) {
    PciInfo device;
    device.ShortName = "device " + slot;
    device.IdPart1 = id;
    device.Slot = slot;
    return device;
}

class AmdPlatformScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return AmdPlatformScan(option_, report_, nullptr); }

    void OsInfoIs(int code) {
        EXPECT_CALL(platform_, GetOSInfo(_))
            .WillOnce(DoAll(SetArgReferee<0>(std::make_pair("rhel9", "x86_64")), Return(code)));
    }
    void LocalMachineTypeIs(int code) {
        SystemCheckIsMade();
        EXPECT_CALL(platform_, SystemCheckGetMachineType(_))
            .WillOnce(DoAll(SetArgReferee<0>(std::make_pair("MT-1", "SN-1")), Return(code)));
    }
    void ReachInventory() {
        OsInfoIs(0);
        LocalMachineTypeIs(0);
    }
    void RedfishGives(int code, const Identities& identities) {
        RestFetchGives(ok_, {rest_});
        InventoryGives(rest_, code, identities);
    }
    /// What is read already stays in the list: the library appends.
    void IpmiGives(Vantix::INVENTORYRETURNCODE code, const Identities& identities) {
        EXPECT_CALL(platform_, xFirmwareInventoryConstructor(IsConnection(own_controller_)));
        EXPECT_CALL(platform_, GetXFWSoftwareIdentity(IsConnection(own_controller_), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(identities), Return(code)));
    }
    void PciDevicesAre(const std::vector<PciInfo>& devices) {
        EXPECT_CALL(platform_, GetPciInfo(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(devices), Return(0)));
    }
    void DisksAre(int code, const Identities& disks) {
        EXPECT_CALL(platform_, GetDiskSoftwareIdentity(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(disks), Return(code)));
    }
    void DiskDriversAre(int code, const Identities& disk_drivers) {
        EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(disk_drivers), Return(code)));
    }
    void DriversAre(int code, const std::vector<Vantix::DriverData>& drivers) {
        EXPECT_CALL(platform_, GetDriverData(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(drivers), Return(code)));
    }
    /// One PCI device, and no failure, from the PCI devices on.
    void RestOfTheHostIsPlain() {
        PciDevicesAre({ADevice("8086", "1")});
        DisksAre(0, {});
        DiskDriversAre(0, {});
        DriversAre(0, {});
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const UpdateScanItem& item : report_.GetScanResults()) names.push_back(item.name);
        return names;
    }

    // Everything is scripted in the order in which it must happen.
    const testing::InSequence in_sequence_;
    const ConnectionInfo own_controller_ = [] {
        ConnectionInfo connection;
        connection.connect_case = Vantix::VantixConnection::kConnectCaseIpmi;
        return connection;
    }();
    const TarselResult closed_{CONNECTION_FAILED, "nobody there"};
    const Identities bmc_ = {AnIdentity().Name("BMC").SoftwareId("BMC").Version("1")};
    const std::vector<Vantix::DriverData> driver_ = {ADriver().Identifier("driver")};
};

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
    PciDevicesAre({ADevice("8086", "1")});
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
    PciDevicesAre({ADevice("8086", "1")});
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

// ---- PCI devices

TEST_F(AmdPlatformScanTest, DeviceOfAKnownIdentifierIsDroppedWhateverCaseAndSlot) {
    ReachInventory();
    RedfishGives(0, {AnIdentity().Name("nic").SoftwareId("80AB").Slot("9")});
    PciDevicesAre({ADevice("80ab", "1"), ADevice("80ac", "2")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("nic", "device 2"));
}

TEST_F(AmdPlatformScanTest, TwoDevicesOfOneIdentifierAreOneItem) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1"), ADevice("8086", "2")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1"));
}

TEST_F(AmdPlatformScanTest, IdentitiesOfOneIdentifierFromTheControllerAllStay) {
    ReachInventory();
    RedfishGives(0,
                 {AnIdentity().Name("a").SoftwareId("X"), AnIdentity().Name("b").SoftwareId("X")});
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("a", "b", "device 1"));
}

TEST_F(AmdPlatformScanTest, HostWithoutDevicesIsAFailureHere) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Failed to get PCI software identity.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("GetPciSoftwareIdentity failed with error is -1"));
    EXPECT_THAT(Names(), ElementsAre("BMC"));
}

// ---- disks and drivers

TEST_F(AmdPlatformScanTest, EveryDiskIsLoggedInSixRecords) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(0, {AnIdentity()
                     .Slot("5")
                     .Name("disk")
                     .Manufacturer("maker")
                     .SoftwareId("D")
                     .Version("F1")
                     .Classifications("10")});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    std::vector<std::string> details = log_.Texts(4);
    ASSERT_EQ(details.size(), 8u);  // behind way in and way out of the PCI devices
    details.erase(details.begin(), details.begin() + 2);
    EXPECT_THAT(details,
                ElementsAre("Disk slot id=5", "Disk name=disk", "Disk manufacturer=maker",
                            "Disk softwareid=D", "Disk version=F1", "Disk classification=10"));
}

TEST_F(AmdPlatformScanTest, DisksAreComparedWithNothing) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(0, {AnIdentity().Name("disk").SoftwareId("BMC").SerialNumber("S1")});
    DiskDriversAre(0, {AnIdentity().Name("same").SoftwareId("BMC").SerialNumber("S1")});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "disk", "same"));
}

TEST_F(AmdPlatformScanTest, CodeOfTheDiskReadIsLoggedOnly) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(18, {AnIdentity().Name("disk")});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("GetDiskSoftwareIdentity return code:18"));
    EXPECT_THAT(Names(), Contains("disk"));
}

TEST_F(AmdPlatformScanTest, DiskDriverWithoutAnIdentifierIsLeftOut) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(0, {AnIdentity().Name("nameless disk")});
    DiskDriversAre(0, {AnIdentity().Name("nameless"), AnIdentity().Name("named").SoftwareId("N")});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "nameless disk", "named"));
}

TEST_F(AmdPlatformScanTest, FailedDiskDriversAreRecordedAndNotReported) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(0, {});
    DiskDriversAre(0x10012, {AnIdentity().Name("disk driver").SoftwareId("DD")});
    DriversAre(CONNECTION_FAILED, driver_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10012);
    EXPECT_EQ(result.message, GetResultMessage(0x10012));
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "driver"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]19:0", "[E]19:18"));
}

TEST_F(AmdPlatformScanTest, FailedDriversAreRecordedAndWhatWasReadIsReported) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(TIMEOUT, driver_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "driver"));
}

TEST_F(AmdPlatformScanTest, TraceEnclosesTheDiskDriversAlone) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({ADevice("8086", "1")});
    EXPECT_CALL(platform_, GetDiskSoftwareIdentity(_)).WillOnce([&](auto&) {
        EXPECT_THAT(log_.Traces(), IsEmpty());
        return 0;
    });
    EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(_)).WillOnce([&](auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]19:0"));
        return 0;
    });
    EXPECT_CALL(platform_, GetDriverData(_)).WillOnce([&](auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]19:0", "[E]19:0"));
        return 0;
    });
    EXPECT_EQ(Scan().code, 0);
}

}  // namespace
}  // namespace service::detail
