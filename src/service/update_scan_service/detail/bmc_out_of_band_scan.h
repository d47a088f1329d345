// The scan of a server that is reached through its management controller alone.
//
// Deliberately not here: what is read over the chosen connection (bmc_connection_scan.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Scans over Redfish, else over CIM, and fills the report; `progress_bar` may be null.
///
/// Returns the result of the last connection attempt or scan. CFC and CSP systems are scanned over
/// Redfish alone; without a connection, theirs is GENERIC_FAILURE "Get connections list fail.". A
/// third-generation Tavro controller is never scanned over CIM: without Redfish support that is a
/// success with nothing scanned. Operating system and architecture become "None" in every case.
[[nodiscard]] TarselResult BmcOutOfBandScan(const UpdateScanOption& option,
                                            UpdateScanReport& report,
                                            DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
