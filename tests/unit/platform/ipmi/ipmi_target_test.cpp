#include "platform/ipmi/ipmi_target.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ipmi/local_ipmi.h"
#include "support/temporary_folder.h"

namespace Vantix::ipmi {
namespace {

using VantixConnection::ConnectOption;

class IpmiTargetTest : public testing::Test {
  protected:
    ConnectOption option_;
    test_support::TemporaryFolder folder_;
};

TEST_F(IpmiTargetTest, DeviceNodeIsFound) {
    EXPECT_FALSE(HasLocalIpmiDevice(option_, folder_.Path("")));
    std::filesystem::create_directory(folder_.Path("dev"));
    folder_.Write("dev/ipmi0", "");
    EXPECT_TRUE(HasLocalIpmiDevice(option_, folder_.Path("")));
}

TEST_F(IpmiTargetTest, SystemWithoutNodesIsAsked) {
    if (ShowsIpmiDeviceAsNode()) GTEST_SKIP() << "this system shows the device as a node";
    EXPECT_TRUE(HasLocalIpmiDevice(option_));
}

TEST_F(IpmiTargetTest, RecordedTreeHasNoDevice) {
    option_.system_root = folder_.Path("");
    EXPECT_FALSE(HasLocalIpmiDevice(option_));
}

}  // namespace
}  // namespace Vantix::ipmi
