#include "platform/progress/progress.h"

#include <gtest/gtest.h>

namespace {

TEST(DynamicProgressBarTest, BaseClassStaysSilent) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    DynamicProgressBar bar;
    bar.SetStageCount(1);
    bar.SetStage(1, "Scanning...");
    bar.SetTimerInterval(600);
    bar.ReportStageFailure(1, "Scan failed.");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

class RecordingBar : public DynamicProgressBar {
  public:
    void SetStage(int index, const std::string& text) override {
        last = std::to_string(index) + text;
    }
    std::string last;
};

TEST(DynamicProgressBarTest, DerivedBarIsReachedThroughTheBase) {
    RecordingBar derived;
    DynamicProgressBar& bar = derived;
    bar.SetStage(1, "Scanning...");
    EXPECT_EQ(derived.last, "1Scanning...");
}

}  // namespace
