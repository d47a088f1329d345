#include "tarsel/exit_codes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace tarsel {
namespace {

struct CodeCase {
    std::int32_t code;
    int exit_code;
};
class ExitCodeTest : public testing::TestWithParam<CodeCase> {};

TEST_P(ExitCodeTest, FollowsFromTheResultCode) {
    EXPECT_EQ(ExitCodeFor(GetParam().code, false, 0), GetParam().exit_code);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, ExitCodeTest,
    testing::Values(CodeCase{0, 0}, CodeCase{1, 1}, CodeCase{11, 1}, CodeCase{17, 1},
                    CodeCase{0x6D3, 1}, CodeCase{70, 1}, CodeCase{27, 1}, CodeCase{28, 1},
                    CodeCase{29, 1}, CodeCase{35, 1}, CodeCase{0x62B, 1}, CodeCase{5, 2},
                    CodeCase{56, 2}, CodeCase{12, 4}, CodeCase{51, 4}, CodeCase{54, 4},
                    CodeCase{63, 4}, CodeCase{13, 5}, CodeCase{14, 5}, CodeCase{18, 5},
                    CodeCase{50, 5}, CodeCase{36, 6}, CodeCase{0x10071, 6}, CodeCase{25, 7},
                    CodeCase{42, 7}, CodeCase{52, 7}, CodeCase{55, 7}, CodeCase{65, 7},
                    CodeCase{66, 7}, CodeCase{68, 7}, CodeCase{0x1006D, 7}, CodeCase{0x10070, 7},
                    CodeCase{0x40068, 7}, CodeCase{47, 130}, CodeCase{99999, 1}, CodeCase{-1, 1}));

TEST(ExitCodeForTest, ModuleNumberOfASuccessIsIgnored) {
    EXPECT_EQ(ExitCodeFor(0x10000, false, 0), 0);
}

TEST(ExitCodeForTest, CodeOfAnotherModuleIsNotTakenForACommonOne) {
    EXPECT_EQ(ExitCodeFor(0x20000 | 12, false, 0), 1);
}

TEST(ExitCodeForTest, SuccessWithGapsIsPartial) {
    EXPECT_EQ(ExitCodeFor(0, true, 0), 3);
}

TEST(ExitCodeForTest, FailureWithGapsStaysAFailure) {
    EXPECT_EQ(ExitCodeFor(13, true, 0), 5);
}

TEST(ExitCodeForTest, SignalDecidesWhenTheScanFailed) {
    EXPECT_EQ(ExitCodeFor(47, false, SIGINT), 130);
    EXPECT_EQ(ExitCodeFor(13, true, SIGTERM), 143);
    constexpr int kHangUp = 1;  // not every system has a name for it
    EXPECT_EQ(ExitCodeFor(47, false, kHangUp), 129);
}

TEST(ExitCodeForTest, SignalAfterTheLastReadChangesNothing) {
    EXPECT_EQ(ExitCodeFor(0, false, SIGINT), 0);
}

TEST(ExitCodeForTest, TableNamesEveryCode) {
    const std::string table = ExitCodeTable();
    for (int code = kExitComplete; code <= kExitUnsupported; ++code) {
        EXPECT_THAT(table, testing::HasSubstr("\n  " + std::to_string(code) + "  "));
    }
    EXPECT_THAT(table, testing::HasSubstr("129, 130, 143"));
}

TarselResult Mute(std::int32_t code) {
    return TarselResult(code, "");
}

TEST(TellingCodeTest, FailedConnectionGivesWayToWhatIsKnownOfTheTarget) {
    EXPECT_EQ(TellingCode(Mute(13), 52, false), 52);
    EXPECT_EQ(TellingCode(Mute(13), 12, true), 12);
}

TEST(TellingCodeTest, FailedConnectionToATargetThatAnsweredBeforeIsAPlainFailure) {
    EXPECT_EQ(TellingCode(Mute(13), 0, true), 1);
}

TEST(TellingCodeTest, FailedConnectionOfWhichNothingIsKnownStays) {
    EXPECT_EQ(TellingCode(Mute(13), 0, false), 13);
}

TEST(TellingCodeTest, FailureWithoutAWordGivesWayToWhatIsKnownOfTheTarget) {
    EXPECT_EQ(TellingCode(Mute(1), 12, true), 12);
    EXPECT_EQ(TellingCode(Mute(1), 0, true), 1);
}

TEST(TellingCodeTest, FailureWithAWordStays) {
    EXPECT_EQ(TellingCode(TarselResult(1, "Get connections list fail."), 12, true), 1);
}

TEST(TellingCodeTest, ReleaseThatCannotBeScannedIsUnsupported) {
    const TarselResult release(0x62B, "Tarsel do not support this installed VMWare ESXi Version.");
    EXPECT_EQ(ExitCodeFor(TellingCode(release, 0, true), false, 0), kExitUnsupported);
}

TEST(TellingCodeTest, OtherFailureOfAHypervisorStaysAFailure) {
    const TarselResult failure(0x62B, "The CIM service did not work on 127.0.0.1:5989.");
    EXPECT_EQ(ExitCodeFor(TellingCode(failure, 0, true), false, 0), kExitFailed);
}

TEST(TellingCodeTest, OtherCodesStay) {
    EXPECT_EQ(TellingCode(Mute(0), 13, true), 0);
    EXPECT_EQ(TellingCode(Mute(1747), 52, true), 1747);
}

}  // namespace
}  // namespace tarsel
