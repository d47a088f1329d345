// Answers recorded from a real controller, read in place.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "transport/arcconf/arcconf_output.h"

namespace Vantix::transport {
namespace {

class ArcconfRecordedTest : public testing::Test {
  protected:
    void SetUp() override {
        const char* const environment = std::getenv("TARSEL_SHARED_MOCKUPS");
        folder_ =
            std::filesystem::path(environment != nullptr ? environment : TARSEL_SHARED_MOCKUPS) /
            "arcconf" / "hba";
        if (!std::filesystem::exists(folder_)) {
            GTEST_SKIP() << "no recorded answers; set TARSEL_SHARED_MOCKUPS to their folder";
        }
    }

    [[nodiscard]] std::string Answer(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

  private:
    std::filesystem::path folder_;
};

TEST_F(ArcconfRecordedTest, ListNamesTheController) {
    const auto answer = ParseArcconfControllers(Answer("_list.txt"));
    EXPECT_EQ(answer.found, 1);
    ASSERT_EQ(answer.controllers.size(), 1U);
    EXPECT_EQ(answer.controllers[0].id, 1);
    EXPECT_EQ(answer.controllers[0].slot, "8");
    EXPECT_EQ(answer.controllers[0].name, "MSCC Adaptec HBA 1100-16i");
}

TEST_F(ArcconfRecordedTest, VersionsNameTheControllerToo) {
    const auto answer = ParseArcconfControllers(Answer("_getversion.txt"));
    EXPECT_EQ(answer.found, 1);
    ASSERT_EQ(answer.controllers.size(), 1U);
    EXPECT_EQ(answer.controllers[0].id, 1);
}

TEST_F(ArcconfRecordedTest, AdapterHasAddressAndFirmware) {
    for (const char* const name : {"_getconfig_1_AD.txt", "_getconfig_1.txt"}) {
        const ArcconfAdapter adapter = ParseArcconfAdapter(Answer(name));
        EXPECT_EQ(adapter.pci_address, "0000:d9:00.0") << name;
        EXPECT_EQ(adapter.firmware_version, "1.32[0]") << name;
        EXPECT_EQ(adapter.model, "MSCC Adaptec HBA 1100-16i") << name;
    }
}

TEST_F(ArcconfRecordedTest, SevenDisksAndNoEnclosure) {
    const ArcconfDisks answer = ParseArcconfDisks(Answer("_getconfig_1_PD.txt"));
    EXPECT_TRUE(answer.has_section);
    EXPECT_TRUE(answer.is_whole);
    ASSERT_EQ(answer.disks.size(), 7U);
    EXPECT_EQ(answer.disks[0].vendor, "ATA");
    EXPECT_EQ(answer.disks[0].model, "SAMSUNG MZ7KH240");
    EXPECT_EQ(answer.disks[0].firmware_version, "HXM7904Q");
    EXPECT_EQ(answer.disks[0].serial_number, "S47LNA1234567");
    EXPECT_EQ(answer.disks[0].bay, "1");
    EXPECT_EQ(answer.disks[3].vendor, "SAMSUNG");
    EXPECT_EQ(answer.disks[3].model, "MZILT7T6HALA/007");
    EXPECT_EQ(answer.disks[3].bay, "4");
    EXPECT_EQ(answer.disks[4].firmware_version, "D3MU001");
    EXPECT_EQ(answer.disks[6].bay, "15");
}

TEST_F(ArcconfRecordedTest, WholeConfigurationHasDisksToo) {
    EXPECT_FALSE(ParseArcconfDisks(Answer("_getconfig_1.txt")).disks.empty());
}

TEST_F(ArcconfRecordedTest, RefusedQuestionHasNoDisks) {
    const ArcconfDisks answer = ParseArcconfDisks(Answer("_getconfig_1_LD.txt"));
    EXPECT_FALSE(answer.has_section);
    EXPECT_FALSE(answer.is_whole);
}

}  // namespace
}  // namespace Vantix::transport
