#include "doubles/platform_double.h"
#include "platform/disk/disk.h"
#include "platform/pci/pci.h"
#include "platform/raid/raid.h"

using doubles::PlatformDouble;

namespace Vantix {

int IBDISKSW::IBDiskSoftwareIdentity::GetDiskSoftwareIdentity(
    std::vector<VantixOptions::SoftwareIdentity_>& list) {
    return PlatformDouble::Current().GetDiskSoftwareIdentity(list);
}

int ARCCONF::ArcconfConfig::GetControllerList(std::vector<RaidController>& controllers, int mode) {
    return PlatformDouble::Current().GetControllerList(controllers, mode);
}

int ARCCONF::ArcconfConfig::GetCtrlDisks(RaidController& controller) {
    return PlatformDouble::Current().GetCtrlDisks(controller);
}

}  // namespace Vantix

int GetPciInfo(std::vector<PciInfo>& devices) {
    return PlatformDouble::Current().GetPciInfo(devices);
}

int GetPciInfoByAddress(const std::string& pci_address, PciInfo& device) {
    return PlatformDouble::Current().GetPciInfoByAddress(pci_address, device);
}
