// The scan of an AMD platform with an AMI controller, from its own operating system.
//
// Deliberately not here: other hosts (in_band_bmc_scan.h, local_host_scan.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads firmware over Redfish, else IPMI, adds PCI devices, disks and drivers and fills the
/// report. The progress bar is not used.
///
/// Returns GET_OS_TYPE_FAILED "Failed to get AMD os info.", GENERIC_FAILURE "Failed to get AMD
/// machine type." or NO_AVAILABLE_USER_ID of the connection at once, with the report untouched. All
/// later failures leave the scan going: the first of them is the result, with a filled report.
[[nodiscard]] TarselResult AmdPlatformScan(const UpdateScanOption& option, UpdateScanReport& report,
                                           DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
