// RAID controllers and the disks behind them, through the controllers' own tool.
//
// A controller that the system sees and no tool reads is told to the active run as not read, so
// that an empty list never means "no disks" by mistake.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace Vantix {
namespace raid {
class RaidScan;
}
namespace ARCCONF {

struct RaidDisk {
    std::string Name;  ///< maker and model
    std::string FirmwareVersion;
    std::string Identifier;  ///< part number where the tool tells one, else the model
    std::string Slot;        ///< bay, decimal; empty when the tool does not tell
    std::string SerialNumber;
};

struct RaidController {
    int Id = 0;              ///< the tool's number, one-based
    std::string PciAddress;  ///< domain:bus:device.function; empty when the tool does not tell
    std::string FirmwareVersion;
    std::vector<RaidDisk> Disks;
};

class ArcconfConfig {
  public:
    /// Fills `controllers` (without disks). Returns 0 or a result code; no controller and no tool
    /// are successes: TIMEOUT, ADMINISTRATOR_PERMISSION_NEEDED, INTERRUPTED_BY_USER,
    /// GENERIC_FAILURE for a tool that does not do its work. `mode` selects nothing: all
    /// controllers come in every mode.
    int GetControllerList(std::vector<RaidController>& controllers, int mode);
    /// Fills `controller.Disks`. Returns 0 or a result code, as above; what could be read is there
    /// after a failure too.
    int GetCtrlDisks(RaidController& controller);

  private:
    raid::RaidScan& Scan();
    std::shared_ptr<raid::RaidScan> scan_;  ///< made at the first question
};

}  // namespace ARCCONF
}  // namespace Vantix
