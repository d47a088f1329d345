// A progress bar whose calls are mock methods.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "platform/progress/progress.h"

namespace doubles {

class ProgressBarMock : public DynamicProgressBar {
  public:
    MOCK_METHOD(void, SetStageCount, (int), (override));
    MOCK_METHOD(void, SetStage, (int, const std::string&), (override));
    MOCK_METHOD(void, SetTimerInterval, (int), (override));
    MOCK_METHOD(void, ReportStageFailure, (int, const std::string&), (override));
};

using StrictProgressBar = testing::StrictMock<ProgressBarMock>;

}  // namespace doubles
