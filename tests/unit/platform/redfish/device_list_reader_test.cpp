#include "platform/redfish/device_list_reader.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

TEST(DeviceListReaderTest, EachDeviceIsOneLine) {
    ServerSnapshot snapshot;
    snapshot.systems = {MakeResource("/s/1", R"({"Id":"1","Model":"EX100","SerialNumber":"EX1"})")};
    snapshot.chassis = {MakeResource("/c/1", R"({"Id":"1","Manufacturer":"Example"})")};
    snapshot.drives = {MakeResource(
        "/d/0", R"({"Id":"0","Name":"Disk","Model":"EX-SSD","Revision":"R1","SerialNumber":"D1",
                    "PhysicalLocation":{"PartLocation":{"ServiceLabel":"Bay 4"}}})")};
    EXPECT_EQ(
        "System; 1; model EX100; serial EX1\n"
        "Chassis; 1; maker Example\n"
        "Drive; Disk; model EX-SSD; serial D1; firmware R1; slot 4\n",
        ReadDeviceList(snapshot));
}

TEST(DeviceListReaderTest, LineBreaksOfAServiceDoNotMakeLines) {
    ServerSnapshot snapshot;
    snapshot.drives = {MakeResource("/d/0", R"({"Name":"A\nB"})")};
    EXPECT_EQ("Drive; A B\n", ReadDeviceList(snapshot));
}

TEST(DeviceListReaderTest, AbsentDevicesAndErrorsAreLeftOut) {
    ServerSnapshot snapshot;
    snapshot.chassis = {MakeResource("/c", R"({"error":{}})")};
    snapshot.memory = {MakeResource("/m", R"({"Status":{"State":"Absent"}})")};
    EXPECT_EQ("", ReadDeviceList(snapshot));
    EXPECT_EQ("", ReadDeviceList({}));
}

TEST(DeviceListReaderTest, UnknownVersionIsLeftOut) {
    ServerSnapshot snapshot;
    snapshot.pcie_devices = {MakeResource("/p", R"({"Name":"Card","FirmwareVersion":"N/A"})")};
    EXPECT_EQ("PCIe device; Card\n", ReadDeviceList(snapshot));
}

}  // namespace
}  // namespace Vantix::redfish
