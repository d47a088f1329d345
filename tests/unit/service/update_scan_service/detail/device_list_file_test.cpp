#include "service/update_scan_service/detail/device_list_file.h"

#include <gtest/gtest.h>

#include "doubles/platform_double.h"

namespace service::detail {
namespace {

using testing::Return;

class DeviceListFileTest : public testing::Test {
  protected:
    doubles::StrictPlatform platform_;
};

TEST_F(DeviceListFileTest, PlaceIsTheOneWhereItIsLookedFor) {
    EXPECT_STREQ(kDeviceListFile, "/tmp/devsw.list");
}

TEST_F(DeviceListFileTest, FileIsReplacedByExactlyTheText) {
    EXPECT_CALL(platform_, ReplaceFile("devices", "one\ntwo")).WillOnce(Return(true));
    WriteDeviceListFile("devices", "one\ntwo");
}

TEST_F(DeviceListFileTest, EmptyTextIsWrittenToo) {
    EXPECT_CALL(platform_, ReplaceFile("devices", "")).WillOnce(Return(true));
    WriteDeviceListFile("devices", "");
}

TEST_F(DeviceListFileTest, PlaceThatCannotBeWrittenIsIgnored) {
    EXPECT_CALL(platform_, ReplaceFile("devices", "text")).WillOnce(Return(false));
    WriteDeviceListFile("devices", "text");
}

}  // namespace
}  // namespace service::detail
