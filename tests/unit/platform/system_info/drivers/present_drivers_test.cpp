#include "platform/system_info/present_drivers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/present_device_builder.h"

namespace Vantix::system_info {
namespace {

using test_support::APresentDevice;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const char* const kIds = "VEN_8086&DEV_1521&SUBSYS_00018086&REV_01";

APresentDevice Adapter() {
    return APresentDevice("PCI", kIds).Class("020000").At(3, 0, 0);
}

std::vector<std::string> Identifiers(const PresentDrivers& found) {
    std::vector<std::string> identifiers;
    for (const DriverData& driver : found.drivers) identifiers.push_back(driver.Identifier);
    return identifiers;
}

TEST(PresentDriversTest, AdapterIsNamedAfterItsDriverAndIds) {
    const PresentDrivers found = DriversOf({Adapter().Driver("fakenet", "10.0.19041.1")});
    ASSERT_THAT(Identifiers(found), ElementsAre("fakenet_80861521"));
    EXPECT_EQ(found.drivers[0].Version, "10.0.19041.1");
    EXPECT_EQ(found.drivers[0].DevicePresent, 1);
    EXPECT_THAT(found.driverless, IsEmpty());
}

TEST(PresentDriversTest, AdaptersOfOneKindAreOneRecord) {
    const PresentDrivers found = DriversOf(
        {Adapter().Driver("fakenet", "1"), Adapter().Driver("fakenet", "1"),
         APresentDevice("PCI", "VEN_8086&DEV_1572").Class("020000").Driver("fakenet", "1")});
    ASSERT_THAT(Identifiers(found), ElementsAre("fakenet_80861521", "fakenet_80861572"));
    EXPECT_EQ(found.drivers[0].DevicePresent, 2);
    EXPECT_EQ(found.drivers[1].DevicePresent, 1);
}

TEST(PresentDriversTest, EachVersionInUseIsARecord) {
    const PresentDrivers found =
        DriversOf({Adapter().Driver("fakenet", "1"), Adapter().Driver("fakenet", "2")});
    ASSERT_EQ(found.drivers.size(), 2U);
    EXPECT_EQ(found.drivers[0].Version, "1");
    EXPECT_EQ(found.drivers[1].Version, "2");
}

TEST(PresentDriversTest, DriverOfBridgesAndOtherBusesHasItsBareName) {
    const PresentDrivers found = DriversOf(
        {APresentDevice("PCI", "VEN_8086&DEV_2030").Class("060400").Driver("fakeport", "1"),
         APresentDevice("USB", "VID_1D0F&PID_0001").Driver("fakehub", "1"),
         APresentDevice("USB", "VID_1D0F&PID_0002").Driver("fakehub", "1")});
    EXPECT_THAT(Identifiers(found), UnorderedElementsAre("fakeport", "fakehub"));
    EXPECT_EQ(found.drivers[1].DevicePresent, 2);
}

TEST(PresentDriversTest, DescriptionSaysWhereTheDriverCameFrom) {
    const auto description = [](const APresentDevice& device) {
        return DriversOf({device}).drivers.at(0).Description;
    };
    const APresentDevice adapter = Adapter().Driver("fakenet", "1");
    EXPECT_EQ(
        description(
            APresentDevice(adapter).Called("Fake Adapter").Package("Fake Networks", "oem5.inf")),
        "Fake Adapter (Fake Networks, oem5.inf)");
    EXPECT_EQ(description(APresentDevice(adapter).Called("Fake Adapter").Package("", "oem5.inf")),
              "Fake Adapter (oem5.inf)");
    EXPECT_EQ(description(APresentDevice(adapter).Called("Fake Adapter")), "Fake Adapter");
    EXPECT_EQ(description(APresentDevice(adapter).Package("Fake Networks", "")), "Fake Networks");
}

TEST(PresentDriversTest, PackageWithoutCodeIsNoDriver) {
    EXPECT_THAT(DriversOf({Adapter().Driver("", "1")}).drivers, IsEmpty());
    EXPECT_THAT(DriversOf({Adapter().Driver("", "1")}).driverless, IsEmpty());
}

TEST(PresentDriversTest, WhatIsNoHardwareOfItsOwnIsLeftOut) {
    EXPECT_THAT(
        DriversOf({APresentDevice("ROOT", "FAKE").Driver("fakevirtual", "1"),
                   APresentDevice("SWD", "FAKE").Driver("fakesoftware", "1"),
                   APresentDevice("STORAGE", "VOLUME").Driver("fakevolume", "1"),
                   APresentDevice("ACPI", "FAKE").ClassName("Processor").Driver("fakecpu", "1")})
            .drivers,
        IsEmpty());
}

TEST(PresentDriversTest, AdapterWithoutDriverIsTold) {
    const PresentDrivers found = DriversOf({Adapter(), Adapter().Driver("left", "1").Problem(28)});
    EXPECT_THAT(found.drivers, IsEmpty());
    ASSERT_EQ(found.driverless.size(), 2U);
    EXPECT_EQ(found.driverless[0].address, "0000:03:00.0");
    EXPECT_EQ(found.driverless[0].ids, "80861521");
    EXPECT_EQ(found.driverless[0].class_code, "020000");
}

TEST(PresentDriversTest, DriverThatDoesNotWorkIsCounted) {
    const PresentDrivers found = DriversOf({Adapter().Driver("fakenet", "1").Problem(10)});
    ASSERT_EQ(found.drivers.size(), 1U);
    EXPECT_EQ(found.drivers[0].DevicePresent, 1);
}

TEST(PresentDriversTest, DriverlessDeviceWithoutPlaceIsNamedByItsId) {
    const PresentDrivers found =
        DriversOf({APresentDevice("PCI", "VEN_8086&DEV_1521").Class("020000")});
    ASSERT_EQ(found.driverless.size(), 1U);
    EXPECT_EQ(found.driverless[0].address, R"(PCI\VEN_8086&DEV_1521\3&FAKE&0&00)");
}

TEST(PresentDriversTest, WhatNeedsNoDriverIsNotMissed) {
    EXPECT_THAT(DriversOf({APresentDevice("PCI", "VEN_8086&DEV_2030").Class("060400"),
                           APresentDevice("PCI", "VEN_8086&DEV_1521"),
                           APresentDevice("USB", "VID_1D0F&PID_0001"), APresentDevice("PCI", "")})
                    .driverless,
                IsEmpty());
}

}  // namespace
}  // namespace Vantix::system_info
