// The two operations through which scans ask for disks.
#include "platform/disk/disk_inventory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/disk/disk.h"
#include "platform/raid/raid.h"
#include "platform/system_info/system_info.h"
#include "support/system_tree.h"

namespace {

using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::ConnectOption;
using Vantix::VantixConnection::SourceState;
using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;

class DiskInventoryTest : public testing::Test {
  protected:
    DiskInventoryTest() {
        tree_.File("/sys/class/nvme/nvme0/model", "Example NVMe\n")
            .File("/sys/class/nvme/nvme0/firmware_rev", "2.0.1\n");
        option_.system_root = tree_.Root();
    }
    static int Disks(Identities& list) {
        return Vantix::IBDISKSW::IBDiskSoftwareIdentity().GetDiskSoftwareIdentity(list);
    }

    test_support::SystemTree tree_;
    ConnectOption option_;
    Identities list_;
};

TEST_F(DiskInventoryTest, BothOperationsTellTheDisks) {
    const ActiveRun run(option_);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    ASSERT_EQ(list_.size(), 1u);
    EXPECT_EQ(list_[0].Name, "Example NVMe");
    Identities others;
    EXPECT_EQ(Disks(others), SUCCEED);
    ASSERT_EQ(others.size(), 1u);
    EXPECT_EQ(others[0].VersionString, "2.0.1");
}

TEST_F(DiskInventoryTest, ListIsAppendedTo) {
    const ActiveRun run(option_);
    list_.resize(2);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_EQ(list_.size(), 3u);
}

TEST_F(DiskInventoryTest, DiskThatTheInventoryToldIsNotToldAgainInTheSameRun) {
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    EXPECT_EQ(list_.size(), 1u);
}

TEST_F(DiskInventoryTest, AnotherRunStartsAnew) {
    {
        const ActiveRun run(option_);
        EXPECT_EQ(Disks(list_), SUCCEED);
    }
    ConnectOption second;
    second.system_root = tree_.Root();
    const ActiveRun run(second);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    EXPECT_EQ(list_.size(), 2u);
}

TEST_F(DiskInventoryTest, MachineWithoutDiskIsASuccess) {
    test_support::SystemTree empty;
    empty.Folder("/sys");
    option_.system_root = empty.Root();
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    EXPECT_TRUE(list_.empty());
}

TEST_F(DiskInventoryTest, NodesOfThisMachineAreNotAskedForARecordedOne) {
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_TRUE(option_.run->Sources().empty());
    EXPECT_TRUE(option_.run->Notices().empty());
}

class UnaskedRaidTest : public DiskInventoryTest {
  protected:
    void AddController(const std::string& class_code, const std::string& driver) {
        const std::string folder = "/sys/bus/pci/devices/0000:d9:00.0/";
        tree_.File(folder + "class", class_code + "\n")
            .File(folder + "vendor", "0x1000\n")
            .File(folder + "device", "0x0060\n")
            .Link(folder + "driver", "../../drivers/" + driver);
    }
};

TEST_F(UnaskedRaidTest, ControllerThatKeepsItsDisksIsToldAsNotAsked) {
    AddController("0x010400", "exraid");
    const ActiveRun run(option_);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    const auto sources = option_.run->Sources();
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].source, "RAID disks");
    EXPECT_EQ(sources[0].state, SourceState::kNotTried);
    EXPECT_THAT(sources[0].issues,
                testing::ElementsAre(
                    "RAID controller 1000:0060 at 0000:d9:00.0 (driver exraid): not asked"));
}

TEST_F(UnaskedRaidTest, ScanIsNotPartialForIt) {
    AddController("0x010400", "exraid");
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_EQ(option_.run->Sources().size(), 1u);
    EXPECT_FALSE(option_.run->IsPartial());
}

TEST_F(UnaskedRaidTest, WhatTheRaidScanToldOfItStands) {
    AddController("0x010400", "exraid");
    const ActiveRun run(option_);
    std::vector<Vantix::ARCCONF::RaidController> controllers;
    EXPECT_EQ(Vantix::ARCCONF::ArcconfConfig().GetControllerList(controllers, 2), SUCCEED);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), SUCCEED);
    const auto sources = option_.run->Sources();
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].state, SourceState::kFailed);
    EXPECT_TRUE(option_.run->IsPartial());
}

TEST_F(UnaskedRaidTest, ControllerWhoseDriverShowsEachDiskIsNotMentioned) {
    AddController("0x010400", "ahci");
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_TRUE(option_.run->Sources().empty());
}

TEST_F(UnaskedRaidTest, HostAdapterIsNotMentioned) {
    AddController("0x010700", "exsas");
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
    EXPECT_TRUE(option_.run->Sources().empty());
}

TEST_F(DiskInventoryTest, InterruptionIsTold) {
    option_.run->Cancel();
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), INTERRUPTED_BY_USER);
    EXPECT_EQ(SystemInfoScan::GetDiskDriverSoftwareIdentity(list_), INTERRUPTED_BY_USER);
}

TEST_F(DiskInventoryTest, ThisMachineIsReadWithoutHarm) {
    option_.system_root = "/";
    const ActiveRun run(option_);
    EXPECT_EQ(Disks(list_), SUCCEED);
}

}  // namespace
