#include "service/update_scan_service/detail/local_host_scan.h"

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
using Vantix::ARCCONF::RaidController;
using Vantix::ARCCONF::RaidDisk;

MATCHER_P(HasPciAddress, address, "") {
    return arg.PciAddress == address && arg.Disks.empty();
}

PciInfo ADevice(const std::string& name, const std::string& id, const std::string& slot) {
    PciInfo device;
    device.ShortName = name;
    device.IdPart1 = id;
    device.Slot = slot;
    device.Version = "own version";
    return device;
}

RaidController AController(const std::string& address) {
    RaidController controller;
    controller.PciAddress = address;
    controller.FirmwareVersion = "firmware of " + address;
    return controller;
}

class LocalHostScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return LocalHostScan(option_, report_, nullptr); }

    void OsInfoIs(int code) {
        EXPECT_CALL(platform_, GetOSInfo(_, _))
            .WillOnce(DoAll(SetArgReferee<0>(std::make_pair("rhel9", "x86_64")),
                            SetArgReferee<1>("4"), Return(code)));
    }
    void UefiVersionIs(bool read, const std::string& version) {
        SystemCheckIsMade();
        EXPECT_CALL(platform_, GetUEFIVersion(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(version), Return(read)));
    }
    void ReachInventory() {
        OsInfoIs(0);
        MachineTypeIs(local_, 0, "MT-1", "SN-1");
        UefiVersionIs(true, "2.10");
    }
    void ControllersAre(int code, const std::vector<RaidController>& controllers) {
        EXPECT_CALL(platform_, GetControllerList(IsEmpty(), 2))
            .WillOnce(DoAll(SetArgReferee<0>(controllers), Return(code)));
    }
    void ControllerHas(const RaidController& controller, const std::vector<RaidDisk>& disks) {
        EXPECT_CALL(platform_, GetCtrlDisks(HasPciAddress(controller.PciAddress)))
            .WillOnce([disks](RaidController& asked) {
                asked.Disks = disks;
                return 0;
            });
    }
    void DeviceAtAddressIs(const std::string& address, int code, const PciInfo& device) {
        EXPECT_CALL(platform_, GetPciInfoByAddress(address, _))
            .WillOnce(DoAll(SetArgReferee<1>(device), Return(code)));
    }
    void OtherDisksAre(int code, const Identities& disks) {
        EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(disks), Return(code)));
    }
    void PciDevicesAre(int code, const std::vector<PciInfo>& devices) {
        EXPECT_CALL(platform_, GetPciInfo(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(devices), Return(code)));
    }
    /// One controller with one disk of this serial number; both are listed before `disks`.
    void ScanWithRaidSerialAndDisks(const std::string& serial, const Identities& disks) {
        ReachInventory();
        ControllersAre(0, {controller_});
        ControllerHas(controller_, {{"raid disk", "F1", "DISK-ID", "5", serial}});
        DeviceAtAddressIs("0000:3b:00.0", -1, {});
        OtherDisksAre(0, disks);
        PciDevicesAre(0, {});
        EXPECT_EQ(Scan().code, 0);
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const UpdateScanItem& item : report_.GetScanResults()) names.push_back(item.name);
        return names;
    }

    // Everything is scripted in the order in which it must happen.
    const testing::InSequence in_sequence_;
    const ConnectionInfo local_;
    const RaidController controller_ = AController("0000:3b:00.0");
    const RaidDisk raid_disk_{"raid disk", "F1", "DISK-ID", "5", "RAID-SN"};
};

// ---- facts

TEST_F(LocalHostScanTest, FactsAreStoredWithoutAController) {
    option_.report_check_device = true;
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {});
    PciDevicesAre(0, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "Succeed.");
    EXPECT_EQ(report_.GetOS(), "rhel9");
    EXPECT_EQ(report_.GetArch(), "x86_64");
    EXPECT_EQ(report_.GetOSMinorVersion(), "4");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetBmcType(), "None");
    EXPECT_TRUE(report_.IsCheckDevice());
}

TEST_F(LocalHostScanTest, FailedOsInfoEndsTheScan) {
    OsInfoIs(0x1006F);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x1006F);
    EXPECT_EQ(result.message, "Failed to get OS type.");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to Get inband system info"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start inband inventorying..."));
    EXPECT_EQ(report_.GetOS(), "");
    EXPECT_EQ(report_.GetBmcType(), "");
}

TEST_F(LocalHostScanTest, FailedMachineTypeEndsTheScan) {
    OsInfoIs(0);
    MachineTypeIs(local_, TIMEOUT, "", "");
    EXPECT_EQ(Scan().code, TIMEOUT);
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to Get inband system info"));
    EXPECT_EQ(report_.GetOS(), "");
}

TEST_F(LocalHostScanTest, FailedUefiVersionLeavesFactsAndNoItem) {
    report_.SetScanCount(9);
    OsInfoIs(0);
    MachineTypeIs(local_, 0, "MT-1", "SN-1");
    UefiVersionIs(false, "");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Get uefi version fail");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScanCount(), 9);
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(LocalHostScanTest, LogTellsFactsAndCountsButTracesNothing) {
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {AnIdentity().Name("disk")});
    PciDevicesAre(0, {ADevice("nic", "8086", "1"), ADevice("hba", "8087", "2")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(
        log_.Texts(3),
        ElementsAre("Start inband inventorying...", "OS:rhel9", "Arch:x86_64", "OS Min version:4",
                    "MT:MT-1", "Non Raid disk count: 1", "PCI software identity count: 2"));
    EXPECT_THAT(log_.Traces(), IsEmpty());
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

// ---- items

TEST_F(LocalHostScanTest, HostWithoutRaidYieldsUefiDisksAndDevicesInThisOrder) {
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {AnIdentity().Name("disk")});
    PciDevicesAre(0, {ADevice("nic", "8086", "1")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "disk", "nic"));
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(LocalHostScanTest, UefiItemHasItsFixedTexts) {
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {});
    PciDevicesAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    const UpdateScanItem item = report_.GetScanResults().at(0);
    EXPECT_EQ(item.name, "UEFI");
    EXPECT_EQ(item.softwareId, "UEFI");
    EXPECT_EQ(item.instanceId, "UEFI");
    EXPECT_EQ(item.version, "2.10");
    EXPECT_EQ(item.classification, "6");
    EXPECT_EQ(item.description, "The information of UEFI firmware.");
    EXPECT_EQ(item.slotType, "3");
    EXPECT_EQ(item.pldm, "1");  // the known identifier outranks the record's own "0"
}

TEST_F(LocalHostScanTest, EveryIdentityIsDumped) {
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {});
    PciDevicesAre(0, {ADevice("nic", "8086", "1")});
    EXPECT_EQ(Scan().code, 0);
    const std::vector<std::string> details = log_.Texts(4);
    ASSERT_EQ(details.size(), 4u);  // way in, way out, two dumps
    EXPECT_EQ(details[2],
              "[Agentless Software Identity Information]\n"
              "Name:           \tUEFI\n"
              "Description:    \tThe information of UEFI firmware.\n"
              "Element Name:   \t\n"
              "Version String: \t2.10\n");
}

TEST_F(LocalHostScanTest, CountIsTheLengthOfTheWholeList) {
    report_.PushScanItem(support::AnItem().Name("earlier"));
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {});
    PciDevicesAre(-1, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 2);
}

TEST_F(LocalHostScanTest, FailedDiskAndDeviceReadsAreNoFailures) {
    ReachInventory();
    ControllersAre(UPLOAD_FAILED, {});
    OtherDisksAre(TIMEOUT, {});
    PciDevicesAre(-1, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI"));
}

TEST_F(LocalHostScanTest, FunctionsOfOneIdentifierInOneSlotAreOneItem) {
    ReachInventory();
    ControllersAre(0, {});
    OtherDisksAre(0, {});
    PciDevicesAre(
        0, {ADevice("nic", "8086", "1"), ADevice("nic", "8086", "1"), ADevice("nic", "8086", "2")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "nic", "nic"));
}

// ---- RAID

TEST_F(LocalHostScanTest, ControllerComesBeforeItsDisksAndOnceMoreAmongTheDevices) {
    const PciInfo device = ADevice("raid", "9005", "3");
    ReachInventory();
    ControllersAre(0, {controller_});
    ControllerHas(controller_, {raid_disk_, {"second disk", "F2", "DISK-ID", "6", "SN-2"}});
    DeviceAtAddressIs("0000:3b:00.0", 0, device);
    OtherDisksAre(0, {});
    PciDevicesAre(0, {device});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid", "raid disk", "second disk", "raid"));
    EXPECT_EQ(report_.GetScanResults()[1].version, "firmware of 0000:3b:00.0");
    EXPECT_EQ(report_.GetScanResults()[1].slotNum, "3");
    EXPECT_EQ(report_.GetScanResults()[4].version, "own version");
}

TEST_F(LocalHostScanTest, ControllersFollowEachOtherWithTheirDisks) {
    const RaidController second = AController("0000:5e:00.0");
    ReachInventory();
    ControllersAre(0, {controller_, second});
    ControllerHas(controller_, {raid_disk_});
    DeviceAtAddressIs("0000:3b:00.0", 0, ADevice("first", "9005", ""));
    ControllerHas(second, {});
    DeviceAtAddressIs("0000:5e:00.0", 0, ADevice("second", "9005", ""));
    OtherDisksAre(0, {});
    PciDevicesAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "first", "raid disk", "second"));
}

TEST_F(LocalHostScanTest, UnknownAddressCostsTheControllerButNotItsDisks) {
    ReachInventory();
    ControllersAre(0, {controller_});
    ControllerHas(controller_, {raid_disk_});
    DeviceAtAddressIs("0000:3b:00.0", -1, ADevice("raid", "9005", "3"));
    OtherDisksAre(0, {});
    PciDevicesAre(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk"));
}

TEST_F(LocalHostScanTest, RaidDiskItemHasItsTexts) {
    ScanWithRaidSerialAndDisks("RAID-SN", {});
    const UpdateScanItem item = report_.GetScanResults().at(1);
    EXPECT_EQ(item.name, "raid disk");
    EXPECT_EQ(item.description, "raid disk");
    EXPECT_EQ(item.version, "F1");
    EXPECT_EQ(item.softwareId, "DISK-ID");
    EXPECT_EQ(item.slotNum, "5");
    EXPECT_EQ(item.slotType, "0");
    EXPECT_EQ(item.classification, "10");
    EXPECT_EQ(item.pldm, "0");
}

// ---- other disks

TEST_F(LocalHostScanTest, DiskInsideARaidSerialNumberIsDroppedWhateverTheCase) {
    ScanWithRaidSerialAndDisks("abc123-01", {AnIdentity().Name("disk").SerialNumber("ABC123")});
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk"));
    EXPECT_TRUE(log_.Has(3, "Non Raid disk count: 0"));
}

TEST_F(LocalHostScanTest, DiskAroundARaidSerialNumberIsDroppedToo) {
    ScanWithRaidSerialAndDisks("abc", {AnIdentity().Name("disk").SerialNumber("xx-ABC-xx")});
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk"));
}

TEST_F(LocalHostScanTest, DiskWithoutASerialNumberIsAlwaysKept) {
    ScanWithRaidSerialAndDisks("abc", {AnIdentity().Name("disk")});
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk", "disk"));
}

TEST_F(LocalHostScanTest, RaidDiskWithoutASerialNumberDropsNothing) {
    ScanWithRaidSerialAndDisks("", {AnIdentity().Name("disk").SerialNumber("ABC123")});
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk", "disk"));
}

TEST_F(LocalHostScanTest, DisksAreNotComparedWithEachOther) {
    ScanWithRaidSerialAndDisks("abc", {AnIdentity().Name("disk").SerialNumber("S1"),
                                       AnIdentity().Name("same again").SerialNumber("S1")});
    EXPECT_THAT(Names(), ElementsAre("UEFI", "raid disk", "disk", "same again"));
}

TEST_F(LocalHostScanTest, PartNumberReplacesTheIdentifierEvenWhenEmpty) {
    ScanWithRaidSerialAndDisks("abc",
                               {AnIdentity().Name("disk").SoftwareId("own").PartNumber("part"),
                                AnIdentity().Name("other").SoftwareId("own")});
    EXPECT_EQ(report_.GetScanResults().at(2).softwareId, "part");
    EXPECT_EQ(report_.GetScanResults().at(3).softwareId, "");
}

}  // namespace
}  // namespace service::detail
