#include "platform/pci/pci_slots.h"

#include <gtest/gtest.h>

#include <string>

#include "pci_tree.h"
#include "support/smbios_builder.h"

namespace {

using test_support::AnSmbiosTable;
using test_support::PciTree;
using Vantix::pci::NumberOfSlot;
using Vantix::pci::ParsePciAddress;
using Vantix::pci::PciDevice;
using Vantix::pci::PciSlots;
using Vantix::transport::SmbiosSlot;
using Vantix::transport::SystemRoot;

constexpr const char* kTable = "/sys/firmware/dmi/tables/DMI";

PciDevice ADevice(const std::string& address, const std::string& parent = "") {
    PciDevice device;
    device.address = *ParsePciAddress(address);
    device.path = PciTree::Folder(address, parent);
    device.ids.class_code = 0x020000;
    return device;
}

std::string SlotIn(const PciTree& tree, const PciDevice& device) {
    return PciSlots(SystemRoot(tree.Root())).SlotOf(device);
}

SmbiosSlot Designated(const std::string& designation, int id) {
    SmbiosSlot slot;
    slot.designation = designation;
    slot.id = static_cast<std::uint16_t>(id);
    return slot;
}

TEST(PciSlotsTest, AllFunctionsOfACardShareItsSlot) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:00.0")), "3");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:00.7")), "3");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:01.0")), "");
    EXPECT_EQ(SlotIn(tree, ADevice("0001:3b:00.0")), "");
}

TEST(PciSlotsTest, DevicesBehindABridgeOfTheCardShareItsSlot) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00");
    const std::string bridge = PciTree::Folder("0000:3b:00.0", PciTree::Folder("0000:3a:00.0"));
    const std::string port = PciTree::Folder("0000:3c:08.0", bridge);
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3d:00.1", port)), "3");
}

TEST(PciSlotsTest, PathsAndBareAddressesLeadToASlot) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00").Slot("0-1", "0000:3c:00");
    const SystemRoot root(tree.Root());
    const PciSlots slots(root);
    EXPECT_EQ(slots.SlotAt("/sys/devices/pci0000:3a/0000:3b:00.0/nvme/nvme0"), "3");
    EXPECT_EQ(slots.SlotAt("0000:3b:00.0"), "3");
    EXPECT_EQ(slots.SlotAt("/sys/devices/pci0000:3a/0000:3c:00.0"), "");
    EXPECT_EQ(slots.SlotAt("/sys/devices/virtual"), "");
    EXPECT_EQ(slots.SlotAt("///"), "");
}

TEST(PciSlotsTest, NearestSlotDecides) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00").Slot("12", "0000:3d:00");
    const std::string bridge = PciTree::Folder("0000:3b:00.0");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3d:00.0", bridge)), "12");
}

TEST(PciSlotsTest, SlotOfAWholeBusHoldsEveryDeviceOfIt) {
    PciTree tree;
    tree.Slot("7", "0000:3b");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:04.0")), "7");
}

TEST(PciSlotsTest, DomainsBeyondSixteenBitsHaveSlotsToo) {
    PciTree tree;
    tree.Slot("9", "10000:e1:00");
    EXPECT_EQ(SlotIn(tree, ADevice("10000:e1:00.0")), "9");
}

TEST(PciSlotsTest, SlotsWithoutNumberAreNone) {
    PciTree tree;
    tree.Slot("0", "0000:3b:00").Slot("0-1", "0000:3c:00").Slot("00", "0000:3d:00");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:00.0")), "");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3c:00.0")), "");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3d:00.0")), "00");
}

TEST(PciSlotsTest, DamagedAddressesAreLeftOut) {
    PciTree tree;
    tree.Slot("3", "").Slot("4", "../../x").Slot("5", "0000:3b:00.0").Slot("6", ":::");
    tree.Folder("/sys/bus/pci/slots/7");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:00.0")), "");
}

TEST(PciSlotsTest, DeviceOfTheBoardHasNone) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00");
    PciDevice device = ADevice("0000:3b:00.0");
    device.is_on_board = true;
    EXPECT_EQ(SlotIn(tree, device), "");
}

TEST(PciSlotsTest, SmbiosSlotCountsWhereTheKernelKnowsNone) {
    PciTree tree;
    tree.Slot("3", "0000:3b:00");
    tree.File(kTable, AnSmbiosTable()
                          .Slot("PCIe Slot 9", 9, 0, 0x3b, 0)
                          .Slot("PCIe Slot 4", 4, 0, 0x5e, 0)
                          .Bytes());
    EXPECT_EQ(SlotIn(tree, ADevice("0000:3b:00.0")), "3");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:5e:00.1")), "4");
}

TEST(PciSlotsTest, SmbiosSlotNamedByItsPortHoldsWhatIsBelowNotThePort) {
    PciTree tree;
    tree.File(kTable, AnSmbiosTable().Slot("PCIe Slot 4", 4, 0, 0, 0x1c << 3).Bytes());
    PciDevice port = ADevice("0000:00:1c.0");
    port.ids.class_code = 0x060400;
    EXPECT_EQ(SlotIn(tree, port), "");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:5e:00.0", port.path)), "4");
}

TEST(PciSlotsTest, SmbiosSlotsWithoutAddressAreLeftOut) {
    PciTree tree;
    tree.File(kTable, AnSmbiosTable()
                          .Slot("PCIe Slot 1", 1, 0, 0, 0)
                          .Slot("PCIe Slot 2", 2, 0, 0xff, 0xff)
                          .Bytes());
    EXPECT_EQ(SlotIn(tree, ADevice("0000:00:00.0")), "");
    EXPECT_EQ(SlotIn(tree, ADevice("0000:ff:1f.7")), "");
}

TEST(PciSlotsTest, NumberIsTheOnePrintedBesideTheSlot) {
    EXPECT_EQ(NumberOfSlot(Designated("PCIe Slot 3", 7)), "3");
    EXPECT_EQ(NumberOfSlot(Designated("CPU1 SLOT02 PCI-E 3.0 X16", 7)), "2");
    EXPECT_EQ(NumberOfSlot(Designated("PCI_SLOT_10", 7)), "10");
    EXPECT_EQ(NumberOfSlot(Designated("PCIE Slot #5 x8", 7)), "5");
}

TEST(PciSlotsTest, IdCountsWhereTheDesignationHasNoNumber) {
    EXPECT_EQ(NumberOfSlot(Designated("J6B1", 7)), "7");
    EXPECT_EQ(NumberOfSlot(Designated("Slot A", 7)), "7");
    EXPECT_EQ(NumberOfSlot(Designated("Slot 0", 0)), "");
    EXPECT_EQ(NumberOfSlot(SmbiosSlot()), "");
}

}  // namespace
