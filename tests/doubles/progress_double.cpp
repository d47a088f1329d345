#include "platform/progress/progress.h"

DynamicProgressBar::~DynamicProgressBar() = default;
void DynamicProgressBar::SetStageCount(int /*count*/) {}
void DynamicProgressBar::SetStage(int /*index*/, const std::string& /*text*/) {}
void DynamicProgressBar::SetTimerInterval(int /*interval*/) {}
void DynamicProgressBar::ReportStageFailure(int /*index*/, const std::string& /*text*/) {}
