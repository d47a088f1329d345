#include "platform/redfish/device_index.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

Resource Adapter(const std::string& more) {
    return MakeResource("/redfish/v1/Chassis/1/NetworkAdapters/N1", R"({"Id":"N1")" + more + "}");
}

ServerSnapshot SnapshotWithAdapter(const std::string& more) {
    ServerSnapshot snapshot;
    snapshot.network_adapters.push_back(Adapter(more));
    return snapshot;
}

const Resource kSlots = MakeResource("/redfish/v1/Chassis/1/PCIeSlots", R"({"Slots":[
    {"SlotType":"OCP3Small","Location":{"PartLocation":{"ServiceLabel":"OCP Slot 4"}},
     "Links":{"PCIeDevice":[{"@odata.id":"/redfish/v1/Chassis/1/PCIeDevices/P1/"}]}},
    {"SlotType":"FullLength"}, null, "text"]})");

TEST(DeviceIndexTest, DeviceFactsAreRead) {
    const DeviceIndex index(SnapshotWithAdapter(
        R"(,"Name":"Net","Model":"EX-N","Manufacturer":"Example","SerialNumber":"S1",
           "PartNumber":"P1","Controllers":[{"FirmwarePackageVersion":"1.2"}])"));
    ASSERT_EQ(1U, index.Devices().size());
    const Device& device = index.Devices()[0];
    EXPECT_EQ("N1 Net EX-N Example S1 P1 1.2",
              device.id + " " + device.name + " " + device.model + " " + device.manufacturer + " " +
                  device.serial_number + " " + device.part_number + " " + device.firmware_version);
}

TEST(DeviceIndexTest, PlaceholdersReadAsUnknown) {
    const DeviceIndex index(
        SnapshotWithAdapter(R"(,"SerialNumber":"N/A","Model":"Default string")"));
    EXPECT_EQ("", index.Devices()[0].serial_number);
    EXPECT_EQ("", index.Devices()[0].model);
}

TEST(DeviceIndexTest, EverySpellingOfALinkFindsTheDevice) {
    const DeviceIndex index(SnapshotWithAdapter(""));
    for (const char* link :
         {"/redfish/v1/Chassis/1/NetworkAdapters/N1", "/redfish/v1/chassis/1/networkadapters/n1/",
          "https://other.invalid/redfish/v1/Chassis/1//NetworkAdapters/N1",
          "/redfish/v1/Chassis/1/NetworkAdapters/N1#/Controllers/0",
          "/redfish/v1/Chassis/1/NetworkAdapters/N1/Ports/2"}) {
        EXPECT_EQ(&index.Devices()[0], index.Find(link)) << link;
    }
}

TEST(DeviceIndexTest, OtherLinksFindNothing) {
    const DeviceIndex index(SnapshotWithAdapter(""));
    for (const char* link : {"", "/", "/redfish/v1/Chassis/1", "/redfish/v1/Systems/1",
                             "/redfish/v1/Chassis/1/NetworkAdapters/N10", "nonsense", "#/x"}) {
        EXPECT_EQ(nullptr, index.Find(link)) << link;
    }
}

TEST(DeviceIndexTest, ErrorDocumentsAreNoDevices) {
    ServerSnapshot snapshot;
    snapshot.network_adapters.push_back(MakeResource("/a", R"({"error":{"code":"x"}})"));
    snapshot.drives.push_back(MakeResource("/d", R"({"error":{"code":"x"}})"));
    EXPECT_TRUE(DeviceIndex(snapshot).Devices().empty());
}

TEST(DeviceIndexTest, SameResourceTwiceIsOneDevice) {
    ServerSnapshot snapshot;
    snapshot.drives.push_back(MakeResource("/redfish/v1/D/0", "{}"));
    snapshot.drives.push_back(MakeResource("/redfish/v1/D/0/", "{}"));
    EXPECT_EQ(1U, DeviceIndex(snapshot).Devices().size());
}

TEST(DeviceIndexTest, AdapterTakesTheSlotOfItsPcieDevice) {
    ServerSnapshot snapshot = SnapshotWithAdapter(
        R"(,"Controllers":[{"Links":{"PCIeDevices":[
            {"@odata.id":"/redfish/v1/Chassis/1/pciedevices/P1"}]}}])");
    snapshot.pcie_slots.push_back(kSlots);
    const DeviceIndex index(snapshot);
    EXPECT_EQ("4", index.Devices()[0].slot.number);
    EXPECT_EQ(kSlotOcp, index.Devices()[0].slot.type);
}

TEST(DeviceIndexTest, AdapterTakesTheSlotOfADeviceWithItsSerialNumber) {
    ServerSnapshot snapshot = SnapshotWithAdapter(R"(,"SerialNumber":"S1")");
    snapshot.pcie_devices.push_back(
        MakeResource("/redfish/v1/Chassis/1/PCIeDevices/P1", R"({"SerialNumber":"S1"})"));
    snapshot.pcie_slots.push_back(kSlots);
    EXPECT_EQ("4", DeviceIndex(snapshot).Devices()[0].slot.number);
}

TEST(DeviceIndexTest, SlotIsReadFromTheDevicesOwnSlotObjectOrDescription) {
    ServerSnapshot snapshot;
    snapshot.pcie_devices.push_back(
        MakeResource("/p/1", R"({"Slot":{"SlotType":"FullLength","Location":{"PartLocation":
                   {"LocationType":"Slot","LocationOrdinalValue":6}}}})"));
    snapshot.pcie_devices.push_back(MakeResource("/p/2", R"({"Description":"Slot 17"})"));
    const DeviceIndex index(snapshot);
    EXPECT_EQ((Slot{"6", kSlotPcie}), index.Devices()[0].slot);
    EXPECT_EQ((Slot{"17", kSlotPcie}), index.Devices()[1].slot);
}

TEST(DeviceIndexTest, ControllersInsideAStorageResourceAreFound) {
    ServerSnapshot snapshot;
    snapshot.storage.push_back(MakeResource("/redfish/v1/Systems/1/Storage/R", R"({
        "StorageControllers":[{"MemberId":"0","Model":"EX-R0"},{"MemberId":"1","Model":"EX-R1"}]})"));
    const DeviceIndex index(snapshot);
    const Device* second = index.Find("/redfish/v1/Systems/1/Storage/R#/StorageControllers/1");
    ASSERT_NE(nullptr, second);
    EXPECT_EQ("EX-R1", second->model);
    EXPECT_EQ(nullptr, index.Find("/redfish/v1/Systems/1/Storage/R"));
}

TEST(DeviceIndexTest, SubsystemsLinkMeansItsOnlyController) {
    ServerSnapshot inside;
    inside.storage.push_back(
        MakeResource("/redfish/v1/S/R", R"({"StorageControllers":[{"Model":"EX-R0"}]})"));
    ServerSnapshot apart;
    apart.storage.push_back(MakeResource(
        "/redfish/v1/S/R", R"({"Controllers":{"@odata.id":"/redfish/v1/S/R/Controllers"}})"));
    apart.storage.push_back(MakeResource(
        "/redfish/v1/S/R/Controllers/1",
        R"({"@odata.type":"#StorageController.v1_7_0.StorageController","Model":"EX-R0"})"));
    ServerSnapshot expanded;
    expanded.storage.push_back(MakeResource("/redfish/v1/S/R", R"({"Controllers":{"Members":[
        {"@odata.id":"/redfish/v1/S/R/Controllers/1","Model":"EX-R0"}]}})"));
    for (const ServerSnapshot& snapshot : {inside, apart, expanded}) {
        const DeviceIndex index(snapshot);
        ASSERT_EQ(1U, index.Devices().size());
        ASSERT_NE(nullptr, index.Find("/redfish/v1/S/R"));
        EXPECT_EQ("EX-R0", index.Find("/redfish/v1/S/R")->model);
    }
}

TEST(DeviceIndexTest, PowerSuppliesOfTheOlderResourceAreFoundByPointer) {
    ServerSnapshot snapshot;
    snapshot.power.push_back(MakeResource("/redfish/v1/Chassis/1/Power", R"({"PowerSupplies":[
        {"MemberId":"0","Name":"Supply","Oem":{"X":{"BayNumber":1}}},
        {"MemberId":"1","Name":"Power Supply 2"},{"MemberId":"2"}]})"));
    const DeviceIndex index(snapshot);
    for (const char* link : {"/redfish/v1/Chassis/1/Power#/PowerSupplies/0",
                             "/redfish/v1/Chassis/1/Power#PowerSupplies/0",
                             "/redfish/v1/chassis/1/power/#/powersupplies/0"}) {
        ASSERT_NE(nullptr, index.Find(link)) << link;
        EXPECT_EQ((Slot{"1", kSlotPsu}), index.Find(link)->slot);
    }
    EXPECT_EQ((Slot{"2", kSlotPsu}), index.Devices()[1].slot);
    EXPECT_EQ((Slot{"2", kSlotPsu}), index.Devices()[2].slot) << "by MemberId";
    EXPECT_EQ(nullptr, index.Find("/redfish/v1/Chassis/1/Power"));
}

TEST(DeviceIndexTest, NewerPowerSuppliesSupersedeTheOlderViewOfTheirChassis) {
    ServerSnapshot snapshot;
    snapshot.power_supplies.push_back(
        MakeResource("/redfish/v1/Chassis/1/PowerSubsystem/PowerSupplies/1", R"({"Id":"1"})"));
    for (const char* chassis : {"1", "2"}) {
        snapshot.power.push_back(
            MakeResource("/redfish/v1/Chassis/" + std::string(chassis) + "/Power",
                         R"({"PowerSupplies":[{"MemberId":"0"}]})"));
    }
    const DeviceIndex index(snapshot);
    ASSERT_EQ(3U, index.Devices().size());
    EXPECT_FALSE(index.Devices()[0].is_superseded);
    EXPECT_TRUE(index.Devices()[1].is_superseded);
    EXPECT_FALSE(index.Devices()[2].is_superseded);
}

TEST(DeviceIndexTest, SameHardwareIsFoundThroughFunctions) {
    ServerSnapshot snapshot;
    snapshot.storage.push_back(MakeResource("/redfish/v1/S/R", R"({"StorageControllers":[{"Links":
        {"PCIeFunctions":[{"@odata.id":"/redfish/v1/Chassis/1/PCIeDevices/P1/PCIeFunctions/0"}]}}]})"));
    snapshot.pcie_devices.push_back(MakeResource("/redfish/v1/Chassis/1/PCIeDevices/P1", "{}"));
    snapshot.pcie_devices.push_back(MakeResource("/redfish/v1/Chassis/1/PCIeDevices/P2", "{}"));
    const DeviceIndex index(snapshot);
    const auto same = index.SameHardware(index.Devices()[0]);
    ASSERT_EQ(1U, same.size());
    EXPECT_EQ("/redfish/v1/Chassis/1/PCIeDevices/P1", same[0]->path);
}

TEST(DeviceIndexTest, DevicesBehindASwitchAreNotTheSwitch) {
    ServerSnapshot snapshot;
    snapshot.pcie_devices = {MakeResource("/p/switch", R"({"Links":{"PCIeDevices":["/p/card"]}})"),
                             MakeResource("/p/card", R"({"Description":"Slot 3"})")};
    const DeviceIndex index(snapshot);
    EXPECT_TRUE(index.SameHardware(index.Devices()[0]).empty());
    EXPECT_FALSE(index.Devices()[0].slot.IsKnown());
}

TEST(DeviceIndexTest, OlderLocationArrayOfADriveIsRead) {
    ServerSnapshot snapshot;
    snapshot.drives.push_back(MakeResource(
        "/d/1", R"({"Location":[{"Info":"Bay 3","InfoFormat":"Bay"}],"Revision":"R1"})"));
    const DeviceIndex index(snapshot);
    EXPECT_EQ((Slot{"3", kSlotDriveBay}), index.Devices()[0].slot);
    EXPECT_EQ("R1", index.Devices()[0].firmware_version);
}

}  // namespace
}  // namespace Vantix::redfish
