#include "platform/redfish/completion_reader.h"

#include <gmock/gmock.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VantixOptions::SoftwareIdentity_;

std::vector<SoftwareIdentity_> Missing(const ServerSnapshot& snapshot) {
    const DeviceIndex index(snapshot);
    return ReadMissingFirmware(FindManagedSystem(snapshot), index, ReadFirmware(snapshot, index));
}

/// "SoftwareID version" of each record that is missing from the inventory.
std::vector<std::string> MissingTexts(const ServerSnapshot& snapshot) {
    std::vector<std::string> texts;
    for (const auto& identity : Missing(snapshot)) {
        texts.push_back(identity.SoftwareID + " " + identity.VersionString);
    }
    return texts;
}

Resource Drive(const std::string& id, const std::string& more) {
    return MakeResource("/redfish/v1/Drives/" + id, R"({"Id":")" + id + "\"" + more + "}");
}

ServerSnapshot WithSystem() {
    ServerSnapshot snapshot;
    snapshot.systems = {
        MakeResource("/redfish/v1/Systems/1", R"({"Id":"1","BiosVersion":"B 1.0"})")};
    snapshot.managers = {
        MakeResource("/redfish/v1/Managers/1", R"({"Id":"1","FirmwareVersion":"M 2.0"})")};
    return snapshot;
}

ServerSnapshot WithAdapter(const std::string& entry) {
    ServerSnapshot snapshot;
    if (!entry.empty()) snapshot.firmware = {FirmwareMember("E", entry)};
    snapshot.network_adapters = {
        MakeResource("/redfish/v1/Chassis/1/NetworkAdapters/N1",
                     R"({"Id":"N1","Model":"EX-NET 25","PartNumber":"EXP1","SerialNumber":"EXS1",
            "Location":{"PartLocation":{"LocationType":"Slot","ServiceLabel":"Slot 3"}},
            "Controllers":[{"FirmwarePackageVersion":"22.1"}]})")};
    return snapshot;
}

TEST(CompletionReaderTest, WithoutInventoryEverythingWithAVersionIsListed) {
    ServerSnapshot snapshot = WithSystem();
    snapshot.network_adapters = WithAdapter("").network_adapters;
    snapshot.storage = {MakeResource(
        "/s", R"({"StorageControllers":[{"Model":"EX-RAID","FirmwareVersion":"5.1"}]})")};
    snapshot.drives = {Drive("0", R"(,"Model":"EX-SSD","Revision":"R1")")};
    snapshot.power_supplies = {
        MakeResource("/p", R"({"Id":"1","Model":"EX-PSU","FirmwareVersion":"7.0"})")};
    snapshot.pcie_devices = {
        MakeResource("/g", R"({"Id":"G","Model":"EX-GPU","FirmwareVersion":"9.0"})")};
    EXPECT_THAT(MissingTexts(snapshot),
                ElementsAre("UEFI B 1.0", "BMC M 2.0", "EXP1 22.1", "EX-RAID 5.1", "EX-SSD R1",
                            "EX-PSU 7.0", "EX-GPU 9.0"));
}

TEST(CompletionReaderTest, RecordTellsSourceDeviceAndSlot) {
    const auto list = Missing(WithAdapter(""));
    ASSERT_EQ(1U, list.size());
    const SoftwareIdentity_& identity = list[0];
    EXPECT_EQ("EX-NET 25", identity.Name);
    EXPECT_EQ("Redfish NetworkAdapter", identity.Caption);
    EXPECT_EQ("10", identity.Classifications);
    EXPECT_EQ("N1", identity.InstanceID);
    EXPECT_EQ("EXS1", identity.SerialNumber);
    EXPECT_EQ("EXP1", identity.PartNumber);
    EXPECT_EQ("3", identity.AssociatedAdapterSlot);
    EXPECT_EQ(kSlotPcie, identity.SlotType);
    EXPECT_EQ("", identity.IsPLDMUpdateSupported);
}

TEST(CompletionReaderTest, BiosAndBmcHaveTheirClasses) {
    const auto list = Missing(WithSystem());
    ASSERT_EQ(2U, list.size());
    EXPECT_EQ("6", list[0].Classifications);
    EXPECT_EQ("Redfish ComputerSystem", list[0].Caption);
    EXPECT_EQ("10", list[1].Classifications);
    EXPECT_EQ("Redfish Manager", list[1].Caption);
}

TEST(CompletionReaderTest, ListedBiosAndBmcAreNotRepeated) {
    const char* entries[] = {
        R"({"Id":"1","Name":"UEFI","Version":"other text"})",
        R"({"Id":"1","Name":"Main image","Version":"B 1.0"})",
        R"({"Id":"1","Version":"x","RelatedItem":["/redfish/v1/Systems/1/Bios"]})"};
    for (const char* entry : entries) {
        ServerSnapshot snapshot = WithSystem();
        snapshot.firmware = {FirmwareMember("1", entry)};
        EXPECT_THAT(MissingTexts(snapshot), ElementsAre("BMC M 2.0")) << entry;
    }
    for (const char* entry :
         {R"({"Id":"1","Name":"BMC Primary","Version":"x"})",
          R"({"Id":"1","Version":"x","RelatedItem":["/redfish/v1/managers/1"]})",
          R"({"Id":"1","Version":"M 2.0"})"}) {
        ServerSnapshot snapshot = WithSystem();
        snapshot.firmware = {FirmwareMember("1", entry)};
        EXPECT_THAT(MissingTexts(snapshot), ElementsAre("UEFI B 1.0")) << entry;
    }
}

TEST(CompletionReaderTest, OptionRomOfACardIsNotTheBios) {
    ServerSnapshot snapshot = WithAdapter(
        R"({"Id":"1","Name":"Option ROM","Version":"3","RelatedItem":[
            "/redfish/v1/Chassis/1/NetworkAdapters/N1"]})");
    snapshot.systems = WithSystem().systems;
    EXPECT_THAT(MissingTexts(snapshot), ElementsAre("UEFI B 1.0"));
}

TEST(CompletionReaderTest, VersionsThatSayNothingAreNotListed) {
    ServerSnapshot snapshot;
    for (const char* version : {"", "N/A", "Not Available", "unknown"}) {
        snapshot.drives.push_back(Drive(version, R"(,"Revision":")" + std::string(version) + "\""));
    }
    snapshot.drives.push_back(Drive("x", R"(,"Revision":null)"));
    EXPECT_THAT(MissingTexts(snapshot), IsEmpty());
}

TEST(CompletionReaderTest, AbsentDevicesAreNotListed) {
    ServerSnapshot snapshot;
    snapshot.drives = {Drive("0", R"(,"Revision":"R1","Status":{"State":"Absent"})")};
    EXPECT_THAT(MissingTexts(snapshot), IsEmpty());
}

TEST(CompletionReaderTest, AnyLinkBetweenEntryAndDeviceMakesItListed) {
    for (
        const char* entry :
        {R"({"Id":"E","Version":"x","RelatedItem":["/redfish/v1/Chassis/1/NetworkAdapters/N1"]})",
         R"({"Id":"E","Version":"x","RelatedItem":["/redfish/v1/chassis/1/networkadapters/n1/Ports/1"]})",
         R"({"Id":"E","Version":"22.1","Name":"Example NIC"})",
         R"({"Id":"E","Version":"22.1","Name":"EX-NET 25"})",
         R"({"Id":"E","Version":"22.1","SoftwareId":"EXP1"})",
         R"({"Id":"E","Version":"x","Oem":{"X":{"DeviceContext":"PCI-E Slot 3"}}})"}) {
        EXPECT_THAT(MissingTexts(WithAdapter(entry)), IsEmpty()) << entry;
    }
}

TEST(CompletionReaderTest, EqualShortVersionOfAnotherComponentDoesNotHideTheDevice) {
    for (const char* entry : {R"({"Id":"E","Version":"22.1","Name":"Fan Board"})",
                              R"({"Id":"E","Version":"22.2","Name":"Example NIC"})"}) {
        EXPECT_THAT(MissingTexts(WithAdapter(entry)), ElementsAre("EXP1 22.1")) << entry;
    }
}

TEST(CompletionReaderTest, DistinctiveVersionAloneMakesADeviceListed) {
    ServerSnapshot snapshot;
    snapshot.firmware = {
        FirmwareMember("E", R"({"Id":"E","Name":"Thing","Version":"28.44.1036"})")};
    snapshot.pcie_devices = {
        MakeResource("/g", R"({"Id":"G","Model":"EX-GPU","FirmwareVersion":"28.44.1036"})")};
    EXPECT_THAT(MissingTexts(snapshot), IsEmpty());
}

TEST(CompletionReaderTest, OneEntryForManyEqualDrivesIsCompletedFromTheDrives) {
    ServerSnapshot snapshot;
    snapshot.firmware = {FirmwareMember("E", R"({"Id":"E","Name":"Drive EX-SSD","Version":"R1"})")};
    for (const char* id : {"0", "1", "2", "3"}) {
        snapshot.drives.push_back(Drive(
            id, R"(,"Model":"EX-SSD","Revision":"R1","SerialNumber":"S)" + std::string(id) + "\""));
    }
    EXPECT_EQ(3U, Missing(snapshot).size());
}

TEST(CompletionReaderTest, EntryThatRelatesToAllDrivesLeavesNoneMissing) {
    ServerSnapshot snapshot;
    snapshot.firmware = {FirmwareMember(
        "E",
        R"({"Id":"E","Version":"R1","RelatedItem":["/redfish/v1/Drives/0","/redfish/v1/Drives/1"]})")};
    snapshot.drives = {Drive("0", R"(,"Revision":"R1")"), Drive("1", R"(,"Revision":"R1")")};
    EXPECT_THAT(MissingTexts(snapshot), IsEmpty());
}

TEST(CompletionReaderTest, SameDriveUnderTwoPathsIsListedOnce) {
    ServerSnapshot snapshot;
    snapshot.drives = {Drive("0", R"(,"Revision":"R1","SerialNumber":"S")"),
                       MakeResource("/other/0", R"({"Revision":"R1","SerialNumber":"S"})")};
    EXPECT_EQ(1U, Missing(snapshot).size());
}

TEST(CompletionReaderTest, CardSeenAsAdapterAndAsPcieDeviceIsListedOnce) {
    ServerSnapshot snapshot = WithAdapter("");
    snapshot.pcie_devices = {
        MakeResource("/p/1", R"({"SerialNumber":"EXS1","FirmwareVersion":"22.1"})"),
        MakeResource("/p/2", R"({"FirmwareVersion":"22.1","Description":"Slot 3"})")};
    EXPECT_THAT(MissingTexts(snapshot), ElementsAre("EXP1 22.1"));
}

TEST(CompletionReaderTest, NvmeDriveClaimedByAnEntryIsNotListedAsPcieDevice) {
    ServerSnapshot snapshot;
    snapshot.firmware = {FirmwareMember("E", R"({"Id":"E","Name":"NVMe SSD","Version":"R1"})")};
    snapshot.drives = {Drive("0", R"(,"Revision":"R1","SerialNumber":"S")")};
    snapshot.pcie_devices = {
        MakeResource("/p/1", R"({"SerialNumber":"S","FirmwareVersion":"R1"})")};
    EXPECT_THAT(MissingTexts(snapshot), IsEmpty());
}

TEST(CompletionReaderTest, PcieSideOfAListedDriveIsNotListed) {
    ServerSnapshot snapshot;
    snapshot.drives = {
        Drive("0", R"(,"Revision":"R1","Links":{"PCIeFunctions":["/P/1/PCIeFunctions/0"]})")};
    snapshot.pcie_devices = {MakeResource("/p/1", R"({"FirmwareVersion":"R1"})")};
    EXPECT_EQ(1U, Missing(snapshot).size());
}

TEST(CompletionReaderTest, OlderViewOfPowerSuppliesAddsNothing) {
    ServerSnapshot snapshot;
    snapshot.power_supplies = {
        MakeResource("/redfish/v1/Chassis/1/PowerSubsystem/PowerSupplies/1",
                     R"({"Id":"1","Model":"EX-PSU","FirmwareVersion":"7"})")};
    snapshot.power = {
        MakeResource("/redfish/v1/Chassis/1/Power",
                     R"({"PowerSupplies":[{"Model":"EX-OLD","FirmwareVersion":"7"}]})")};
    EXPECT_THAT(MissingTexts(snapshot), ElementsAre("EX-PSU 7"));
}

TEST(CompletionReaderTest, DriveNameIsItsModelNotTheWordDrive) {
    ServerSnapshot snapshot;
    snapshot.drives = {Drive("0", R"(,"Name":"Drive","Model":"EX-SSD","Revision":"R1")")};
    EXPECT_EQ("EX-SSD", Missing(snapshot)[0].Name);
}

}  // namespace
}  // namespace Vantix::redfish
