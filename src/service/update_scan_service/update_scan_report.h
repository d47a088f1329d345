// What a scan found: facts about the target and its updatable units.
//
// Deliberately not here: validation or normalisation. Every value is kept exactly as it was given;
// the scan paths decide what the texts mean, serialize_update_scan.h saves, loads and prints them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/export.h"

namespace service {

/// One updatable unit of the target.
struct TARSEL_EXPORT UpdateScanItem {
    std::string softwareId;      ///< matches the unit to update packages: "UEFI", "BMC-BACKUP", ...
    std::string version;         ///< installed version as shown to the user
    std::string classification;  ///< decimal code; "22": operating-system driver
    std::string description;
    std::string name;            ///< display name
    std::string pldm;            ///< out-of-band update support: "1", or the inventory's own text
    std::string instanceId;      ///< tells units with equal softwareId apart; may be empty
    std::string slotNum;         ///< slot of the device that carries the unit; empty: none
    std::string slotType;        ///< decimal index of the slot type names; may be empty
    std::int32_t hasDevice = 0;  ///< 1 for firmware; for a driver the present devices it serves
};

/// The one result object that every scan path fills. Copies are independent of their source.
class TARSEL_EXPORT UpdateScanReport {
  public:
    std::string GetArch() const { return arch_; }
    std::string GetBmcReleaseName() const { return bmc_release_name_; }
    std::string GetBmcType() const { return bmc_type_; }
    std::string GetMT() const { return machine_type_; }
    std::string GetOS() const { return os_; }
    std::string GetOSMinorVersion() const { return os_minor_version_; }
    /// The serial number of the target: the name is historical (kept spelling).
    std::string GetScope() const { return scope_; }
    std::string GetSwitchDownstreamDevices() const { return switch_downstream_devices_; }
    std::string GetXmlVersion() const { return xml_version_; }

    void SetArch(const std::string& arch) { arch_ = arch; }
    void SetBmcReleaseName(const std::string& name) { bmc_release_name_ = name; }
    void SetBmcType(const std::string& type) { bmc_type_ = type; }
    void SetMT(const std::string& machine_type) { machine_type_ = machine_type; }
    void SetOS(const std::string& os) { os_ = os; }
    void SetOSMinorVersion(const std::string& version) { os_minor_version_ = version; }
    void SetScope(const std::string& serial_number) { scope_ = serial_number; }
    void SetSwitchDownstreamDevices(const std::string& flag) { switch_downstream_devices_ = flag; }
    void SetXmlVersion(const std::string& version) { xml_version_ = version; }

    /// Nonzero when the target is a partition of a partitioned system.
    int GetIsPartition() const { return is_partition_; }
    void SetIsPartition(int is_partition) { is_partition_ = is_partition; }

    /// The number of units that the back-end stated. Never derived from the item list.
    int GetScanCount() const { return scan_count_; }
    void SetScanCount(int count) { scan_count_ = count; }

    bool IsCheckDevice() const { return check_device_; }
    void SetCheckDevice(bool check_device) { check_device_ = check_device; }

    /// The list itself, not a copy.
    std::vector<UpdateScanItem>& GetScanResults() { return scan_results_; }
    const std::vector<UpdateScanItem>& GetScanResults() const { return scan_results_; }

    /// Replaces the whole list.
    void SetScanResults(const std::vector<UpdateScanItem>& items) { scan_results_ = items; }

    /// Appends one item, or copies of a range of items in its order. None of these changes the scan
    /// count. The range may be part of this report's own list.
    void PushScanItem(const UpdateScanItem& item);
    void PushScanItem(UpdateScanItem&& item);
    void PushScanItem(std::vector<UpdateScanItem>::const_iterator first,
                      std::vector<UpdateScanItem>::const_iterator last);

  private:
    std::string os_;
    std::string bmc_type_;
    std::string arch_;
    std::string os_minor_version_;
    std::string machine_type_;
    std::string scope_;
    std::string switch_downstream_devices_;
    std::string bmc_release_name_;
    std::string xml_version_ = "1.0";
    std::int32_t is_partition_ = 0;
    std::int32_t scan_count_ = 0;
    bool check_device_ = false;
    std::vector<UpdateScanItem> scan_results_;
};

}  // namespace service
