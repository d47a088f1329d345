// Facts about a system: operating system, machine type, drivers, disks, chassis components.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"

namespace Vantix {

/// One installed operating-system driver.
struct DriverData {
    std::string Identifier;
    std::string Description;
    std::string Version;
    std::int32_t DevicePresent = 0;  ///< number of present devices that the driver serves
};

}  // namespace Vantix

/// One firmware component of a chassis management module.
struct TolvInfo {
    std::string MachineType, SerialNumber, SoftwareId, Version, Classification, Description, Name;
};

/// One firmware component of an I/O switch.
struct SwitchInfo {
    std::string MachineType, SerialNumber, SoftwareId, Version, Classification, Description, Name;
};

/// All functions return 0 or a result code. Pairs are (operating system, architecture) and
/// (machine type, serial number). Lists are appended to.
class SystemInfoScan {
    using ConnectionInfo = Vantix::VantixConnection::ConnectionInfo;
    using SoftwareIdentity_ = Vantix::VantixOptions::SoftwareIdentity_;

  public:
    static int GetOSInfo(std::pair<std::string, std::string>& os_arch,
                         std::string& os_minor_version);
    static int GetOSInfo(std::pair<std::string, std::string>& os_arch);
    /// Over Redfish: Model, else SKU, else PartNumber, of the computer system that the BMC manages.
    static int GetMachineType(const ConnectionInfo& connection,
                              std::pair<std::string, std::string>& mt_sn);
    static int GetDriverData(std::vector<Vantix::DriverData>& drivers);
    /// The same disks, in the same form, as IBDiskSoftwareIdentity (disk.h) tells them. What that
    /// told in the active run already is not told again, so that a scan which asks both, one after
    /// the other, lists each disk once.
    static int GetDiskDriverSoftwareIdentity(std::vector<SoftwareIdentity_>& disks);
    static int GetTolvSoftwareIdentity(const ConnectionInfo& connection,
                                       std::vector<TolvInfo>& list);
    static int GetSwitchSoftwareIdentity(const ConnectionInfo& connection, const std::string& bay,
                                         std::vector<SwitchInfo>& list);
    static int GetEsxiOSInfo(const ConnectionInfo& connection,
                             std::pair<std::string, std::string>& os_arch);
};
