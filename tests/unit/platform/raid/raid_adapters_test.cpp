#include "platform/raid/raid_adapters.h"

#include <gtest/gtest.h>

#include "pci_tree.h"
#include "support/present_device_builder.h"

namespace Vantix::raid {
namespace {

using test_support::SystemTree;
using transport::SystemRoot;

TEST(RaidAdaptersTest, MachineWithoutPciListsNoBus) {
    const SystemTree tree;
    EXPECT_FALSE(FindRaidAdapters(SystemRoot(tree.Root())).is_bus_listed);
}

TEST(RaidAdaptersTest, OtherDevicesAreNoControllers) {
    SystemTree tree;
    AddNetworkCard(tree);
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    EXPECT_TRUE(adapters.is_bus_listed);
    EXPECT_TRUE(adapters.list.empty());
}

TEST(RaidAdaptersTest, ControllerOfTheServedMakerIsFound) {
    SystemTree tree;
    AddServedController(tree);
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_EQ(adapters.list[0].address, "0000:d9:00.0");
    EXPECT_EQ(adapters.list[0].ids, "9005:028f");
    EXPECT_EQ(adapters.list[0].driver, "smartpqi");
    EXPECT_TRUE(adapters.list[0].is_served);
    EXPECT_TRUE(adapters.list[0].hides_disks);
}

TEST(RaidAdaptersTest, HostAdapterOfTheServedMakerMayHideDisks) {
    SystemTree tree;
    AddServedHostAdapter(tree);
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_TRUE(adapters.list[0].is_served);
    EXPECT_FALSE(adapters.list[0].hides_disks);
}

TEST(RaidAdaptersTest, RaidControllerOfAnotherMakerIsFoundAndNotServed) {
    SystemTree tree;
    AddOtherMakersController(tree);
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_FALSE(adapters.list[0].is_served);
    EXPECT_TRUE(adapters.list[0].hides_disks);
}

TEST(RaidAdaptersTest, HostAdapterOfAnotherMakerShowsItsDisks) {
    SystemTree tree;
    AddPciFunction(tree, "0000:01:00.0", "0x010700", "0x1000", "0x0097", "mpt3sas");
    EXPECT_TRUE(FindRaidAdapters(SystemRoot(tree.Root())).list.empty());
}

TEST(RaidAdaptersTest, OldScsiAdapterOfTheServedMakerShowsItsDisks) {
    SystemTree tree;
    AddPciFunction(tree, "0000:01:00.0", "0x010000", "0x9005", "0x0080", "aic7xxx");
    EXPECT_TRUE(FindRaidAdapters(SystemRoot(tree.Root())).list.empty());
}

class RaidInNameOnlyTest : public testing::TestWithParam<const char*> {};

TEST_P(RaidInNameOnlyTest, IsLeftOut) {
    SystemTree tree;
    AddPciFunction(tree, "0000:00:1f.2", "0x010400", "0x8086", "0x2822", GetParam());
    EXPECT_TRUE(FindRaidAdapters(SystemRoot(tree.Root())).list.empty());
}

INSTANTIATE_TEST_SUITE_P(Drivers, RaidInNameOnlyTest,
                         testing::Values("ahci", "vmd", "ata_piix", "sata_sil", "pata_hpt37x"));

TEST(RaidAdaptersTest, ControllerWithoutDriverIsFound) {
    SystemTree tree;
    AddPciFunction(tree, "0000:01:00.0", "0x010400", "0x1000", "0x0060");
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_EQ(adapters.list[0].driver, "");
}

TEST(RaidAdaptersTest, VirtualFunctionIsNoController) {
    SystemTree tree;
    AddOtherMakersController(tree);
    AddPciFunction(tree, "0000:01:00.4", "0x010400", "0x1000", "0x0060");
    tree.Link("/sys/devices/pci0000:00/0000:01:00.4/physfn", "../0000:01:00.0");
    EXPECT_EQ(FindRaidAdapters(SystemRoot(tree.Root())).list.size(), 1U);
}

TEST(RaidAdaptersTest, ControllersComeInTheOrderOfTheirAddresses) {
    SystemTree tree;
    AddServedController(tree, "0000:d9:00.0");
    AddServedController(tree, "0000:5e:00.0");
    const RaidAdapters adapters = FindRaidAdapters(SystemRoot(tree.Root()));
    ASSERT_EQ(adapters.list.size(), 2U);
    EXPECT_EQ(adapters.list[0].address, "0000:5e:00.0");
}

TEST(RaidAdaptersTest, EmptyAndBinaryAttributesAreSurvived) {
    SystemTree tree;
    AddPciFunction(tree, "0000:01:00.0", "", "", "");
    AddPciFunction(tree, "0000:02:00.0", std::string("0x0104\0\xff", 8), "0x", "\x01");
    EXPECT_EQ(FindRaidAdapters(SystemRoot(tree.Root())).list.size(), 1U);
}

using test_support::APresentDevice;

const char* const kServed = "VEN_9005&DEV_028F&SUBSYS_08059005&REV_01";

TEST(RaidAdaptersAmongPresentDevicesTest, ControllerOfTheServedMakerIsFound) {
    const RaidAdapters adapters = RaidAdaptersAmong(
        {APresentDevice("PCI", kServed).Class("010400").Driver("SmartPqi", "1").At(0xD9, 0, 0)});
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_EQ(adapters.list[0].address, "0000:d9:00.0");
    EXPECT_EQ(adapters.list[0].ids, "9005:028f");
    EXPECT_EQ(adapters.list[0].driver, "SmartPqi");
    EXPECT_TRUE(adapters.list[0].is_served);
    EXPECT_TRUE(adapters.list[0].hides_disks);
}

TEST(RaidAdaptersAmongPresentDevicesTest, WithoutDriverNoneIsNamed) {
    const RaidAdapters adapters = RaidAdaptersAmong(
        {APresentDevice("PCI", kServed).Class("010400").Driver("left", "1").Problem(28)});
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_EQ(adapters.list[0].driver, "");
}

TEST(RaidAdaptersAmongPresentDevicesTest, RaidInNameOnlyIsLeftOut) {
    const RaidAdapters adapters = RaidAdaptersAmong(
        {APresentDevice("PCI", "VEN_8086&DEV_2822").Class("010400").Driver("StorAHCI", "1")});
    EXPECT_TRUE(adapters.is_bus_listed);
    EXPECT_TRUE(adapters.list.empty());
}

TEST(RaidAdaptersAmongPresentDevicesTest, OtherDevicesAreNoControllers) {
    const RaidAdapters adapters =
        RaidAdaptersAmong({APresentDevice("PCI", "VEN_8086&DEV_10D3").Class("020000"),
                           APresentDevice("USB", "VEN_9005&DEV_028F").Class("010400")});
    EXPECT_TRUE(adapters.is_bus_listed);
    EXPECT_TRUE(adapters.list.empty());
}

TEST(RaidAdaptersAmongPresentDevicesTest, MachineWithoutPciListsNoBus) {
    EXPECT_FALSE(RaidAdaptersAmong({}).is_bus_listed);
    EXPECT_FALSE(RaidAdaptersAmong({APresentDevice("USB", "VID_1D0F&PID_0001")}).is_bus_listed);
}

}  // namespace
}  // namespace Vantix::raid
