#include "platform/redfish/broadcom_switch_reader.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

const char* const kByVendorId =
    R"("PCIeFunctions":{"Members":[{"VendorId":"0x1000","ClassCode":"0x060400"}]})";
const char* const kLinksDown = R"("Links":{"PCIeDevices":["/p/card"]})";
const char* const kUpdatable =
    R"({"Id":"E","Updateable":true,"RelatedItem":[{"@odata.id":"/p/card"}]})";

bool Probe(const std::string& pcie_switch, const std::string& card, const std::string& entry) {
    ServerSnapshot snapshot = SnapshotWithFirmware({FirmwareMember("E", entry)});
    snapshot.pcie_devices = {MakeResource("/p/switch", "{" + pcie_switch + "}"),
                             MakeResource("/p/card", card)};
    return HasUpdatableDeviceBehindBroadcomSwitch(snapshot);
}

std::string With(const std::string& first, const std::string& second) {
    return first + "," + second;
}

TEST(BroadcomSwitchReaderTest, UpdatableDeviceBehindASwitchIsFound) {
    EXPECT_TRUE(Probe(With(kByVendorId, kLinksDown), "{}", kUpdatable));
}

TEST(BroadcomSwitchReaderTest, SwitchIsRecognisedInEachShape) {
    for (const char* pcie_switch :
         {R"("PCIeFunctions":[{"VendorId":"1000","DeviceClass":"Bridge"}])",
          R"("Links":{"PCIeFunctions":[{"VendorId":"0X1000","ClassCode":"0X00060400"}],
             "PCIeDevices":["/p/card"]})",
          R"("VendorId":4096,"Name":"x")", R"("VendorId":"0x1000","Name":"PCIe Switch 1")",
          R"("Manufacturer":"Broadcom Inc.","Model":"Switch 89000")"}) {
        const bool has_links = std::string(pcie_switch).find("Links") != std::string::npos;
        // 4096 is the number in decimal: no such vendor id in hexadecimal.
        const bool is_switch = std::string(pcie_switch).find("4096") == std::string::npos;
        EXPECT_EQ(is_switch,
                  Probe(has_links ? pcie_switch : With(pcie_switch, kLinksDown), "{}", kUpdatable))
            << pcie_switch;
    }
}

TEST(BroadcomSwitchReaderTest, OtherDevicesAreNoSwitch) {
    for (const char* device :
         {R"("PCIeFunctions":{"Members":[{"VendorId":"0x10B5","ClassCode":"0x060400"}]})",
          R"("PCIeFunctions":{"Members":[{"VendorId":"0x1000","ClassCode":"0x010400"}]})",
          R"("Manufacturer":"Broadcom","Name":"RAID Controller")",
          R"("Manufacturer":"Example","Name":"PCIe Switch")"}) {
        EXPECT_FALSE(Probe(With(device, kLinksDown), "{}", kUpdatable)) << device;
    }
}

TEST(BroadcomSwitchReaderTest, DeviceMayLinkUpInsteadOfTheSwitchDown) {
    for (const char* card : {R"({"Links":{"Switch":{"@odata.id":"/p/switch"}}})",
                             R"({"Oem":{"X":{"UpstreamSwitch":{"@odata.id":"/p/switch/"}}}})"}) {
        EXPECT_TRUE(Probe(kByVendorId, card, kUpdatable)) << card;
    }
}

TEST(BroadcomSwitchReaderTest, SwitchMayListDevicesBelowOem) {
    EXPECT_TRUE(Probe(With(kByVendorId, R"("Oem":{"X":{"DownstreamDevices":["/P/Card"]}})"), "{}",
                      kUpdatable));
}

TEST(BroadcomSwitchReaderTest, NothingBehindTheSwitchIsFalse) {
    EXPECT_FALSE(Probe(kByVendorId, "{}", kUpdatable));
    EXPECT_FALSE(
        Probe(With(kByVendorId, R"("Links":{"PCIeDevices":["/p/switch"]})"), "{}", kUpdatable));
}

TEST(BroadcomSwitchReaderTest, DeviceThatCannotBeUpdatedIsFalse) {
    for (const char* entry :
         {R"({"Id":"E","Updateable":false,"RelatedItem":["/p/card"]})",
          R"({"Id":"E","RelatedItem":["/p/card"]})", R"({"Id":"E","Updateable":true})",
          R"({"Id":"E","Updateable":true,"RelatedItem":["/p/switch"]})"}) {
        EXPECT_FALSE(Probe(With(kByVendorId, kLinksDown), "{}", entry)) << entry;
    }
}

TEST(BroadcomSwitchReaderTest, EntryOfTheAdapterOnTheDeviceCounts) {
    ServerSnapshot snapshot = SnapshotWithFirmware(
        {FirmwareMember("E", R"({"Id":"E","Updateable":true,"RelatedItem":["/n/1"]})")});
    snapshot.pcie_devices = {MakeResource("/p/switch", "{" + With(kByVendorId, kLinksDown) + "}")};
    snapshot.network_adapters = {
        MakeResource("/n/1", R"({"Controllers":[{"Links":{"PCIeDevices":["/p/card"]}}]})")};
    EXPECT_TRUE(HasUpdatableDeviceBehindBroadcomSwitch(snapshot));
}

TEST(BroadcomSwitchReaderTest, EmptySnapshotIsFalse) {
    EXPECT_FALSE(HasUpdatableDeviceBehindBroadcomSwitch({}));
}

}  // namespace
}  // namespace Vantix::redfish
