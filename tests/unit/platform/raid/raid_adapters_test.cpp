#include "platform/raid/raid_adapters.h"

#include <gtest/gtest.h>

#include "pci_tree.h"

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

}  // namespace
}  // namespace Vantix::raid
