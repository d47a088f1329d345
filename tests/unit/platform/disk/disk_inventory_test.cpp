// The two operations through which scans ask for disks.
#include "platform/disk/disk_inventory.h"

#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/disk/disk.h"
#include "platform/system_info/system_info.h"
#include "support/system_tree.h"

namespace {

using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::ConnectOption;
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
