#include "service/update_scan_service/detail/system_lists.h"

#include "platform/os/os.h"

namespace service::detail {

Vantix::SystemCheck MakeSystemCheck() {
    const std::string directory = Vantix::GetModuleDirectory();
    return Vantix::SystemCheck(
        directory + "Orvane_systems_list.txt", directory + "AMD_systems_list.txt",
        directory + "CFC_systems_list.txt", directory + "CSP_systems_list.txt",
        directory + "Grantly_systems_list.txt", directory + "NO_BMC_systems_list.txt");
}

bool IsLegacySystem(Vantix::SystemCheck& system_check, const std::string& machine_type) {
    return !machine_type.empty() && system_check.IsBlueSystem(machine_type) != 0;
}

}  // namespace service::detail
