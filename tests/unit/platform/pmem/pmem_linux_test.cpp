#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/pmem/pmem.h"
#include "support/system_tree.h"

namespace {

using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::ConnectOption;

class PmemLinuxTest : public testing::Test {
  protected:
    PmemLinuxTest() {
        tree_.Folder("/sys");
        option_.system_root = tree_.Root();
    }

    test_support::SystemTree tree_;
    ConnectOption option_;
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> list_;
};

TEST_F(PmemLinuxTest, ModulesOfTheRunsMachineAreAppended) {
    tree_.Folder("/sys/bus/nd/devices/nmem0").Folder("/sys/bus/nd/devices/nmem1");
    list_.resize(1);
    const ActiveRun run(option_);
    EXPECT_EQ(PmemManger().GetSoftwareIdentity(list_), SUCCEED);
    ASSERT_EQ(list_.size(), 3u);
    EXPECT_EQ(list_[2].InstanceID, "nmem1");
}

TEST_F(PmemLinuxTest, MachineWithoutModulesIsASuccess) {
    const ActiveRun run(option_);
    EXPECT_EQ(PmemManger().GetSoftwareIdentity(list_), SUCCEED);
    EXPECT_TRUE(list_.empty());
}

TEST_F(PmemLinuxTest, InterruptionIsTold) {
    option_.run->Cancel();
    const ActiveRun run(option_);
    EXPECT_EQ(PmemManger().GetSoftwareIdentity(list_), INTERRUPTED_BY_USER);
}

}  // namespace
