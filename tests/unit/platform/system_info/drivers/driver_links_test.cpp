#include "platform/system_info/driver_links.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver_tree.h"

namespace Vantix::system_info {
namespace {

using testing::IsEmpty;
using transport::SystemRoot;

DriverLinks Read(const DriverTree& tree) {
    return ReadDriverLinks(SystemRoot(tree.Root()));
}

TEST(DriverLinksTest, SystemWithoutBusesShowsNothing) {
    const DriverTree tree;
    EXPECT_FALSE(Read(tree).has_buses);
}

TEST(DriverLinksTest, DriverIsNamedAfterItsModuleAndCountsItsDevices) {
    DriverTree tree;
    tree.Device("usb", "1-1:1.0", "fake-storage").Device("usb", "1-2:1.0", "fake-storage");
    tree.Of("usb", "fake-storage", "fake_storage");
    const DriverLinks links = Read(tree);
    ASSERT_EQ(links.drivers.count("fake_storage"), 1U);
    EXPECT_EQ(links.drivers.at("fake_storage").devices, 2);
    EXPECT_EQ(links.drivers.at("fake_storage").module, "fake_storage");
}

TEST(DriverLinksTest, BuiltInDriverHasItsOwnName) {
    DriverTree tree;
    tree.Device("pci", "0000:00:01.0", "fakeport");
    const DriverLinks links = Read(tree);
    ASSERT_EQ(links.drivers.count("fakeport"), 1U);
    EXPECT_EQ(links.drivers.at("fakeport").module, "");
    EXPECT_EQ(links.drivers.at("fakeport").devices, 1);
}

TEST(DriverLinksTest, ModuleWithDriversOnTwoBusesIsOneDriver) {
    DriverTree tree;
    tree.Device("pci", "0000:00:01.0", "fake_si").Of("pci", "fake_si", "fake_si");
    tree.Device("platform", "fake.0", "fake-si").Of("platform", "fake-si", "fake_si");
    EXPECT_EQ(Read(tree).drivers.size(), 1U);
    EXPECT_EQ(Read(tree).drivers.at("fake_si").devices, 2);
}

TEST(DriverLinksTest, LoadedModuleWithoutDeviceServesNone) {
    DriverTree tree;
    tree.Of("pci", "idle", "idle").Loaded("idle");
    const DriverLinks links = Read(tree);
    ASSERT_EQ(links.drivers.count("idle"), 1U);
    EXPECT_EQ(links.drivers.at("idle").devices, 0);
}

TEST(DriverLinksTest, BuiltInDriverWithoutDeviceIsLeftOut) {
    DriverTree tree;
    tree.Of("pci", "idle", "idle");
    tree.Folder("/sys/bus/pci/drivers/bare");
    EXPECT_THAT(Read(tree).drivers, IsEmpty());
}

TEST(DriverLinksTest, BookkeepingOfTheKernelIsLeftOut) {
    DriverTree tree;
    tree.Device("cpu", "cpu0", "processor").Device("acpi", "PNP0C0C:00", "button");
    EXPECT_THAT(Read(tree).drivers, IsEmpty());
}

TEST(DriverLinksTest, UnknownBusIsRead) {
    DriverTree tree;
    tree.Device("fakebus", "f0", "fakedrv");
    EXPECT_EQ(Read(tree).drivers.count("fakedrv"), 1U);
}

TEST(DriverLinksTest, PciDeviceWithoutDriverIsTold) {
    DriverTree tree;
    tree.Pci("0000:03:00.0", "0x020000", "0x8086", "0x1521");
    const DriverLinks links = Read(tree);
    ASSERT_EQ(links.driverless.size(), 1U);
    EXPECT_EQ(links.driverless[0].address, "0000:03:00.0");
    EXPECT_EQ(links.driverless[0].ids, "80861521");
    EXPECT_EQ(links.driverless[0].class_code, "020000");
}

TEST(DriverLinksTest, PciDeviceWithDriverIsNotTold) {
    DriverTree tree;
    tree.Pci("0000:03:00.0", "0x020000", "0x8086", "0x1521", "fakenet");
    EXPECT_THAT(Read(tree).driverless, IsEmpty());
}

TEST(DriverLinksTest, OtherBusesHaveIdleDevicesByNature) {
    DriverTree tree;
    tree.Device("platform", "fake.0");
    EXPECT_THAT(Read(tree).driverless, IsEmpty());
}

TEST(DriverLinksTest, VirtualFunctionMayBeLeftAlone) {
    DriverTree tree;
    tree.Pci("0000:03:10.0", "0x020000", "0x8086", "0x1520");
    tree.Link("/sys/devices/pci/0000:03:10.0/physfn", "../0000:03:00.0");
    EXPECT_THAT(Read(tree).driverless, IsEmpty());
}

TEST(DriverLinksTest, DeviceWithoutReadableIdsIsLeftOut) {
    DriverTree tree;
    tree.Pci("0000:03:00.0", "0x020000", "", "");
    tree.Pci("0000:04:00.0", "", "0x8086", "0x1521");
    EXPECT_THAT(Read(tree).driverless, IsEmpty());
}

TEST(DriverLinksTest, CircularAndDanglingLinksAreSurvived) {
    DriverTree tree;
    tree.Link("/sys/bus/pci/devices/loop", "loop");
    tree.Link("/sys/bus/pci/devices/gone", "../../../devices/gone");
    tree.Device("pci", "0000:00:01.0");
    tree.Link("/sys/devices/pci/0000:00:01.0/driver", "../../../bus/pci/drivers/missing");
    EXPECT_EQ(Read(tree).drivers.at("missing").devices, 1);
}

struct ClassCase {
    const char* class_code;
    bool wants;
};

class WantsDriverTest : public testing::TestWithParam<ClassCase> {};

TEST_P(WantsDriverTest, DependsOnTheClass) {
    EXPECT_EQ(WantsDriver(GetParam().class_code), GetParam().wants);
}

INSTANTIATE_TEST_SUITE_P(Classes, WantsDriverTest,
                         testing::Values(ClassCase{"010400", true}, ClassCase{"020000", true},
                                         ClassCase{"030000", true}, ClassCase{"0c0330", true},
                                         ClassCase{"0b4000", true}, ClassCase{"120000", true},
                                         ClassCase{"ff0000", true}, ClassCase{"060000", false},
                                         ClassCase{"060400", false}, ClassCase{"050000", false},
                                         ClassCase{"088000", false}, ClassCase{"0b3000", false},
                                         ClassCase{"110100", false}, ClassCase{"130000", false},
                                         ClassCase{"", false}, ClassCase{"0", false}));

}  // namespace
}  // namespace Vantix::system_info
