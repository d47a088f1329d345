// What a scan of an AMD platform does with the devices, disks and drivers of the host.
#include <string>
#include <vector>

#include "support/amd_platform_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::APciDevice;
using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using AmdPlatformDevicesTest = support::AmdPlatformScanTestBase;

// ---- PCI devices

TEST_F(AmdPlatformDevicesTest, DeviceOfAKnownIdentifierIsDroppedWhateverCaseAndSlot) {
    ReachInventory();
    RedfishGives(0, {AnIdentity().Name("nic").SoftwareId("80AB").Slot("9")});
    PciDevicesAre({APciDevice("80ab", "1"), APciDevice("80ac", "2")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("nic", "device 2"));
}

TEST_F(AmdPlatformDevicesTest, TwoDevicesOfOneIdentifierAreOneItem) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1"), APciDevice("8086", "2")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1"));
}

TEST_F(AmdPlatformDevicesTest, IdentitiesOfOneIdentifierFromTheControllerAllStay) {
    ReachInventory();
    RedfishGives(0,
                 {AnIdentity().Name("a").SoftwareId("X"), AnIdentity().Name("b").SoftwareId("X")});
    RestOfTheHostIsPlain();
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("a", "b", "device 1"));
}

TEST_F(AmdPlatformDevicesTest, HostWithoutDevicesIsAFailureHere) {
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

TEST_F(AmdPlatformDevicesTest, EveryDiskIsLoggedInSixRecords) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
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

TEST_F(AmdPlatformDevicesTest, DisksAreComparedWithNothing) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {AnIdentity().Name("disk").SoftwareId("BMC").SerialNumber("S1")});
    DiskDriversAre(0, {AnIdentity().Name("same").SoftwareId("BMC").SerialNumber("S1")});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "disk", "same"));
}

TEST_F(AmdPlatformDevicesTest, CodeOfTheDiskReadIsLoggedOnly) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(18, {AnIdentity().Name("disk")});
    DiskDriversAre(0, {});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("GetDiskSoftwareIdentity return code:18"));
    EXPECT_THAT(Names(), Contains("disk"));
}

TEST_F(AmdPlatformDevicesTest, DiskDriverWithoutAnIdentifierIsLeftOut) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {AnIdentity().Name("nameless disk")});
    DiskDriversAre(0, {AnIdentity().Name("nameless"), AnIdentity().Name("named").SoftwareId("N")});
    DriversAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "nameless disk", "named"));
}

TEST_F(AmdPlatformDevicesTest, FailedDiskDriversAreRecordedAndNotReported) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {});
    DiskDriversAre(0x10012, {AnIdentity().Name("disk driver").SoftwareId("DD")});
    DriversAre(CONNECTION_FAILED, driver_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10012);
    EXPECT_EQ(result.message, GetResultMessage(0x10012));
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "driver"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]19:0", "[E]19:18"));
}

TEST_F(AmdPlatformDevicesTest, FailedDriversAreRecordedAndWhatWasReadIsReported) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
    DisksAre(0, {});
    DiskDriversAre(0, {});
    DriversAre(TIMEOUT, driver_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
    EXPECT_THAT(Names(), ElementsAre("BMC", "device 1", "driver"));
}

TEST_F(AmdPlatformDevicesTest, TraceEnclosesTheDiskDriversAlone) {
    ReachInventory();
    RedfishGives(0, bmc_);
    PciDevicesAre({APciDevice("8086", "1")});
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
