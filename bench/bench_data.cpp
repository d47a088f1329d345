#include "bench_data.h"

#include <string>

#include "service/update_scan_service/detail/identity_conversion.h"

namespace bench {

using Vantix::VantixOptions::SoftwareIdentity_;

std::vector<SoftwareIdentity_> MakeIdentities(std::size_t count) {
    std::vector<SoftwareIdentity_> identities(count);
    for (std::size_t n = 0; n < count; ++n) {
        const std::string number = std::to_string(n);
        SoftwareIdentity_& identity = identities[n];
        identity.Name = "Example Adapter " + (n % 10 == 0 ? "X" : number);
        identity.ElementName = identity.Name;
        identity.Description = "Invented firmware of example adapter " + number;
        identity.VersionString = "22." + std::to_string(n % 97) + ".4-build" + number;
        identity.SoftwareID = "EXFW-" + number;
        identity.Classifications = "10";
        identity.InstanceID = "Adapter" + number + ".Firmware";
        identity.AssociatedAdapterSlot = std::to_string(n % 12);
        identity.SlotType = 1;
        identity.IsPLDMUpdateSupported = n % 3 == 0 ? "1" : "0";
    }
    return identities;
}

service::UpdateScanReport MakeReport(std::size_t count) {
    service::UpdateScanReport report;
    report.SetMT("EX1000");
    report.SetScope("SN-EXAMPLE-1");
    report.SetBmcType("BMC");
    report.SetOS("None");
    report.SetArch("None");
    report.SetScanCount(static_cast<int>(count));
    service::detail::AppendSoftwareIdentities(report, MakeIdentities(count));
    return report;
}

}  // namespace bench
