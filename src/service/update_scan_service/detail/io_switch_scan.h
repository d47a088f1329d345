// The scan of one I/O switch of a blade chassis, through the chassis' management module.
//
// Deliberately not here: the module itself (chassis_scan.h), and the shape of module firmware items
// (module_firmware.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Reads the firmware of the switch in bay `bay_id` over CIM and fills the report. The progress bar
/// is not used.
///
/// Returns success, also when the switch names no firmware; the result of the connection fetch when
/// that failed; GENERIC_FAILURE with an empty message when the fetch brought no connection or the
/// inventory failed (its code is logged). Failures leave the report untouched.
[[nodiscard]] TarselResult IoSwitchScan(const UpdateScanOption& option, UpdateScanReport& report,
                                        DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
