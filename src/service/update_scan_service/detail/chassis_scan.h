// The scan of the management module of a blade chassis.
//
// Deliberately not here: its I/O switches (io_switch_scan.h), and the shape of module firmware
// items (module_firmware.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads the module's firmware over CIM and fills the report. The progress bar is not used.
///
/// Returns success, also when the module names no firmware; the result of the connection fetch when
/// that failed; GENERIC_FAILURE with an empty message when the fetch brought no connection or the
/// inventory failed, whatever its code. Failures leave the report untouched.
[[nodiscard]] TarselResult ChassisScan(const UpdateScanOption& option, UpdateScanReport& report,
                                       DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
