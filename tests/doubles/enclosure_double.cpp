#include "platform/enclosure/enclosure.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

namespace Vantix {

VeskInventory::VeskInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {
    PlatformDouble::Current().VeskInventoryConstructor(connection);
}

VeskInventoryErrorCode VeskInventory::GetMachineType(std::string& machine_type) {
    return PlatformDouble::Current().VeskGetMachineType(connection_, machine_type);
}

VeskInventoryErrorCode VeskInventory::GetSerialNumber(std::string& serial_number) {
    return PlatformDouble::Current().VeskGetSerialNumber(connection_, serial_number);
}

VeskInventoryErrorCode VeskInventory::GetFirmwareVersion(std::string& version) {
    return PlatformDouble::Current().VeskGetFirmwareVersion(connection_, version);
}

VeskInventoryErrorCode VeskInventory::GetPSUFwInfo(std::vector<PSUFwInfo>& list) {
    return PlatformDouble::Current().VeskGetPSUFwInfo(connection_, list);
}

}  // namespace Vantix
