// The scan of the host that the tool runs on, together with its management controller.
//
// Deliberately not here: what the controller tells (in_band_firmware.h), and hosts without one
// (local_host_scan.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads drivers, the controller's firmware and, where Redfish told none, the disks, and fills the
/// report; `progress_bar` may be null. Disks that the controller reported already are left out.
///
/// Returns the result of the system information when that failed (the report is then untouched) or
/// when no inventory was wanted; LEGACY_SYSTEM_NOT_SUPPORTED with a sentence for machines of the
/// predecessor brand; else the first failure among drivers, firmware and disks, or success. The
/// report is filled with what was found all the same.
[[nodiscard]] TarselResult InBandBmcScan(const UpdateScanOption& option, UpdateScanReport& report,
                                         DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
