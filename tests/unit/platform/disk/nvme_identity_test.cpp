#include "platform/disk/nvme_identity.h"

#include <gtest/gtest.h>

#include "unit/platform/disk/page_builder.h"

namespace Vantix::disk {
namespace {

using disk_test::IdentifyData;

TEST(NvmeIdentityTest, TextsAreTrimmed) {
    const auto identity = ReadIdentifyController(IdentifyData("NVSER0001", "Example NVMe", "2.1"));
    ASSERT_TRUE(identity.has_value());
    EXPECT_EQ(identity->serial, "NVSER0001");
    EXPECT_EQ(identity->model, "Example NVMe");
    EXPECT_EQ(identity->firmware, "2.1");
}

TEST(NvmeIdentityTest, FieldsThatAreFullDoNotRunIntoEachOther) {
    const auto identity = ReadIdentifyController(
        IdentifyData(std::string(20, 'S'), std::string(40, 'M'), std::string(8, 'F')));
    EXPECT_EQ(identity->serial, std::string(20, 'S'));
    EXPECT_EQ(identity->model, std::string(40, 'M'));
    EXPECT_EQ(identity->firmware, std::string(8, 'F'));
}

TEST(NvmeIdentityTest, CutDataAreNothing) {
    const std::string data = IdentifyData("NVSER0001", "Example NVMe", "2.1");
    for (std::size_t length = 0; length < 72; ++length) {
        EXPECT_FALSE(ReadIdentifyController(data.substr(0, length)).has_value()) << length;
    }
    EXPECT_TRUE(ReadIdentifyController(data.substr(0, 72)).has_value());
}

TEST(NvmeIdentityTest, DataWithoutModelAndRevisionAreNothing) {
    EXPECT_FALSE(ReadIdentifyController(std::string(4096, '\0')).has_value());
    EXPECT_FALSE(ReadIdentifyController(std::string(4096, ' ')).has_value());
}

}  // namespace
}  // namespace Vantix::disk
