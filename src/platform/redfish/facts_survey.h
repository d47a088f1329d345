// Reads what identifies a server: its computer systems and its managers.
#pragma once

#include <functional>

#include "platform/redfish/survey_task.h"

namespace Vantix::redfish {

class FactsSurvey : public SurveyTask {
  public:
    using SurveyTask::SurveyTask;

    /// Starts reading both collections, at the root's links or, where a link is missing, at the
    /// standard paths. `on_done` is called when both have ended, well or badly.
    void Start(std::function<void()> on_done);

    /// Why the systems, or the managers, could not be read; no failure when they could.
    [[nodiscard]] const transport::RedfishFailure& SystemsFailure() const { return systems_; }
    [[nodiscard]] const transport::RedfishFailure& ManagersFailure() const { return managers_; }

  private:
    void Ended();

    transport::RedfishFailure systems_;
    transport::RedfishFailure managers_;
    int to_come_ = 2;
    std::function<void()> on_done_;
};

}  // namespace Vantix::redfish
