#include "tarsel/progress_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarsel {
namespace {

using testing::HasSubstr;
using testing::Not;

ProgressState AState(int elapsed, int estimated, const std::string& activity = "") {
    return {"Scanning...", elapsed, estimated, activity};
}

TEST(ProgressLineTest, ShowsStageTimeEstimateAndActivity) {
    EXPECT_EQ(ProgressLine(AState(15, 60, "member 12 of 40"), 100),
              "Scanning... [#####---------------] 15 s of about 60 s, member 12 of 40");
}

TEST(ProgressLineTest, WithoutEstimateThereIsNoBar) {
    EXPECT_EQ(ProgressLine(AState(15, 0), 100), "Scanning... 15 s");
}

TEST(ProgressLineTest, BarIsNeverFullWhileTheScanRuns) {
    EXPECT_THAT(ProgressLine(AState(600, 60), 100), HasSubstr("[###################-] 600 s of"));
}

TEST(ProgressLineTest, LineStaysShorterThanTheTerminal) {
    EXPECT_EQ(ProgressLine(AState(15, 60, std::string(500, 'x')), 40).size(), 39U);
    EXPECT_EQ(ProgressLine(AState(1, 0), 0).size(), 1U);
}

TEST(ProgressLineTest, LettersAreNotCutInTwo) {
    const std::string line = ProgressLine(AState(1, 0, "\xC3\xA4\xC3\xB6\xC3\xBC"), 20);
    EXPECT_EQ(line, "Scanning... 1 s, \xC3\xA4\xC3\xB6");
}

TEST(ProgressLineTest, ControlBytesOfATextCannotSteerTheTerminal) {
    EXPECT_THAT(ProgressLine(AState(1, 0, "a\x1B[2J\nb"), 100), HasSubstr("a [2J b"));
}

TEST(ProgressLineTest, HugeTimesDoNotOverflow) {
    EXPECT_THAT(ProgressLine(AState(2000000000, 1), 100), Not(HasSubstr("-]-")));
}

}  // namespace
}  // namespace tarsel
