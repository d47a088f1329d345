#include "platform/redfish/inventory_reader.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

TEST(InventoryReaderTest, InventoryComesFirstThenWhatDevicesAdd) {
    ServerSnapshot snapshot = SnapshotWithFirmware(
        {FirmwareMember("BIOS", R"({"Id":"BIOS","Version":"1"})"), FirmwareMember("X", "{}"),
         FirmwareMember("Previous-1", R"({"Id":"Previous-1","Version":"0"})"),
         FirmwareMember("N", R"({"Id":"N"})")});
    snapshot.drives = {MakeResource("/d/0", R"({"Model":"EX-SSD","Revision":"R1"})")};
    const Inventory inventory = ReadInventory(snapshot);
    ASSERT_EQ(3U, inventory.identities.size());
    EXPECT_EQ("BIOS", inventory.identities[0].InstanceID);
    EXPECT_EQ("EX-SSD", inventory.identities[2].Name);
    EXPECT_EQ(1U, inventory.completed);
    EXPECT_EQ(1U, inventory.without_version);
    EXPECT_EQ(1U, inventory.issues.size());
    EXPECT_EQ(1U, inventory.not_installed.size());
}

TEST(InventoryReaderTest, RequestedSystemGivesTheBios) {
    ServerSnapshot snapshot;
    snapshot.systems = {MakeResource("/s/A", R"({"Id":"A","BiosVersion":"a"})"),
                        MakeResource("/s/B", R"({"Id":"B","BiosVersion":"b"})")};
    EXPECT_EQ("a", ReadInventory(snapshot).identities.at(0).VersionString);
    EXPECT_EQ("b", ReadInventory(snapshot, "B").identities.at(0).VersionString);
}

TEST(InventoryReaderTest, EmptySnapshotGivesAnEmptyInventory) {
    const Inventory inventory = ReadInventory({});
    EXPECT_TRUE(inventory.identities.empty());
    EXPECT_EQ(0U, inventory.completed);
}

}  // namespace
}  // namespace Vantix::redfish
