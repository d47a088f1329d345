// The management module of a dense enclosure: its own facts and its power supplies.
#pragma once

#include <string>
#include <vector>

#include "platform/connection/connection.h"

struct PSUFwInfo {
    std::string Reserved;  ///< not read by the scan
    std::string SoftwareId, Version, SlotNum, Name;
};

namespace Vantix {

enum VeskInventoryErrorCode : int { VESK_INVENTORY_SUCCESS = 0, VESK_INVENTORY_FAILED = 1 };

class VeskInventory {
  public:
    explicit VeskInventory(const VantixConnection::ConnectionInfo& connection);
    VeskInventoryErrorCode GetMachineType(std::string& machine_type);
    VeskInventoryErrorCode GetSerialNumber(std::string& serial_number);
    VeskInventoryErrorCode GetFirmwareVersion(std::string& version);
    VeskInventoryErrorCode GetPSUFwInfo(std::vector<PSUFwInfo>& list);

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Vantix
