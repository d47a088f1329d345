// Reads the firmware inventory of an update service (DSP8010, UpdateService and SoftwareInventory).
//
// The inventory is asked for ahead at the place where nearly every service keeps it; where the
// update service's own link leads elsewhere, the link wins.
#pragma once

#include "platform/redfish/survey_task.h"

namespace Vantix::redfish {

/// The name of the source under which the inventory is reported.
inline constexpr const char* kFirmwareSource = "firmware inventory";

class FirmwareSurvey : public SurveyTask {
  public:
    using SurveyTask::SurveyTask;

    /// Starts reading the inventory.
    void Start();

    /// Also reads the update service itself, to check the link and to learn of other inventories.
    /// Without it that is done only when the standard place gave nothing.
    void CheckLinks();

    /// Why the inventory could not be read; kNotFound when the service has none, or an update
    /// service that does not work at all (other resources then complete the list).
    [[nodiscard]] const transport::RedfishFailure& Failure() const { return failure_; }

    /// Reads the collection anew in place of what is there, for a service that has just started.
    /// What is there stays where that fails.
    void ReadAgain();

    /// Members read plus members that failed.
    [[nodiscard]] int MemberCount();
    [[nodiscard]] int FailedMembers() { return StatusOf(kFirmwareSource).items_failed; }
    [[nodiscard]] const std::string& Path() const { return path_; }

  private:
    void ReadInventory(const std::string& path);
    void ReadUpdateService();
    void TakeUpdateService(transport::RedfishAnswer&& answer);
    void InventoryEnded(const std::string& path, const transport::RedfishFailure& failure);
    void CompareLinks();
    void RestoreFormer();
    void ReadSoftwareInventory();

    std::string service_path_;
    std::string path_;
    transport::RedfishFailure failure_;
    std::vector<Resource> former_;  ///< what ReadAgain() is about to replace
    Status former_status_;
    bool has_former_ = false;
    bool inventory_ended_ = false;
    bool service_asked_ = false;
    bool service_ended_ = false;
    bool compared_ = false;
    bool service_is_broken_ = false;
};

}  // namespace Vantix::redfish
