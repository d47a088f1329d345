// Reads the devices of a server, for their slots, serial numbers and versions: network adapters,
// storage, drives, PCIe devices and slots, power supplies. All of them are optional.
//
// Two steps of requests: chassis and storage first, then what they link to.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/redfish/survey_task.h"

namespace Vantix::redfish {

class DeviceSurvey : public SurveyTask {
  public:
    using SurveyTask::SurveyTask;

    /// Starts reading the chassis.
    void Start();

    /// The computer system is known now (null: the target has none): starts reading its storage,
    /// and limits what is read to its own chassis. Must be called once.
    void SystemKnown(const Resource* system);

  private:
    void StorageEnded();
    void ChassisEnded();
    void ReadChassisDevices();
    void ReadDrives();
    void TakeDrives(boost::json::object& storage);
    void ReadControllers(std::size_t storage);
    void ReadPowerSupplies(const boost::json::object& chassis);
    void ReadPowerSuppliesByLink(const std::string& subsystem_path);
    void ReadPcieDevices();
    [[nodiscard]] bool IsOwnChassis(const Resource& chassis) const;
    [[nodiscard]] std::vector<std::string> NewPaths(const std::vector<std::string>& links);

    std::string system_path_;
    boost::json::object system_;
    bool chassis_ended_ = false;
    bool storage_ended_ = false;
    bool chassis_devices_asked_ = false;
    bool system_known_ = false;
    std::map<std::size_t, std::vector<Resource>> controllers_;  ///< by index of their storage
    std::set<std::string> seen_;                                ///< device paths already asked for
    std::vector<std::string> drive_links_;                      ///< from storage, in order
    int drive_collections_ = 0;                                 ///< still being read
};

}  // namespace Vantix::redfish
