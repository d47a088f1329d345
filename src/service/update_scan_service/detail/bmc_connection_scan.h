// One inventory over one connection to a management controller.
//
// Deliberately not here: the choice of the connection (bmc_out_of_band_scan.h).
#pragma once

#include <string>
#include <vector>

#include "common/result/tarsel_result.h"
#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"
#include "platform/system_check/system_check.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// May run several times, over one connection after the other. What it is constructed from must
/// outlive it; `progress_bar` may be null.
class BmcConnectionScan {
    using ConnectionInfo = Vantix::VantixConnection::ConnectionInfo;
    using Identities = std::vector<Vantix::VantixOptions::SoftwareIdentity_>;

  public:
    BmcConnectionScan(const UpdateScanOption& option, UpdateScanReport& report,
                      DynamicProgressBar* progress_bar, Vantix::SystemCheck& system_check);

    /// Success; the code of the machine-type look-up with its registered text; with an empty
    /// message LEGACY_SYSTEM_NOT_SUPPORTED, or GET_FIRMWARE_INFO_FAILED when no component was
    /// found; INTERNAL_ERROR "Failed to get BMC type.". The release name in the report changes
    /// always, all else only on success.
    [[nodiscard]] TarselResult Run(const ConnectionInfo& connection);

  private:
    [[nodiscard]] TarselResult AcquireMachineType(const ConnectionInfo& connection);
    [[nodiscard]] TarselResult TakeInventory(const ConnectionInfo& connection);
    void StartTimer() const;
    [[nodiscard]] Identities ReadIdentities(const ConnectionInfo& connection) const;
    void AppendPersistentMemory(Identities& identities) const;
    void StorePlatform(const std::string& bmc_type, int scan_count) const;

    const UpdateScanOption& option_;
    UpdateScanReport& report_;
    DynamicProgressBar* progress_bar_;
    Vantix::SystemCheck& system_check_;
    std::string machine_type_;
    std::string serial_number_;
};

}  // namespace detail
}  // namespace service
