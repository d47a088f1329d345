// RAID controllers and the disks behind them, through the controllers' own tool.
#pragma once

#include <string>
#include <vector>

namespace Vantix {
namespace ARCCONF {

struct RaidDisk {
    std::string Name, FirmwareVersion, Identifier, Slot, SerialNumber;
};

struct RaidController {
    int Id = 0;              ///< the tool's number, one-based
    std::string PciAddress;  ///< domain:bus:device.function
    std::string FirmwareVersion;
    std::vector<RaidDisk> Disks;
};

class ArcconfConfig {
  public:
    /// Fills `controllers` (without disks). Returns 0 or a result code; no controller is a success.
    int GetControllerList(std::vector<RaidController>& controllers, int mode);
    /// Fills `controller.Disks`. Returns 0 or a result code.
    int GetCtrlDisks(RaidController& controller);
};

}  // namespace ARCCONF
}  // namespace Vantix
