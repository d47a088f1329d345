// Machine type and serial number of a target, by kind of connection.

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/redfish/redfish_channel.h"
#include "platform/system_info/machine_type_forms.h"
#include "platform/system_info/system_info.h"

int SystemInfoScan::GetMachineType(const ConnectionInfo& connection,
                                   std::pair<std::string, std::string>& mt_sn) {
    mt_sn = {};
    if (auto* channel = Vantix::redfish::RedfishChannel::Of(connection)) {
        return Vantix::system_info::MachineTypeOverRedfish(*channel, mt_sn);
    }
    if (auto* channel = Vantix::cim::CimChannel::Of(connection)) {
        return Vantix::system_info::MachineTypeOverCim(*channel, mt_sn);
    }
    if (const auto channel = Vantix::ipmi::IpmiChannel::Of(connection)) {
        return Vantix::system_info::MachineTypeOverIpmi(*channel, mt_sn);
    }
    if (connection.connect_case == Vantix::VantixConnection::kConnectCaseLocal) {
        return Vantix::system_info::MachineTypeOfLocalHost(mt_sn);
    }
    return GET_MACHINE_TYPE_FAILED;
}
