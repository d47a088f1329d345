#include "platform/redfish/firmware_reader.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

using VantixOptions::SoftwareIdentity_;

FirmwareReading Read(const ServerSnapshot& snapshot) {
    return ReadFirmware(snapshot, DeviceIndex(snapshot));
}

FirmwareReading ReadMembers(std::vector<Resource> members) {
    return Read(SnapshotWithFirmware(std::move(members)));
}

SoftwareIdentity_ ReadOne(const std::string& json) {
    const FirmwareReading reading = ReadMembers({FirmwareMember("M", json)});
    return reading.entries.empty() ? SoftwareIdentity_() : reading.entries[0].identity;
}

TEST(FirmwareReaderTest, FieldsComeFromTheMember) {
    const SoftwareIdentity_ identity = ReadOne(
        R"({"Id":"M","Name":" Net ","Description":"D","SoftwareId":"SID","Version":"1.2 \n",
            "Manufacturer":"Example","ReleaseDate":"2025-01-02","Updateable":true,
            "Status":{"State":"Enabled"}})");
    EXPECT_EQ("Net", identity.Name);
    EXPECT_EQ("Net", identity.ElementName);
    EXPECT_EQ("D", identity.Description);
    EXPECT_EQ("SID", identity.SoftwareID);
    EXPECT_EQ("1.2", identity.VersionString);
    EXPECT_EQ("Example", identity.Manufacturer);
    EXPECT_EQ("2025-01-02", identity.ReleaseDate);
    EXPECT_EQ("M", identity.InstanceID);
    EXPECT_EQ("1", identity.IsPLDMUpdateSupported);
    EXPECT_EQ("Enabled", identity.SoftwareStatus);
    EXPECT_EQ("Redfish FirmwareInventory", identity.Caption);
    EXPECT_EQ("10", identity.Classifications);
}

TEST(FirmwareReaderTest, SoftwareIdFallsBackToTheMembersId) {
    for (const char* json :
         {R"({"Id":"M"})", R"({"Id":"M","SoftwareId":null})", R"({"Id":"M","SoftwareId":""})",
          R"({"Id":"M","SoftwareId":"0"})", R"({"Id":"M","SoftwareId":0})",
          R"({"Id":"M","SoftwareId":{"a":1}})"}) {
        EXPECT_EQ("M", ReadOne(json).SoftwareID) << json;
    }
    EXPECT_EQ("1017", ReadOne(R"({"Id":"M","SoftwareId":1017})").SoftwareID);
}

TEST(FirmwareReaderTest, MemberWithoutIdTakesTheEndOfItsPath) {
    const SoftwareIdentity_ identity = ReadOne(R"({"Name":"No Id","Version":"1"})");
    EXPECT_EQ("M", identity.InstanceID);
    EXPECT_EQ("M", identity.SoftwareID);
}

TEST(FirmwareReaderTest, UpdateableIsOneZeroOrEmpty) {
    const std::pair<const char*, const char*> cases[] = {{"true", "1"},     {"false", "0"},
                                                         {"\"True\"", "1"}, {"null", ""},
                                                         {"\"maybe\"", ""}, {"[]", ""}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(
            text,
            ReadOne(R"({"Id":"M","Updateable":)" + std::string(value) + "}").IsPLDMUpdateSupported)
            << value;
    }
    EXPECT_EQ("", ReadOne(R"({"Id":"M"})").IsPLDMUpdateSupported);
}

TEST(FirmwareReaderTest, MissingVersionIsListedEmptyAndCounted) {
    const FirmwareReading reading = ReadMembers(
        {FirmwareMember("A", R"({"Id":"A","Version":null})"), FirmwareMember("B", R"({"Id":"B"})"),
         FirmwareMember("C", R"({"Id":"C","Version":""})"),
         FirmwareMember("D", R"({"Id":"D","Version":"N/A"})"),
         FirmwareMember("E", R"({"Id":"E","Version":"ff"})")});
    ASSERT_EQ(5U, reading.entries.size());
    EXPECT_EQ(4U, reading.without_version);
    for (int i = 0; i < 3; ++i) EXPECT_EQ("", reading.entries[i].identity.VersionString);
    EXPECT_EQ("N/A", reading.entries[3].identity.VersionString) << "reported texts are kept";
    EXPECT_EQ("ff", reading.entries[4].identity.VersionString);
}

TEST(FirmwareReaderTest, MissingNameStaysEmpty) {
    EXPECT_EQ("", ReadOne(R"({"Id":"M","Name":null,"Version":"1"})").Name);
}

TEST(FirmwareReaderTest, BadMembersAreListedAndTheRestIsKept) {
    std::vector<Resource> members;
    for (int i = 1; i <= 10; ++i) {
        const std::string id = std::to_string(i);
        const bool is_bad = i == 1 || i == 5 || i == 10;
        members.push_back(FirmwareMember(id, is_bad ? (i == 5 ? "{}" : R"({"error":{"code":"x"}})")
                                                    : R"({"Id":")" + id + "\"}"));
    }
    const FirmwareReading reading = ReadMembers(members);
    EXPECT_EQ(7U, reading.entries.size());
    ASSERT_EQ(3U, reading.issues.size());
    EXPECT_EQ("/redfish/v1/UpdateService/FirmwareInventory/5", reading.issues[1].path);
    EXPECT_NE("", reading.issues[1].cause);
}

TEST(FirmwareReaderTest, MemberWithContentAndErrorIsUsed) {
    EXPECT_EQ("2", ReadOne(R"({"Id":"M","Version":"2","error":{"code":"x"}})").VersionString);
}

TEST(FirmwareReaderTest, SameUriTwiceIsOneItemInOrderOfFirstSight) {
    const FirmwareReading reading =
        ReadMembers({FirmwareMember("B", R"({"Id":"B"})"), FirmwareMember("A", R"({"Id":"A"})"),
                     FirmwareMember("B/", R"({"Id":"B"})")});
    ASSERT_EQ(2U, reading.entries.size());
    EXPECT_EQ("B", reading.entries[0].identity.InstanceID);
    EXPECT_EQ("A", reading.entries[1].identity.InstanceID);
}

TEST(FirmwareReaderTest, EqualNamesStayApart) {
    EXPECT_EQ(2U, ReadMembers({FirmwareMember("A", R"({"Id":"A","Name":"N","Version":"1"})"),
                               FirmwareMember("B", R"({"Id":"B","Name":"N","Version":"1"})")})
                      .entries.size());
}

TEST(FirmwareReaderTest, OnlyInstalledMembersBecomeItems) {
    const FirmwareReading reading = ReadMembers(
        {FirmwareMember("1", R"({"Id":"Installed-0-2","SoftwareId":"C","Version":"2"})"),
         FirmwareMember("2", R"({"Id":"Previous-0-1","SoftwareId":"C","Version":"1"})"),
         FirmwareMember("3", R"({"Id":"Available-0-3","SoftwareId":"C","Version":"3"})"),
         FirmwareMember("4", R"({"Id":"X","Status":{"State":"Absent"}})")});
    ASSERT_EQ(1U, reading.entries.size());
    EXPECT_EQ("2", reading.entries[0].identity.VersionString);
    EXPECT_EQ(3U, reading.not_installed.size());
}

TEST(FirmwareReaderTest, CurrentAndInstalledOfOneComponentAreOneItem) {
    const FirmwareReading reading =
        ReadMembers({FirmwareMember("1", R"({"Id":"Current-159-1.6__B","Version":"1.6"})"),
                     FirmwareMember("2", R"({"Id":"Installed-159-1.6__B","Version":"1.6"})"),
                     FirmwareMember("3", R"({"Id":"Current-7-2.0__N","Version":"2.0"})")});
    ASSERT_EQ(2U, reading.entries.size());
    EXPECT_EQ("Installed-159-1.6__B", reading.entries[0].identity.InstanceID);
    EXPECT_EQ("Current-7-2.0__N", reading.entries[1].identity.InstanceID);
}

TEST(FirmwareReaderTest, RenamedIdsGiveTheSameItems) {
    const auto read = [](const std::string& id) {
        return ReadOne(R"({"Id":")" + id + R"(","Name":"Net","SoftwareId":"SID","Version":"1.2"})");
    };
    const SoftwareIdentity_ before = read("NIC.1");
    const SoftwareIdentity_ after = read("f00dcafe");
    EXPECT_EQ(before.Name + before.SoftwareID + before.VersionString + before.Classifications,
              after.Name + after.SoftwareID + after.VersionString + after.Classifications);
}

class RelatedItemTest : public testing::Test {
  protected:
    RelatedItemTest() {
        snapshot_.drives.push_back(
            MakeResource("/redfish/v1/Chassis/1/Drives/0",
                         R"({"SerialNumber":"DS1","PartNumber":"DP1","Manufacturer":"Example",
                "PhysicalLocation":{"PartLocation":{"LocationType":"Bay","ServiceLabel":"Bay 4"}}})"));
        snapshot_.power.push_back(
            MakeResource("/redfish/v1/Chassis/1/Power",
                         R"({"PowerSupplies":[{"MemberId":"0","SerialNumber":"PS1",
                             "Location":{"PartLocation":{"ServiceLabel":"PSU 1"}}}]})"));
    }

    SoftwareIdentity_ ReadRelated(const std::string& related) {
        snapshot_.firmware = {
            FirmwareMember("M", R"({"Id":"M","Version":"1","RelatedItem":)" + related + "}")};
        return Read(snapshot_).entries.at(0).identity;
    }

    ServerSnapshot snapshot_;
};

TEST_F(RelatedItemTest, EveryShapeOfTheLinkLeadsToTheDevice) {
    for (const char* related :
         {R"([{"@odata.id":"/redfish/v1/Chassis/1/Drives/0"}])",
          R"({"@odata.id":"/redfish/v1/Chassis/1/Drives/0"})",
          R"("/redfish/v1/Chassis/1/Drives/0")", R"(["/redfish/v1/Chassis/1/Drives/0"])",
          R"([{"@odata.id":"/redfish/v1/chassis/1//drives/0/"}])",
          R"([{"@odata.id":"https://h.invalid/redfish/v1/Chassis/1/Drives/0"}])"}) {
        const SoftwareIdentity_ identity = ReadRelated(related);
        EXPECT_EQ("DS1", identity.SerialNumber) << related;
        EXPECT_EQ("DP1", identity.PartNumber) << related;
        EXPECT_EQ("Example", identity.Manufacturer) << related;
        EXPECT_EQ("4", identity.AssociatedAdapterSlot) << related;
        EXPECT_EQ(kSlotDriveBay, identity.SlotType) << related;
    }
}

TEST_F(RelatedItemTest, PointerLeadsIntoAnOlderResource) {
    const SoftwareIdentity_ identity =
        ReadRelated(R"([{"@odata.id":"/redfish/v1/Chassis/1/Power#/PowerSupplies/0"}])");
    EXPECT_EQ("PS1", identity.SerialNumber);
    EXPECT_EQ("1", identity.AssociatedAdapterSlot);
    EXPECT_EQ(kSlotPsu, identity.SlotType);
    EXPECT_EQ("/redfish/v1/Chassis/1/Power#/PowerSupplies/0", identity.IdentityInfoValue);
    EXPECT_EQ("RelatedItem", identity.IdentityInfoType);
}

TEST_F(RelatedItemTest, LinksThatLeadNowhereLeaveTheFieldsEmpty) {
    for (const char* related : {"[]", "null", "7", R"([{"@odata.id":"/redfish/v1/Chassis/9"}])",
                                R"([null,{},[]])", R"([{"@odata.id":""}])"}) {
        const SoftwareIdentity_ identity = ReadRelated(related);
        EXPECT_EQ("", identity.SerialNumber + identity.PartNumber + identity.AssociatedAdapterSlot)
            << related;
        EXPECT_EQ(kSlotOnBoard, identity.SlotType) << related;
    }
}

TEST(FirmwareReaderTest, SlotOfTheEntrysOwnContextIsUsedWithoutARelation) {
    const auto read = [](const std::string& name, const std::string& context) {
        const SoftwareIdentity_ identity =
            ReadOne(R"({"Id":"M","Name":")" + name + R"(","Oem":{"X":{"DeviceContext":")" +
                    context + R"("}}})");
        return identity.AssociatedAdapterSlot + "/" + std::to_string(identity.SlotType);
    };
    EXPECT_EQ("1/7", read("Net", "PCI-E Slot 1"));
    EXPECT_EQ("2/2", read("Power Supply Firmware", "Bay 2"));
    EXPECT_EQ("1/1", read("Example SSD", "Slot=14:Port=2:Box=1:Bay=1"));
    EXPECT_EQ("/0", read("System ROM", "System Board"));
}

ServerSnapshot TwoImages(const std::string& first, const std::string& second) {
    ServerSnapshot snapshot = SnapshotWithFirmware(
        {FirmwareMember("a", R"({"Id":"a","Name":"BMC","Version":"1")" + first + "}"),
         FirmwareMember("b", R"({"Id":"b","Name":"BMC","Version":"2")" + second + "}")});
    snapshot.managers.push_back(MakeResource("/redfish/v1/Managers/1", R"({"Links":{
        "ActiveSoftwareImage":{"@odata.id":"/redfish/v1/UpdateService/FirmwareInventory/b"},
        "SoftwareImages":[{"@odata.id":"/redfish/v1/UpdateService/FirmwareInventory/a"},
                          {"@odata.id":"/redfish/v1/UpdateService/FirmwareInventory/b"}]}})"));
    return snapshot;
}

TEST(FirmwareReaderTest, ActiveImageOfTheManagerTellsTheBackup) {
    const FirmwareReading reading =
        Read(TwoImages(R"(,"SoftwareId":"BMC")", R"(,"SoftwareId":"BMC")"));
    ASSERT_EQ(2U, reading.entries.size());
    EXPECT_EQ("BMC-Backup", reading.entries[0].identity.SoftwareID);
    EXPECT_EQ("Backup", reading.entries[0].identity.SoftwareRole);
    EXPECT_EQ("a", reading.entries[0].identity.InstanceID);
    EXPECT_EQ("BMC", reading.entries[1].identity.SoftwareID);
    EXPECT_EQ("Active", reading.entries[1].identity.SoftwareRole);
}

TEST(FirmwareReaderTest, BackupWithAnIdOfItsOwnKeepsIt) {
    const FirmwareReading reading =
        Read(TwoImages(R"(,"SoftwareId":"Image-A")", R"(,"SoftwareId":"Image-B")"));
    EXPECT_EQ("Image-A", reading.entries[0].identity.SoftwareID);
    EXPECT_EQ("Image-B", reading.entries[1].identity.SoftwareID);
}

TEST(FirmwareReaderTest, BackupThatCallsItselfSoGetsADistinctId) {
    const FirmwareReading reading = ReadMembers(
        {FirmwareMember("1", R"({"Id":"1","Name":"System ROM","SoftwareId":"ROM"})"),
         FirmwareMember("2", R"({"Id":"2","Name":"Redundant System ROM","SoftwareId":"ROM"})")});
    EXPECT_EQ("ROM", reading.entries[0].identity.SoftwareID);
    EXPECT_EQ("ROM-Backup", reading.entries[1].identity.SoftwareID);
}

TEST(FirmwareReaderTest, StandbyDeviceIsNoBackupOfItsTwin) {
    ServerSnapshot snapshot = SnapshotWithFirmware(
        {FirmwareMember("1", R"({"Id":"1","SoftwareId":"SSD","RelatedItem":["/d/0"]})"),
         FirmwareMember("2", R"({"Id":"2","SoftwareId":"SSD","RelatedItem":["/d/1"],
                                 "Status":{"State":"StandbyOffline"}})")});
    snapshot.drives = {MakeResource("/d/0", "{}"), MakeResource("/d/1", "{}")};
    const FirmwareReading reading = Read(snapshot);
    EXPECT_EQ("SSD", reading.entries[1].identity.SoftwareID);
}

TEST(FirmwareReaderTest, OnlySoftwareInventoryIsReadAsFirmware) {
    ServerSnapshot snapshot;
    snapshot.software = {MakeResource("/s/1", R"({"Id":"1","Name":"Main Image","Version":"1"})")};
    const FirmwareReading reading = Read(snapshot);
    ASSERT_EQ(1U, reading.entries.size());
    EXPECT_EQ("10", reading.entries[0].identity.Classifications);
    EXPECT_EQ("Redfish SoftwareInventory", reading.entries[0].identity.Caption);
}

TEST(FirmwareReaderTest, SoftwareInventoryAddsWhatIsNotInTheOther) {
    ServerSnapshot snapshot =
        SnapshotWithFirmware({FirmwareMember("BMC", R"({"Id":"BMC","Version":"1"})")});
    snapshot.software = {MakeResource("/s/BMC", R"({"Id":"BMC","Version":"1"})"),
                         MakeResource("/s/Console", R"({"Id":"Console","Version":"3"})")};
    const FirmwareReading reading = Read(snapshot);
    ASSERT_EQ(2U, reading.entries.size());
    EXPECT_EQ("Console", reading.entries[1].identity.InstanceID);
    EXPECT_EQ("4", reading.entries[1].identity.Classifications);
}

TEST(FirmwareReaderTest, EqualIdsOnDifferentDevicesAreNoBackups) {
    const FirmwareReading reading =
        ReadMembers({FirmwareMember("1", R"({"Id":"1","SoftwareId":"PSU","Name":"PSU 1"})"),
                     FirmwareMember("2", R"({"Id":"2","SoftwareId":"PSU","Name":"PSU 2"})")});
    ASSERT_EQ(2U, reading.entries.size());
    for (const FirmwareEntry& entry : reading.entries) {
        EXPECT_EQ("PSU", entry.identity.SoftwareID);
        EXPECT_EQ("", entry.identity.SoftwareRole);
    }
}

TEST(FirmwareReaderTest, EmptySnapshotGivesNothing) {
    const FirmwareReading reading = Read({});
    EXPECT_TRUE(reading.entries.empty());
    EXPECT_TRUE(reading.issues.empty());
}

}  // namespace
}  // namespace Vantix::redfish
