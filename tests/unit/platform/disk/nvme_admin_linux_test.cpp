#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/disk/nvme_admin.h"
#include "support/temporary_folder.h"
#include "support/unprivileged_user.h"

namespace Vantix::disk {
namespace {

using State = DeviceAnswer::State;

std::string NumberOf(const char* node) {
    struct stat state = {};
    if (::stat(node, &state) != 0) return {};
    return std::to_string(major(state.st_rdev)) + ":" + std::to_string(minor(state.st_rdev));
}

TEST(NvmeAdminTest, MissingNodeIsAFailureAndNoDenial) {
    const test_support::TemporaryFolder folder;
    const auto answer = KernelNvmeAdmin().IdentifyController(folder.Path("nvme0"), "");
    EXPECT_EQ(answer.state, State::kFailed);
    EXPECT_EQ(answer.cause, "No such file or directory");
}

TEST(NvmeAdminTest, OrdinaryFileIsNotAsked) {
    const test_support::TemporaryFolder folder;
    const auto answer =
        KernelNvmeAdmin().IdentifyController(folder.Write("nvme0", "text"), "239:0");
    EXPECT_EQ(answer.state, State::kFailed);
    EXPECT_EQ(answer.cause, "the node is another device");
}

TEST(NvmeAdminTest, NodeOfAnotherDeviceIsNotAsked) {
    const auto answer = KernelNvmeAdmin().IdentifyController("/dev/null", "239:0");
    EXPECT_EQ(answer.state, State::kFailed);
    EXPECT_EQ(answer.cause, "the node is another device");
}

TEST(NvmeAdminTest, DeviceThatKnowsNoSuchCommandIsAFailure) {
    const auto answer = KernelNvmeAdmin().IdentifyController("/dev/null", NumberOf("/dev/null"));
    EXPECT_EQ(answer.state, State::kFailed);
    EXPECT_NE(answer.cause, "the node is another device");
    EXPECT_TRUE(answer.data.empty());
}

TEST(NvmeAdminTest, ForbiddenNodeIsADenial) {
    const test_support::TemporaryFolder folder;
    const std::string node = folder.Write("nvme0", "");
    ASSERT_EQ(::chmod(node.c_str(), 0), 0);
    const test_support::UnprivilegedUser user(folder.Path(""));
    EXPECT_EQ(KernelNvmeAdmin().IdentifyController(node, "").state, State::kDenied);
}

}  // namespace
}  // namespace Vantix::disk
