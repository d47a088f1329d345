#include "transport/ipmi/fru_locator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using testing::IsEmpty;

std::string Record(const std::string& name, const std::string& entity, const std::string& address,
                   const std::string& fru) {
    return "Device ID              : " + name + "\nEntity ID              : " + entity +
           "\nDevice Access Address  : " + address + "\nLogical FRU Device     : " + fru +
           "\nChannel Number         : 0h\nLUN.Bus                : 0h.0h\n"
           "Device Type.Modifier   : 10h.0h (IPMI FRU Inventory)\nOEM                    : 00h\n\n";
}

TEST(FruLocatorTest, NameEntityAndNumberAreRead) {
    const auto locators = ParseFruLocators(Record("PSU1", "10.2 (Power Supply)", "20h", "1Ah"));
    ASSERT_EQ(locators.size(), 1U);
    EXPECT_EQ(locators[0].name, "PSU1");
    EXPECT_EQ(locators[0].entity_id, kEntityPowerSupply);
    EXPECT_EQ(locators[0].entity_instance, 2U);
    EXPECT_EQ(locators[0].fru_id, 0x1a);
}

TEST(FruLocatorTest, SeveralRecordsKeepTheirOrder) {
    const auto locators = ParseFruLocators(Record("B", "10.2 (x)", "20h", "02h") +
                                           Record("A", "10.1 (x)", "20h", "01h"));
    ASSERT_EQ(locators.size(), 2U);
    EXPECT_EQ(locators[0].name, "B");
    EXPECT_EQ(locators[1].name, "A");
}

TEST(FruLocatorTest, DeviceOfAnotherControllerIsLeftOut) {
    EXPECT_THAT(ParseFruLocators(Record("Node", "7.1 (x)", "82h", "00h")), IsEmpty());
}

TEST(FruLocatorTest, RecordWithoutNumberIsLeftOut) {
    EXPECT_THAT(ParseFruLocators("Device ID : PSU1\nEntity ID : 10.1 (Power Supply)\n"), IsEmpty());
    EXPECT_THAT(ParseFruLocators(Record("PSU1", "10.1", "20h", "1")), IsEmpty());
    EXPECT_THAT(ParseFruLocators(Record("PSU1", "10.1", "20h", "fffh")), IsEmpty());
}

TEST(FruLocatorTest, SecondRecordOfOneDeviceIsLeftOut) {
    EXPECT_EQ(ParseFruLocators(Record("PSU1", "10.1 (x)", "20h", "01h") +
                               Record("PSU1 again", "10.1 (x)", "20h", "01h"))
                  .size(),
              1U);
}

TEST(FruLocatorTest, DamagedEntityStaysUnknown) {
    const auto locators = ParseFruLocators(Record("X", "ten.one", "20h", "01h"));
    ASSERT_EQ(locators.size(), 1U);
    EXPECT_EQ(locators[0].entity_id, 0U);
}

TEST(FruLocatorTest, OtherTextHasNoLocators) {
    EXPECT_THAT(ParseFruLocators(""), IsEmpty());
    EXPECT_THAT(ParseFruLocators("Get SDR 0000 command failed\n::::\n"), IsEmpty());
}

}  // namespace
}  // namespace Vantix::transport
