// The devices of the machine that runs the test, whatever they are.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/local/present_devices.h"

namespace {

using Vantix::local::HostDevices;
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

TEST(PresentDevicesWindowsTest, FamiliesOfOneRunShareThem) {
    const Vantix::VantixConnection::ConnectOption option;
    const auto of_no_run = HostDevices();
    ASSERT_NE(of_no_run, nullptr);
    EXPECT_FALSE(of_no_run->empty());
    const Vantix::VantixConnection::ActiveRun run(option);
    const auto first = HostDevices();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, of_no_run);
    EXPECT_EQ(HostDevices(), first);
}

}  // namespace
