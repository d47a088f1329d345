#include "service/update_scan_service/detail/device_list_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace service::detail {
namespace {

class DeviceListFileTest : public testing::Test {
  protected:
    const test_support::TemporaryFolder folder_;
    const std::string path_ = folder_.Path("devices");
};

TEST_F(DeviceListFileTest, PlaceIsTheOneWhereItIsLookedFor) {
    EXPECT_STREQ(kDeviceListFile, "/tmp/devsw.list");
}

TEST_F(DeviceListFileTest, FileIsMadeWithExactlyTheText) {
    WriteDeviceListFile(path_, "one\ntwo");
    EXPECT_EQ(folder_.Read("devices"), "one\ntwo");
}

TEST_F(DeviceListFileTest, FormerContentIsReplaced) {
    WriteDeviceListFile(path_, "a much longer text than the next one");
    WriteDeviceListFile(path_, "short");
    EXPECT_EQ(folder_.Read("devices"), "short");
}

TEST_F(DeviceListFileTest, EmptyTextLeavesAnEmptyFile) {
    WriteDeviceListFile(path_, "");
    EXPECT_TRUE(std::filesystem::is_regular_file(path_));
    EXPECT_EQ(std::filesystem::file_size(path_), 0u);
}

TEST_F(DeviceListFileTest, PlaceThatCannotBeWrittenIsIgnored) {
    std::filesystem::create_directory(path_);
    EXPECT_NO_THROW(WriteDeviceListFile(path_, "text"));
    EXPECT_TRUE(std::filesystem::is_directory(path_));
}

}  // namespace
}  // namespace service::detail
