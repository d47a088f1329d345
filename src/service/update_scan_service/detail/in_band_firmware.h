// The firmware that a host's own management controller tells over Redfish or CIM.
//
// Deliberately not here: drivers and disks, which the host tells itself (in_band_bmc_scan.h).
#pragma once

#include <string>
#include <vector>

#include "common/result/tarsel_result.h"
#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"
#include "platform/system_check/system_check.h"
#include "service/update_scan_service/update_scan_option.h"

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads once. A "Tavro" controller (any case) is asked over Redfish, then over its first CIM
/// connection, and for persistent memory where Redfish does not work; every other one over all of
/// its CIM connections. What it is constructed from must outlive it.
class InBandFirmware {
    using ConnectionInfo = Vantix::VantixConnection::ConnectionInfo;
    using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;

  public:
    /// `os`: the operating system; "PLATFORM" gets the controller's device list as a file.
    InBandFirmware(const UpdateScanOption& option, const std::string& os, UpdateScanReport& report);

    /// Appends to `identities`, and may store the controller's release name in the report. Failed
    /// connections and reads are logged; they count only when nothing was found at all: then the
    /// result is a failed CIM connection, GET_FIRMWARE_INFO_FAILED, or a failed Redfish connection
    /// for a "Tavro", and GET_FIRMWARE_INFO_FAILED for every other one.
    [[nodiscard]] TarselResult Read(const std::string& bmc_type, Identities& identities);

    /// True when the Redfish inventory named at least one component.
    [[nodiscard]] bool RedfishFoundSomething() const { return redfish_found_something_; }

  private:
    [[nodiscard]] TarselResult ReadTavro(Identities& identities);
    [[nodiscard]] TarselResult ReadOther(Identities& identities) const;
    void ReadOverRedfish(Vantix::SystemCheck& system_check, Identities& identities);
    void ReadOverFirstCim(Identities& identities);
    void AppendPersistentMemory(Identities& identities) const;

    const UpdateScanOption& option_;
    const std::string& os_;
    UpdateScanReport& report_;
    ConnectionInfo rest_;
    TarselResult rest_result_;
    TarselResult cim_result_;
    bool redfish_found_something_ = false;
};

}  // namespace detail
}  // namespace service
