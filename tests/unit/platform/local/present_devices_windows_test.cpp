// The devices of the machine that runs the test, whatever they are.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "platform/local/present_devices.h"

namespace {

using Vantix::local::PresentDevice;

TEST(PresentDevicesWindowsTest, EveryDeviceHasAnIdOfItsOwn) {
    const auto devices = Vantix::local::PresentDevices();
    ASSERT_TRUE(devices);
    ASSERT_FALSE(devices->empty());
    std::set<std::string> ids;
    for (const PresentDevice& device : *devices) {
        EXPECT_NE(device.instance_id.find('\\'), std::string::npos) << device.instance_id;
        EXPECT_TRUE(ids.insert(device.instance_id).second) << device.instance_id;
    }
}

TEST(PresentDevicesWindowsTest, ListsAreReadToTheirEnds) {
    const auto devices = Vantix::local::PresentDevices();
    ASSERT_TRUE(devices);
    std::size_t with_ids = 0;
    for (const PresentDevice& device : *devices) {
        if (!device.hardware_ids.empty()) ++with_ids;
        EXPECT_THAT(device.hardware_ids, testing::Not(testing::Contains("")));
    }
    EXPECT_GT(with_ids, 0U);
}

}  // namespace
