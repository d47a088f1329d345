#include "platform/pci/pci_device.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pci_tree.h"

namespace {

using test_support::PciAttributes;
using test_support::PciTree;
using Vantix::pci::kNoClass;
using Vantix::pci::ListPciAddresses;
using Vantix::pci::ParsePciAddress;
using Vantix::pci::PciDevice;
using Vantix::pci::ReadPciDevice;
using Vantix::transport::SystemRoot;

constexpr const char* kAddress = "0000:3b:00.0";

std::optional<PciDevice> DeviceIn(const PciTree& tree) {
    return ReadPciDevice(SystemRoot(tree.Root()), *ParsePciAddress(kAddress));
}

TEST(PciDeviceTest, AttributesAreRead) {
    PciTree tree;
    const std::string folder = tree.Device(kAddress);
    const auto device = DeviceIn(tree);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->path, folder);
    EXPECT_EQ(device->ids.vendor, 0x1d0fU);
    EXPECT_EQ(device->ids.device, 0x1001U);
    EXPECT_EQ(device->ids.subsystem_vendor, 0x1d0fU);
    EXPECT_EQ(device->ids.subsystem_device, 0x2001U);
    EXPECT_EQ(device->ids.class_code, 0x020000U);
    EXPECT_FALSE(device->is_on_board);
}

TEST(PciDeviceTest, AddressesAreInOrderOfTheirNumbers) {
    PciTree tree;
    for (const char* address : {"10000:e1:00.0", "0000:10:00.0", "0000:0a:00.0", "0000:09:00.1",
                                "0000:09:00.0", "0001:00:00.0"}) {
        tree.Device(address);
    }
    tree.File("/sys/bus/pci/devices/README", "").File("/sys/bus/pci/devices/3b:00.0", "");
    std::vector<std::string> texts;
    for (const auto& address : ListPciAddresses(SystemRoot(tree.Root()))) {
        texts.push_back(address.Text());
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"0000:09:00.0", "0000:09:00.1", "0000:0a:00.0",
                                               "0000:10:00.0", "0001:00:00.0", "10000:e1:00.0"}));
}

TEST(PciDeviceTest, VirtualFunctionIsNone) {
    PciTree tree;
    tree.Link(tree.Device(kAddress) + "/physfn", "../0000:3b:00.1");
    EXPECT_FALSE(DeviceIn(tree));
}

class PciDeviceIdTest : public ::testing::TestWithParam<const char*> {};

TEST_P(PciDeviceIdTest, DeviceWithoutReadableIdIsNone) {
    PciTree tree;
    tree.Device(kAddress, {.vendor = GetParam()});
    EXPECT_FALSE(DeviceIn(tree));
}

INSTANTIATE_TEST_SUITE_P(Vendors, PciDeviceIdTest,
                         ::testing::Values("", "0xffff", "0x", "0x1d0f1", "-1", "0x1d 0f", "maker",
                                           "0x0x12"));

TEST(PciDeviceTest, OtherAttributesMayBeMissing) {
    PciTree tree;
    tree.Device(kAddress, {.subsystem_vendor = "", .subsystem_device = "", .class_code = ""});
    const auto device = DeviceIn(tree);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->ids.subsystem_vendor, 0U);
    EXPECT_EQ(device->ids.class_code, kNoClass);
}

TEST(PciDeviceTest, HugeAndBinaryAttributesCostOnlyThemselves) {
    PciTree tree;
    const std::string folder =
        tree.Device(kAddress, {.subsystem_vendor = "", .subsystem_device = "", .class_code = ""});
    tree.File(folder + "/class", std::string(200000, '0'));
    tree.File(folder + "/subsystem_device", std::string("\0\xff\x01", 3));
    tree.File(folder + "/label", std::string(100000, 'x'));
    const auto device = DeviceIn(tree);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->ids.subsystem_device, 0U);
    EXPECT_EQ(device->ids.class_code, kNoClass);
    EXPECT_LE(device->label.size(), 80U);
}

TEST(PciDeviceTest, EndlessAttributeCostsOnlyItself) {
    PciTree tree;
    const std::string folder = tree.Device(kAddress, {.subsystem_vendor = ""});
    tree.Pipe(folder + "/subsystem_vendor");
    const auto device = DeviceIn(tree);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->ids.subsystem_vendor, 0U);
    EXPECT_NE(device->ids.class_code, kNoClass);
}

TEST(PciDeviceTest, CircularAndDanglingLinksAreNone) {
    PciTree tree;
    tree.Link(std::string("/sys/bus/pci/devices/") + kAddress, kAddress);
    EXPECT_FALSE(DeviceIn(tree));
    PciTree other;
    other.Link(std::string("/sys/bus/pci/devices/") + kAddress, "../../../devices/nowhere");
    EXPECT_FALSE(DeviceIn(other));
}

TEST(PciDeviceTest, LinkOutOfTheTreeIsNotFollowed) {
    PciTree elsewhere;
    const std::string folder = elsewhere.Device(kAddress);
    PciTree tree;
    tree.Link(std::string("/sys/bus/pci/devices/") + kAddress, elsewhere.Root() + folder);
    EXPECT_FALSE(DeviceIn(tree));
}

TEST(PciDeviceTest, FirmwareSaysWhatSitsOnTheBoard) {
    PciTree numbered;
    const std::string folder = numbered.Device(kAddress);
    numbered.File(folder + "/label", "Embedded NIC 1\n").File(folder + "/index", "1\n");
    EXPECT_TRUE(DeviceIn(numbered)->is_on_board);
    EXPECT_EQ(DeviceIn(numbered)->label, "Embedded NIC 1");
    PciTree by_acpi;
    by_acpi.File(by_acpi.Device(kAddress) + "/acpi_index", "1\n");
    EXPECT_TRUE(DeviceIn(by_acpi)->is_on_board);
}

TEST(PciDeviceTest, AcpiNumberOfADeviceInASlotIsNotTheBoards) {
    PciTree tree;
    const std::string folder = tree.Device(kAddress);
    tree.File(folder + "/label", "SLOT 3\n").File(folder + "/acpi_index", "3\n");
    EXPECT_FALSE(DeviceIn(tree)->is_on_board);
}

}  // namespace
