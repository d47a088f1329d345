#include "platform/system_check/system_check.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/os/os.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;

class SystemCheckTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
    SystemCheck check_{
        folder_.Write("orvane", "EX-ORVANE\n"),   folder_.Write("amd", "EX-AMD\n"),
        folder_.Write("cfc", "EX-CFC\n"),         folder_.Write("csp", "EX-CSP\n"),
        folder_.Write("grantly", "EX-GRANTLY\n"), folder_.Write("no_bmc", "EX-NOBMC\n")};
};

TEST_F(SystemCheckTest, FirstListAnswersForTheOrvaneBrand) {
    EXPECT_NE(check_.IsBlueSystem("ex-orvane"), 0);
    EXPECT_EQ(check_.IsBlueSystem("EX-AMD"), 0);
}

TEST_F(SystemCheckTest, SecondListAnswersForAmd) {
    EXPECT_TRUE(check_.IsAMDSystem("EX-AMD"));
    EXPECT_FALSE(check_.IsAMDSystem("EX-CFC"));
}

TEST_F(SystemCheckTest, ThirdListAnswersForCfc) {
    EXPECT_TRUE(check_.IsCFCSystem("EX-CFC"));
    EXPECT_FALSE(check_.IsCFCSystem("EX-CSP"));
}

TEST_F(SystemCheckTest, FifthListAnswersForGrantly) {
    EXPECT_TRUE(check_.IsGrantlySystem("EX-GRANTLY"));
    EXPECT_FALSE(check_.IsGrantlySystem("EX-NOBMC"));
}

TEST_F(SystemCheckTest, EmptyMachineTypeIsOnNoList) {
    EXPECT_EQ(check_.IsBlueSystem(""), 0);
    EXPECT_FALSE(check_.IsCFCSystem(""));
}

TEST_F(SystemCheckTest, ConstructionReadsNothing) {
    SystemCheck late(folder_.Path("late"), "", "", "", "", "");
    folder_.Write("late", "EX-LATE\n");
    EXPECT_NE(late.IsBlueSystem("EX-LATE"), 0);
}

class SampleListTest : public testing::TestWithParam<const char*> {};

TEST_P(SampleListTest, LiesBesideTheModuleAndNamesNoMachine) {
    const std::string file = GetModuleDirectory() + GetParam();
    ASSERT_TRUE(std::filesystem::exists(file)) << file;
    SystemCheck check(file, file, file, file, file, file);
    EXPECT_EQ(check.IsBlueSystem("EX-1234"), 0);
}

INSTANTIATE_TEST_SUITE_P(AllSix, SampleListTest,
                         testing::Values("Orvane_systems_list.txt", "AMD_systems_list.txt",
                                         "CFC_systems_list.txt", "CSP_systems_list.txt",
                                         "Grantly_systems_list.txt", "NO_BMC_systems_list.txt"));

}  // namespace
}  // namespace Vantix
