// The scan of an ESXi host through its CIM service.
//
// Deliberately not here: which versions are supported and how the host's CIM service is looked at
// (platform/esxi).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads operating system, machine type, controller type and firmware of the host and fills the
/// report. The progress bar is not used. A host that does not tell its operating system is waited
/// for: sixty seconds after each of three attempts.
///
/// Returns success, also without a controller type; the result of the connection fetch when that
/// failed, GENERIC_FAILURE with an empty message when it brought no connection; ESXI_INTERNAL_ERROR
/// with a sentence for unsupported versions; the number of a failed pre-configuration with an empty
/// message; the code of the operating system or machine type read with its registered text;
/// GET_FIRMWARE_INFO_FAILED with an empty message when the inventory failed or is empty. Failures
/// leave the report untouched.
[[nodiscard]] TarselResult HypervisorScan(const UpdateScanOption& option, UpdateScanReport& report,
                                          DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
