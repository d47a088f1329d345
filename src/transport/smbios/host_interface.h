// The management controller host interface (DMTF DSP0134, type 42) as DSP0270 fills it in: where
// the machine itself reaches the Redfish service of its BMC.
//
// Pure. Records of other kinds than Redfish over IP are passed over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "transport/smbios/smbios_table.h"

namespace Vantix::transport {

/// One way to the Redfish service. Addresses are texts without brackets and zone; empty when
/// unknown or unspecified.
struct RedfishHostInterface {
    int device_type = 0;      ///< 2 and 4: USB, 3 and 5: PCI
    std::string mac_address;  ///< of the host's end, "02:00:00:00:00:01"; empty where not told
    std::string host_address;
    std::string service_address;
    int service_port = 0;  ///< 0: not told
    std::string service_host_name;
};

/// In the order of the table.
[[nodiscard]] std::vector<RedfishHostInterface> ReadRedfishHostInterfaces(
    const SmbiosStructures& structures);

/// Four bytes as IPv4, sixteen as IPv6 (RFC 5952); empty for other lengths and for the unspecified
/// address.
[[nodiscard]] std::string IpAddressText(std::string_view bytes);

}  // namespace Vantix::transport
