// The scan of the host that the tool runs on, without any management controller.
//
// Deliberately not here: drivers, which this scan never reads, and hosts with a controller
// (in_band_bmc_scan.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reports the UEFI firmware, RAID controllers with their disks, the other disks and all PCI
/// devices. The progress bar is not used.
///
/// Returns the result of the local system information: a success, or its first failure; or
/// INTERNAL_ERROR "Get uefi version fail", with the facts of the host in the report and no item.
/// Nothing else fails the scan.
[[nodiscard]] TarselResult LocalHostScan(const UpdateScanOption& option, UpdateScanReport& report,
                                         DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
