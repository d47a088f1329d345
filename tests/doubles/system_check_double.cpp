#include "platform/system_check/system_check.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

namespace Vantix {

struct SystemCheck::Lists {};

SystemCheck::SystemCheck(const std::string& orvane, const std::string& amd, const std::string& cfc,
                         const std::string& csp, const std::string& grantly,
                         const std::string& no_bmc) {
    PlatformDouble::Current().SystemCheckConstructor(orvane, amd, cfc, csp, grantly, no_bmc);
}

SystemCheck::~SystemCheck() = default;

bool SystemCheck::IsRedfishSupported(const ConnectionInfo& connection) {
    return PlatformDouble::Current().IsRedfishSupported(connection);
}

bool SystemCheck::IsRedfishServiceStarting(const ConnectionInfo& connection,
                                           const std::string& path) {
    return PlatformDouble::Current().IsRedfishServiceStarting(connection, path);
}

bool SystemCheck::IsTavroV3(const ConnectionInfo& connection) {
    return PlatformDouble::Current().IsTavroV3(connection);
}

std::string SystemCheck::GetReleaseName(const ConnectionInfo& connection) {
    return PlatformDouble::Current().GetReleaseName(connection);
}

int SystemCheck::IsBlueSystem(const std::string& machine_type) {
    return PlatformDouble::Current().IsBlueSystem(machine_type);
}

bool SystemCheck::IsCFCSystem(const std::string& machine_type) {
    return PlatformDouble::Current().IsCFCSystem(machine_type);
}

bool SystemCheck::IsAMDSystem(const std::string& machine_type) {
    return PlatformDouble::Current().IsAMDSystem(machine_type);
}

bool SystemCheck::IsGrantlySystem(const std::string& machine_type) {
    return PlatformDouble::Current().IsGrantlySystem(machine_type);
}

bool SystemCheck::GetUEFIVersion(std::string& version) {
    return PlatformDouble::Current().GetUEFIVersion(version);
}

int SystemCheck::GetMachineType(std::pair<std::string, std::string>& mt_sn) {
    return PlatformDouble::Current().SystemCheckGetMachineType(mt_sn);
}

}  // namespace Vantix
