#include <gtest/gtest.h>

#include "platform/local/present_devices.h"

namespace {

TEST(PresentDevicesPosixTest, KernelShowsItsDevicesAsFiles) {
    EXPECT_FALSE(Vantix::local::PresentDevices());
}

}  // namespace
