#include "platform/local/present_devices.h"

#include <gtest/gtest.h>

namespace Vantix::local {
namespace {

PresentDevice Served(const std::string& service, const std::string& key) {
    PresentDevice device;
    device.service = service;
    device.driver_key = key;
    return device;
}

TEST(PresentDevicesTest, BusIsTheFirstPartOfTheInstanceId) {
    PresentDevice device;
    device.instance_id = R"(PCI\VEN_8086&DEV_1572\3&FAKE&0&00)";
    EXPECT_EQ(BusOf(device), "pci");
    device.instance_id = "Root";
    EXPECT_EQ(BusOf(device), "root");
    device.instance_id.clear();
    EXPECT_EQ(BusOf(device), "");
}

TEST(PresentDevicesTest, DriverHasANameOrAKey) {
    EXPECT_TRUE(HasDriver(Served("fakenet", R"({fake}\0001)")));
    EXPECT_TRUE(HasDriver(Served("fakenet", "")));
    EXPECT_TRUE(HasDriver(Served("", R"({fake}\0001)")));
    EXPECT_FALSE(HasDriver(Served("", "")));
}

TEST(PresentDevicesTest, DriverThatIsNotInstalledIsNone) {
    for (const std::uint32_t code : {1U, 28U}) {
        PresentDevice device = Served("left_over", R"({fake}\0001)");
        device.problem = code;
        EXPECT_FALSE(HasDriver(device)) << code;
    }
}

TEST(PresentDevicesTest, DriverThatDoesNotWorkIsOne) {
    for (const std::uint32_t code : {0U, 10U, 22U, 31U, 43U}) {
        PresentDevice device = Served("fakenet", R"({fake}\0001)");
        device.problem = code;
        EXPECT_TRUE(HasDriver(device)) << code;
    }
}

}  // namespace
}  // namespace Vantix::local
