#include <gtest/gtest.h>

#include "support/arcconf_text.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::transport {
namespace {

using test_support::arcconf::List;

TEST(ArcconfControllersTest, ListTellsNumberSlotAndNameOfEachController) {
    const auto answer = ParseArcconfControllers(
        List({"Optimal, Slot 8, HBA, Fake HBA 16i, 8A000001, 5000000000000001",
              "Failed, Slot 12, RAID (Hide RAW), Fake RAID 8, 8A000002, 5000000000000002"}));
    EXPECT_EQ(answer.found, 2);
    ASSERT_EQ(answer.controllers.size(), 2U);
    EXPECT_EQ(answer.controllers[0].id, 1);
    EXPECT_EQ(answer.controllers[0].slot, "8");
    EXPECT_EQ(answer.controllers[0].name, "Fake HBA 16i");
    EXPECT_EQ(answer.controllers[1].id, 2);
    EXPECT_EQ(answer.controllers[1].slot, "12");
    EXPECT_EQ(answer.controllers[1].name, "Fake RAID 8");
}

TEST(ArcconfControllersTest, HeadingOfTheListIsNoController) {
    EXPECT_TRUE(ParseArcconfControllers(List({})).controllers.empty());
}

TEST(ArcconfControllersTest, VersionsTellTheNumbersWhereListIsUnknown) {
    const auto answer = ParseArcconfControllers(
        "Controllers found: 2\nController #1\n==============\n"
        "Firmware                               : 7.5-0 (32106)\n"
        "Controller #2\n==============\nFirmware : 7.5-0 (32106)\n");
    EXPECT_EQ(answer.found, 2);
    ASSERT_EQ(answer.controllers.size(), 2U);
    EXPECT_EQ(answer.controllers[1].id, 2);
    EXPECT_EQ(answer.controllers[1].slot, "");
}

TEST(ArcconfControllersTest, NoControllerIsAnAnswer) {
    EXPECT_EQ(ParseArcconfControllers("Controllers found: 0\r\n").found, 0);
}

TEST(ArcconfControllersTest, BlankBeforeTheColonOfTheBannerDoesNotMatter) {
    EXPECT_EQ(ParseArcconfControllers("Controllers found : 3\n").found, 3);
}

TEST(ArcconfControllersTest, OtherWordsAreNoAnswer) {
    EXPECT_EQ(ParseArcconfControllers("bash: arcconf: cannot execute").found, std::nullopt);
    EXPECT_EQ(ParseArcconfControllers("Controllers found: many\n").found, std::nullopt);
    EXPECT_EQ(ParseArcconfControllers("").found, std::nullopt);
}

TEST(ArcconfControllersTest, SameNumberTwiceIsOneController) {
    const auto answer =
        ParseArcconfControllers("Controllers found: 2\nController #1\nController #1\n");
    EXPECT_EQ(answer.controllers.size(), 1U);
}

TEST(ArcconfControllersTest, NumberZeroAndHugeNumbersAreNoControllers) {
    const auto answer = ParseArcconfControllers(
        "Controllers found: 2\nController #0\nController #99999999999999\nController #-1\n");
    EXPECT_TRUE(answer.controllers.empty());
}

TEST(ArcconfControllersTest, LessFieldsThanUsualLeaveTheRestEmpty) {
    const auto answer =
        ParseArcconfControllers("Controllers found: 1\n   Controller 1:   : Optimal\n");
    ASSERT_EQ(answer.controllers.size(), 1U);
    EXPECT_EQ(answer.controllers[0].slot, "");
    EXPECT_EQ(answer.controllers[0].name, "");
}

TEST(ArcconfControllersTest, EndlessListIsCutOff) {
    std::string text = "Controllers found: 1000\n";
    for (int i = 1; i <= 1000; ++i) text += "Controller #" + std::to_string(i) + "\n";
    EXPECT_EQ(ParseArcconfControllers(text).controllers.size(), 64U);
}

TEST(ArcconfReleaseTest, BannerOfTheProgramNamesIt) {
    EXPECT_EQ(ParseArcconfRelease("\n  | UCLI |  Fake uniform command line interface\n"
                                  "  | UCLI |  Version 2.03 (B22476)          |\n"),
              "2.03 (B22476)");
}

TEST(ArcconfReleaseTest, WordVersionWithoutNumberIsNone) {
    EXPECT_EQ(ParseArcconfRelease("getversion prints the version of each controller\n"), "");
    EXPECT_EQ(ParseArcconfRelease(""), "");
}

}  // namespace
}  // namespace Vantix::transport
