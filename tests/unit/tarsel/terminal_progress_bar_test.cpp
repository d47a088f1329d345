#include "tarsel/terminal_progress_bar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace tarsel {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kWipe = "\r\x1B[K";

TEST(TerminalProgressBarTest, InactiveBarWritesNothing) {
    std::ostringstream out;
    {
        TerminalProgressBar bar(out, false);
        bar.SetStageCount(1);
        bar.SetStage(0, "Scanning...");
        bar.SetTimerInterval(600);
        bar.ShowActivity("member 1 of 2");
        bar.ReportStageFailure(0, "Scan failed.");
    }
    EXPECT_THAT(out.str(), IsEmpty());
}

// What an active bar leaves after `use` and its own end.
template <typename Use>
std::string Drawn(Use use) {
    std::ostringstream out;
    {
        TerminalProgressBar bar(out, true);
        bar.SetStageCount(1);
        use(bar);
    }
    return out.str();
}

TEST(TerminalProgressBarTest, StageIsShownAtOnce) {
    EXPECT_THAT(Drawn([](TerminalProgressBar& bar) { bar.SetStage(0, "Scanning..."); }),
                HasSubstr(std::string(kWipe) + "Scanning... 0 s"));
}

TEST(TerminalProgressBarTest, EstimateComesInTenthsOfASecond) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStage(0, "Scanning...");
        bar.SetTimerInterval(600);
    });
    EXPECT_THAT(drawn, HasSubstr("of about 60 s"));
}

TEST(TerminalProgressBarTest, ActivityIsShownWithTheNextDrawing) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStage(0, "Scanning...");
        bar.ShowActivity("member 12 of 40");
        bar.SetTimerInterval(600);
    });
    EXPECT_THAT(drawn, HasSubstr("member 12 of 40"));
}

TEST(TerminalProgressBarTest, ActivityBeforeAStageIsNotDrawn) {
    EXPECT_THAT(Drawn([](TerminalProgressBar& bar) { bar.ShowActivity("early"); }), IsEmpty());
}

TEST(TerminalProgressBarTest, FinishedScanLeavesAnEmptyLine) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStage(0, "Scanning...");
        bar.SetStage(1, "Scanning finished.");
    });
    EXPECT_THAT(drawn, EndsWith(kWipe));
    EXPECT_THAT(drawn, testing::Not(HasSubstr("finished")));
}

TEST(TerminalProgressBarTest, FailedScanLeavesAnEmptyLine) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStage(0, "Scanning...");
        bar.ReportStageFailure(0, "Scan failed.");
    });
    EXPECT_THAT(drawn, EndsWith(kWipe));
}

TEST(TerminalProgressBarTest, BarThatDiesInTheMiddleLeavesAnEmptyLine) {
    EXPECT_THAT(Drawn([](TerminalProgressBar& bar) { bar.SetStage(0, "Scanning..."); }),
                EndsWith(kWipe));
}

TEST(TerminalProgressBarTest, NothingIsDrawnAfterTheEndOfAStage) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStage(0, "Scanning...");
        bar.Clear();
        bar.ShowActivity("late");
        bar.SetTimerInterval(100);
    });
    EXPECT_THAT(drawn, EndsWith(kWipe));
}

TEST(TerminalProgressBarTest, NewStageForgetsTheFormerOne) {
    const std::string drawn = Drawn([](TerminalProgressBar& bar) {
        bar.SetStageCount(2);
        bar.SetStage(0, "First...");
        bar.SetTimerInterval(600);
        bar.SetStage(1, "Second...");
    });
    EXPECT_THAT(drawn, EndsWith(std::string(kWipe) + "Second... 0 s" + kWipe));
}

TEST(TerminalProgressBarTest, WaitThatPutsOffTheEndIsNotTheLastWord) {
    std::ostringstream out;
    {
        TerminalProgressBar bar(out, true, [] { return true; });
        bar.SetStageCount(1);
        bar.SetStage(0, "Scanning...");
        bar.ShowActivity("waiting 60 seconds");
        bar.SetTimerInterval(0);
    }
    EXPECT_THAT(out.str(), HasSubstr("interrupted, ending"));
    EXPECT_THAT(out.str(), testing::Not(HasSubstr("waiting 60 seconds")));
}

TEST(TerminalProgressBarTest, WaitGoesOnWhileNobodyAsksForTheEnd) {
    std::ostringstream out;
    {
        TerminalProgressBar bar(out, true, [] { return false; });
        bar.SetStageCount(1);
        bar.SetStage(0, "Scanning...");
        bar.ShowActivity("waiting 60 seconds");
        bar.SetTimerInterval(0);
    }
    EXPECT_THAT(out.str(), HasSubstr("waiting 60 seconds"));
}

}  // namespace
}  // namespace tarsel
