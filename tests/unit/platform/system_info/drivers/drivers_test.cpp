// The drivers of a recorded machine as a scan asks for them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/result/result_codes.h"
#include "driver_tree.h"
#include "platform/connection/connection.h"
#include "platform/system_info/system_info.h"

namespace Vantix {
namespace {

using test_support::ModuleFileFor;
using testing::ElementsAre;
using testing::IsEmpty;
using VantixConnection::SourceState;

class DriversTest : public testing::Test {
  protected:
    DriversTest() {
        option_.system_root = tree_.Root();
        tree_.Kernel("6.1.0-fake");
    }

    int Read() {
        const VantixConnection::ActiveRun run(option_);
        return SystemInfoScan::GetDriverData(drivers_);
    }
    [[nodiscard]] std::vector<std::string> Identifiers() const {
        std::vector<std::string> identifiers;
        for (const DriverData& driver : drivers_) identifiers.push_back(driver.Identifier);
        return identifiers;
    }

    DriverTree tree_;
    VantixConnection::ConnectOption option_;
    std::vector<DriverData> drivers_;
};

TEST_F(DriversTest, ModuleWithAVersionOfItsOwnShowsIt) {
    tree_.Device("pci", "0000:03:00.0", "fakenet").Of("pci", "fakenet", "fakenet");
    tree_.File("/sys/module/fakenet/version", "5.6.7-k\n");
    EXPECT_EQ(Read(), 0);
    ASSERT_EQ(drivers_.size(), 1U);
    EXPECT_EQ(drivers_[0].Identifier, "fakenet");
    EXPECT_EQ(drivers_[0].Version, "5.6.7-k");
    EXPECT_EQ(drivers_[0].DevicePresent, 1);
}

TEST_F(DriversTest, DriverOfTheKernelsSourcesHasItsRelease) {
    tree_.Device("pci", "0000:03:00.0", "fakenet").Of("pci", "fakenet", "fakenet");
    tree_.Device("pci", "0000:04:00.0", "builtin");
    EXPECT_EQ(Read(), 0);
    ASSERT_EQ(drivers_.size(), 2U);
    EXPECT_EQ(drivers_[0].Version, "6.1.0-fake");
    EXPECT_EQ(drivers_[1].Version, "6.1.0-fake");
}

TEST_F(DriversTest, DescriptionAndSourceVersionAreJoined) {
    tree_.Device("pci", "0000:03:00.0", "fakenet").Of("pci", "fakenet", "fakenet");
    tree_.File("/sys/module/fakenet/srcversion", "1A2B3C\n");
    tree_.File("/lib/modules/6.1.0-fake/modules.dep", "kernel/fakenet.ko:\n");
    tree_.File("/lib/modules/6.1.0-fake/kernel/fakenet.ko", ModuleFileFor("Fake Ethernet"));
    EXPECT_EQ(Read(), 0);
    ASSERT_EQ(drivers_.size(), 1U);
    EXPECT_EQ(drivers_[0].Description, "Fake Ethernet (source version 1A2B3C)");
}

TEST_F(DriversTest, OrderIsByNameAndMissingDriversComeLast) {
    tree_.Pci("0000:02:00.0", "0x020000", "0x8086", "0x1521");
    tree_.Device("usb", "1-1", "zeta").Device("pci", "0000:05:00.0", "fake10");
    tree_.Device("pci", "0000:04:00.0", "fake9");
    EXPECT_EQ(Read(), 0);
    EXPECT_THAT(Identifiers(), ElementsAre("fake9", "fake10", "zeta", "NoDriver#PCI_80861521"));
}

TEST_F(DriversTest, AdaptersAreNamedWithTheirIdsAndCountedByKind) {
    tree_.Pci("0000:03:00.0", "0x020000", "0x8086", "0x1521", "fakenet");
    tree_.Pci("0000:03:00.1", "0x020000", "0x8086", "0x1521", "fakenet");
    tree_.Pci("0000:04:00.0", "0x020000", "0x8086", "0x1572", "fakenet");
    EXPECT_EQ(Read(), 0);
    ASSERT_THAT(Identifiers(), ElementsAre("fakenet_80861521", "fakenet_80861572"));
    EXPECT_EQ(drivers_[0].DevicePresent, 2);
    EXPECT_EQ(drivers_[1].DevicePresent, 1);
}

TEST_F(DriversTest, OtherDevicesOfAnAdaptersDriverHaveARecordOfTheirOwn) {
    tree_.Pci("0000:03:00.0", "0x0c0330", "0x8086", "0x1521", "fake").Of("pci", "fake", "fake");
    tree_.Device("platform", "fake.0", "fake").Of("platform", "fake", "fake");
    tree_.File("/sys/module/fake/version", "1.2\n");
    EXPECT_EQ(Read(), 0);
    ASSERT_THAT(Identifiers(), ElementsAre("fake", "fake_80861521"));
    EXPECT_EQ(drivers_[0].DevicePresent, 1);
    EXPECT_EQ(drivers_[1].DevicePresent, 1);
    EXPECT_EQ(drivers_[1].Version, "1.2");
}

TEST_F(DriversTest, DriverOfBridgesHasItsBareName) {
    tree_.Pci("0000:00:1c.0", "0x060400", "0x8086", "0x2030", "fakeport");
    EXPECT_EQ(Read(), 0);
    EXPECT_THAT(Identifiers(), ElementsAre("fakeport"));
}

TEST_F(DriversTest, AdapterWithUnusableIdsHasTheBareNameOfItsDriver) {
    tree_.Pci("0000:03:00.0", "0x020000", "0x8086", "what", "fakenet");
    tree_.Pci("0000:04:00.0", "0x020000", "0x8086", "0x15", "fakenet");
    EXPECT_EQ(Read(), 0);
    ASSERT_THAT(Identifiers(), ElementsAre("fakenet"));
    EXPECT_EQ(drivers_[0].DevicePresent, 2);
}

TEST_F(DriversTest, ListIsAppendedTo) {
    drivers_.push_back({"first", "", "", 0});
    tree_.Device("pci", "0000:04:00.0", "second");
    EXPECT_EQ(Read(), 0);
    EXPECT_THAT(Identifiers(), ElementsAre("first", "second"));
}

TEST_F(DriversTest, SystemWithoutBusesIsAFailureThatIsReported) {
    EXPECT_EQ(Read(), READ_FILE_FAILED);
    EXPECT_THAT(drivers_, IsEmpty());
    EXPECT_TRUE(option_.run->IsPartial());
}

TEST_F(DriversTest, SystemWithoutDriversIsASuccess) {
    tree_.Folder("/sys/bus/pci/devices");
    EXPECT_EQ(Read(), 0);
    EXPECT_THAT(drivers_, IsEmpty());
}

TEST_F(DriversTest, SourceCountsWhatWasRead) {
    tree_.Device("pci", "0000:04:00.0", "a").Pci("0000:02:00.0", "0x020000", "0x8086", "0x1521");
    EXPECT_EQ(Read(), 0);
    const auto sources = option_.run->Sources();
    const auto drivers = std::find_if(sources.begin(), sources.end(), [](const auto& source) {
        return source.source == "drivers";
    });
    ASSERT_NE(drivers, sources.end());
    EXPECT_EQ(drivers->state, SourceState::kComplete);
    EXPECT_EQ(drivers->items_read, 2);
}

TEST_F(DriversTest, UnknownKernelReleaseLeavesTheVersionEmpty) {
    tree_.File("/proc/sys/kernel/osrelease", "");
    tree_.Device("pci", "0000:04:00.0", "a");
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(drivers_.at(0).Version, "");
}

TEST_F(DriversTest, BadBytesInNamesAndVersionsAreCleaned) {
    tree_
        .Device("pci", "0000:03:00.0",
                "fa\xff"
                "ke")
        .Of("pci",
            "fa\xff"
            "ke",
            "fa\xff"
            "ke");
    tree_.File(
        "/sys/module/fa\xff"
        "ke/version",
        std::string("1.0\x01\n2\0rest", 10));
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(drivers_.at(0).Identifier, "fa\xEF\xBF\xBDke");
    EXPECT_EQ(drivers_.at(0).Version, "1.0  2");
}

}  // namespace
}  // namespace Vantix
