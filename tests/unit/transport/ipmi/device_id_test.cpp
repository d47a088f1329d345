#include "transport/ipmi/device_id.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RawAnswer Ok(Bytes data) {
    return {kCompletionOk, std::move(data)};
}

const Bytes kWhole = {0x20, 0x81, 0x09, 0x08, 0x02, 0x9f, 0xfe, 0xff,
                      0x00, 0x02, 0x0f, 0x0a, 0x0b, 0x0c, 0x0d};

TEST(DeviceIdTest, AllFieldsOfAWholeAnswerAreRead) {
    const auto device = ParseDeviceId(Ok(kWhole));
    ASSERT_TRUE(device);
    EXPECT_EQ(device->device_id, 0x20);
    EXPECT_EQ(device->revision, 1);
    EXPECT_EQ(device->manufacturer, 0xfffeU);
    EXPECT_EQ(device->product, 0x0f02);
    EXPECT_FALSE(device->is_updating);
    EXPECT_THAT(device->auxiliary, ElementsAre(0x0a, 0x0b, 0x0c, 0x0d));
}

TEST(DeviceIdTest, VersionKeepsTheTwoDigitsOfTheMinorPart) {
    EXPECT_EQ(FirmwareVersionText(*ParseDeviceId(Ok(kWhole))), "9.08");
}

TEST(DeviceIdTest, MinorPartIsNotConvertedTwice) {
    DeviceId device;
    device.firmware_major = 3;
    device.firmware_minor = 0x10;
    EXPECT_EQ(FirmwareVersionText(device), "3.10");
}

TEST(DeviceIdTest, MinorPartThatIsNoBcdIsShownAsItStands) {
    DeviceId device;
    device.firmware_major = 17;
    device.firmware_minor = 0xab;
    EXPECT_EQ(FirmwareVersionText(device), "17.ab");
}

TEST(DeviceIdTest, UpdateBitIsNoPartOfTheVersion) {
    Bytes data = kWhole;
    data[2] = 0x89;
    const auto device = ParseDeviceId(Ok(data));
    EXPECT_TRUE(device->is_updating);
    EXPECT_EQ(FirmwareVersionText(*device), "9.08");
}

TEST(DeviceIdTest, ReservedBitsOfTheMakerAreIgnored) {
    Bytes data = kWhole;
    data[8] = 0xf0;
    EXPECT_EQ(ParseDeviceId(Ok(data))->manufacturer, 0xfffeU);
}

TEST(DeviceIdTest, AnswerWithoutAuxiliaryBytesIsComplete) {
    const auto device = ParseDeviceId(Ok(Bytes(kWhole.begin(), kWhole.begin() + 11)));
    ASSERT_TRUE(device);
    EXPECT_THAT(device->auxiliary, IsEmpty());
    EXPECT_EQ(device->product, 0x0f02);
}

TEST(DeviceIdTest, EveryShorterAnswerIsReadOrRefusedWithoutHarm) {
    for (std::size_t size = 0; size < kWhole.size(); ++size) {
        const Bytes data(kWhole.begin(), kWhole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(ParseDeviceId(Ok(data)).has_value(), size >= 4) << size;
    }
}

TEST(DeviceIdTest, RefusalIsNoDevice) {
    EXPECT_FALSE(ParseDeviceId({0xc1, kWhole}));
    EXPECT_FALSE(ParseDeviceId({-1, {}}));
}

}  // namespace
}  // namespace Vantix::transport
