// What a scan must know about the host and its controller before it inventories them.
//
// Deliberately not here: which inventory follows from it (in_band_bmc_scan.h).
#pragma once

#include <string>
#include <utility>

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

namespace service::detail {

struct TargetSystemInfo {
    std::pair<std::string, std::string> os_arch;  ///< operating system, architecture
    std::string os_minor_version;
    std::pair<std::string, std::string> mt_sn;  ///< machine type (known when not empty), serial
    std::string bmc_type;                       ///< known when not empty
    bool redfish_supported = false;
};

/// Fills `info`. What it holds of machine type and controller type is taken as known, and with both
/// nothing but the operating system is asked for: Redfish then counts as supported by a "Tavro"
/// alone. For scan type "dd" no connection is opened: the controller type follows from the lists of
/// machine types. Otherwise Redfish, CIM, IPMI and the local host are asked in this order, each for
/// what the former ones did not tell.
///
/// Returns success with an empty message; the code of the operating system's look-up;
/// AUTHENTICATION_FAILED or KCS_CONNECT_FAILED at once when Redfish or CIM answer so; else, when
/// something stays unknown, the first failed connection among IPMI, Redfish and CIM, or
/// INTERNAL_ERROR "Failed to get system info".
[[nodiscard]] TarselResult AcquireTargetSystemInfo(const UpdateScanOption& option,
                                                   TargetSystemInfo& info);

}  // namespace service::detail
