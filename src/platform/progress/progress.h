// How a running scan tells its front end where it stands.
#pragma once

#include <string>

#include "common/export.h"

/// The base class ignores every call; front ends derive from it.
class TARSEL_EXPORT DynamicProgressBar {
  public:
    virtual ~DynamicProgressBar();
    virtual void SetStageCount(int count);
    virtual void SetStage(int index, const std::string& text);
    /// `interval`: the estimated duration of the running stage in tenths of a second.
    virtual void SetTimerInterval(int interval);
    /// Marks a stage as failed.
    virtual void ReportStageFailure(int index, const std::string& text);
};
