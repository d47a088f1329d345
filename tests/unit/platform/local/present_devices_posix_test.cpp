#include <gtest/gtest.h>

#include "platform/local/local_host.h"
#include "platform/local/present_devices.h"

namespace {

TEST(PresentDevicesPosixTest, KernelShowsItsDevicesAsFiles) {
    EXPECT_FALSE(Vantix::local::PresentDevices());
    EXPECT_EQ(Vantix::local::HostDevices(), nullptr);
}

}  // namespace
