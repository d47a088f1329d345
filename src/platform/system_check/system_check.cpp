// The questions that the list files answer; what a BMC answers itself stands in a file of its own.
#include "platform/system_check/system_check.h"

#include "platform/system_check/system_list.h"

namespace Vantix {

struct SystemCheck::Lists {
    SystemList orvane;
    SystemList amd;
    SystemList cfc;
    SystemList csp;
    SystemList grantly;
    SystemList no_bmc;
};

SystemCheck::SystemCheck(const std::string& orvane, const std::string& amd, const std::string& cfc,
                         const std::string& csp, const std::string& grantly,
                         const std::string& no_bmc)
    : lists_(new Lists{SystemList(orvane), SystemList(amd), SystemList(cfc), SystemList(csp),
                       SystemList(grantly), SystemList(no_bmc)}) {}

SystemCheck::~SystemCheck() = default;

int SystemCheck::IsBlueSystem(const std::string& machine_type) {
    return lists_->orvane.Contains(machine_type) ? 1 : 0;
}

bool SystemCheck::IsCFCSystem(const std::string& machine_type) {
    return lists_->cfc.Contains(machine_type);
}

bool SystemCheck::IsAMDSystem(const std::string& machine_type) {
    return lists_->amd.Contains(machine_type);
}

bool SystemCheck::IsGrantlySystem(const std::string& machine_type) {
    return lists_->grantly.Contains(machine_type);
}

}  // namespace Vantix
