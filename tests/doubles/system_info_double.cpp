#include "platform/system_info/system_info.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

int SystemInfoScan::GetOSInfo(std::pair<std::string, std::string>& os_arch,
                              std::string& os_minor_version) {
    return PlatformDouble::Current().GetOSInfo(os_arch, os_minor_version);
}

int SystemInfoScan::GetOSInfo(std::pair<std::string, std::string>& os_arch) {
    return PlatformDouble::Current().GetOSInfo(os_arch);
}

int SystemInfoScan::GetMachineType(const ConnectionInfo& connection,
                                   std::pair<std::string, std::string>& mt_sn) {
    return PlatformDouble::Current().GetMachineType(connection, mt_sn);
}

int SystemInfoScan::GetDriverData(std::vector<Vantix::DriverData>& drivers) {
    return PlatformDouble::Current().GetDriverData(drivers);
}

int SystemInfoScan::GetDiskDriverSoftwareIdentity(std::vector<SoftwareIdentity_>& disks) {
    return PlatformDouble::Current().GetDiskDriverSoftwareIdentity(disks);
}

int SystemInfoScan::GetTolvSoftwareIdentity(const ConnectionInfo& connection,
                                            std::vector<TolvInfo>& list) {
    return PlatformDouble::Current().GetTolvSoftwareIdentity(connection, list);
}

int SystemInfoScan::GetSwitchSoftwareIdentity(const ConnectionInfo& connection,
                                              const std::string& bay,
                                              std::vector<SwitchInfo>& list) {
    return PlatformDouble::Current().GetSwitchSoftwareIdentity(connection, bay, list);
}

int SystemInfoScan::GetEsxiOSInfo(const ConnectionInfo& connection,
                                  std::pair<std::string, std::string>& os_arch) {
    return PlatformDouble::Current().GetEsxiOSInfo(connection, os_arch);
}
