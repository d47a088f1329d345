#include "platform/disk/disk_places.h"

#include <gtest/gtest.h>

#include "support/smbios_builder.h"
#include "support/system_tree.h"

namespace Vantix::disk {
namespace {

using redfish::Slot;
using test_support::SystemTree;
using transport::SystemRoot;

Slot BayOf(const SystemTree& tree, const std::string& folder = "/sys/none",
           const std::string& device_path = "") {
    const SystemRoot root(tree.Root());
    return DiskPlaces(root).OfScsi("0:0:1:0", folder, device_path);
}

Slot PciSlotOf(const SystemTree& tree, const std::string& device_path) {
    const SystemRoot root(tree.Root());
    return DiskPlaces(root).OfPci(device_path);
}

const Slot kNowhere;

TEST(DiskPlacesTest, EnclosureTellsTheBayByItsSlotAttribute) {
    SystemTree tree;
    tree.File("/sys/class/enclosure/0:0:8:0/ArrayDevice07/slot", "4\n")
        .Link("/sys/class/enclosure/0:0:8:0/ArrayDevice07/device", "../../../target0:0:1/0:0:1:0");
    EXPECT_EQ(BayOf(tree), (Slot{"4", redfish::kSlotDriveBay}));
}

TEST(DiskPlacesTest, EnclosureWithoutSlotAttributeTellsTheBayByItsName) {
    SystemTree tree;
    tree.Link("/sys/class/enclosure/0:0:8:0/Slot 03/device", "../../../target0:0:1/0:0:1:0");
    EXPECT_EQ(BayOf(tree), (Slot{"3", redfish::kSlotDriveBay}));
}

TEST(DiskPlacesTest, NegativeSlotAttributeIsNotABay) {
    SystemTree tree;
    tree.File("/sys/class/enclosure/0:0:8:0/Slot 03/slot", "-1\n")
        .Link("/sys/class/enclosure/0:0:8:0/Slot 03/device", "../../../target0:0:1/0:0:1:0");
    EXPECT_EQ(BayOf(tree).number, "3");
}

TEST(DiskPlacesTest, BayOfAnotherDiskIsNotTaken) {
    SystemTree tree;
    tree.File("/sys/class/enclosure/0:0:8:0/Slot 03/slot", "3\n")
        .Link("/sys/class/enclosure/0:0:8:0/Slot 03/device", "../../../target0:0:2/0:0:2:0");
    EXPECT_EQ(BayOf(tree), kNowhere);
}

TEST(DiskPlacesTest, FirstBayIsZero) {
    SystemTree tree;
    tree.File("/sys/class/enclosure/0:0:8:0/Slot 00/slot", "0\n")
        .Link("/sys/class/enclosure/0:0:8:0/Slot 00/device", "../../../target0:0:1/0:0:1:0");
    EXPECT_EQ(BayOf(tree), (Slot{"0", redfish::kSlotDriveBay}));
}

TEST(DiskPlacesTest, ControllerTellsTheBayWithoutEnclosure) {
    SystemTree tree;
    tree.File("/sys/d/path_info",
              "[0:0:1:0]  Direct-Access        PORT: 1I BOX: 1 BAY: 2  Active\n");
    EXPECT_EQ(BayOf(tree, "/sys/d"), (Slot{"2", redfish::kSlotDriveBay}));
}

TEST(DiskPlacesTest, SasLayerTellsTheBayOfItsEndDevice) {
    SystemTree tree;
    tree.File("/sys/class/sas_device/end_device-0:1/bay_identifier", "6\n");
    const std::string path = "/sys/devices/pci0000:00/host0/port-0:1/end_device-0:1/target0:0:1";
    EXPECT_EQ(BayOf(tree, "/sys/d", path), (Slot{"6", redfish::kSlotDriveBay}));
    EXPECT_EQ(BayOf(tree, "/sys/d", "/sys/devices/pci0000:00/host0"), kNowhere);
}

TEST(DiskPlacesTest, BayThatIsNoNumberIsNone) {
    SystemTree tree;
    tree.File("/sys/class/sas_device/end_device-0:1/bay_identifier", "unknown\n");
    EXPECT_EQ(BayOf(tree, "/sys/d", "/sys/host0/end_device-0:1"), kNowhere);
}

TEST(DiskPlacesTest, PathInfoWithoutBayHasNone) {
    EXPECT_EQ(BayOfPathInfo("[0:0:1:0]  Direct-Access  PORT: 1I Active"), "");
    EXPECT_EQ(BayOfPathInfo("BAY:"), "");
    EXPECT_EQ(BayOfPathInfo("BAY: x"), "");
    EXPECT_EQ(BayOfPathInfo("BAY: 123456789012"), "");
    EXPECT_EQ(BayOfPathInfo("BAY:12"), "12");
}

TEST(DiskPlacesTest, CardsSlotIsThatOfItsPciAddress) {
    SystemTree tree;
    tree.File("/sys/bus/pci/slots/11/address", "0000:03:00\n");
    EXPECT_EQ(PciSlotOf(tree, "/sys/devices/pci0000:00/0000:00:1c.0/0000:03:00.0"),
              (Slot{"11", redfish::kSlotPcie}));
    EXPECT_EQ(PciSlotOf(tree, "0000:03:00.0"), (Slot{"11", redfish::kSlotPcie}));
}

TEST(DiskPlacesTest, NearestSlotOnTheWayWins) {
    SystemTree tree;
    tree.File("/sys/bus/pci/slots/3/address", "0000:03:00\n")
        .File("/sys/bus/pci/slots/31/address", "0000:05:00\n");
    EXPECT_EQ(
        PciSlotOf(tree, "/sys/devices/pci0000:00/0000:03:00.0/0000:04:01.0/0000:05:00.0").number,
        "31");
    EXPECT_EQ(
        PciSlotOf(tree, "/sys/devices/pci0000:00/0000:03:00.0/0000:04:02.0/0000:06:00.0").number,
        "3");
}

TEST(DiskPlacesTest, CardsSlotIsThatOfTheSmbiosTableWhereTheKernelKnowsNone) {
    SystemTree tree;
    tree.File("/sys/firmware/dmi/tables/DMI",
              test_support::AnSmbiosTable().Slot("PCIe Slot 4", 9, 0, 0x5e, 0).Bytes());
    EXPECT_EQ(PciSlotOf(tree, "/sys/devices/pci0000:5d/0000:5d:00.0/0000:5e:00.0"),
              (Slot{"4", redfish::kSlotPcie}));
}

TEST(DiskPlacesTest, SlotWithoutNumberIsNone) {
    SystemTree tree;
    tree.File("/sys/bus/pci/slots/0-1/address", "0000:03:00\n");
    EXPECT_EQ(PciSlotOf(tree, "/sys/devices/pci0000:00/0000:00:1c.0/0000:03:00.0"), kNowhere);
}

TEST(DiskPlacesTest, DeviceOnNoSlotHasNone) {
    SystemTree tree;
    tree.File("/sys/bus/pci/slots/11/address", "0000:03:00\n").File("/sys/bus/pci/slots/12/x", "");
    EXPECT_EQ(PciSlotOf(tree, "/sys/devices/pci0000:00/0000:00:1c.0/0000:07:00.0"), kNowhere);
    EXPECT_EQ(PciSlotOf(tree, ""), kNowhere);
    EXPECT_EQ(PciSlotOf(tree, "///"), kNowhere);
}

}  // namespace
}  // namespace Vantix::disk
