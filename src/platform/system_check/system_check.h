// Questions about a system: is its machine type on one of the lists, what can its BMC do.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/connection/connection.h"

namespace Vantix {

/// The list files are read on the first question about them, once an object; the constructor does
/// no I/O. Format: UTF-8, one machine type a line, '#' begins a comment, blanks trimmed, compared
/// whole and ignoring ASCII case; a missing file is an empty list.
class SystemCheck {
    using ConnectionInfo = VantixConnection::ConnectionInfo;

  public:
    SystemCheck(const std::string& orvane, const std::string& amd, const std::string& cfc,
                const std::string& csp, const std::string& grantly, const std::string& no_bmc);
    ~SystemCheck();
    SystemCheck(const SystemCheck&) = delete;
    SystemCheck& operator=(const SystemCheck&) = delete;

    /// True when the service root carries a Redfish version and links to something that tells
    /// firmware versions: update service, computer systems, managers or chassis.
    bool IsRedfishSupported(const ConnectionInfo& connection);
    /// True while `path` is answered with 503 or the connection is refused.
    bool IsRedfishServiceStarting(const ConnectionInfo& connection, const std::string& path);
    /// True for a third-generation Tavro BMC.
    bool IsTavroV3(const ConnectionInfo& connection);
    /// Release name of the BMC firmware; empty when it is not told.
    std::string GetReleaseName(const ConnectionInfo& connection);

    int IsBlueSystem(const std::string& machine_type);  ///< non-zero: in the Orvane list
    bool IsCFCSystem(const std::string& machine_type);
    bool IsAMDSystem(const std::string& machine_type);
    bool IsGrantlySystem(const std::string& machine_type);

    /// Version of the local host's UEFI or BIOS firmware (SMBIOS, DSP0134, type 0).
    bool GetUEFIVersion(std::string& version);
    /// Machine type and serial number of the local host (SMBIOS type 1); 0 on success.
    int GetMachineType(std::pair<std::string, std::string>& mt_sn);

  private:
    struct Lists;
    std::unique_ptr<Lists> lists_;
};

}  // namespace Vantix
