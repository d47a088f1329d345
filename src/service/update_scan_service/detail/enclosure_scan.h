// The scan of the management module of a dense enclosure.
//
// Deliberately not here: the shape of module firmware items (module_firmware.h).
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Connects over Redfish, else the module's own HTTPS service, else IPMI, and reports the power
/// supplies and then the module's firmware. The progress bar is not used.
///
/// Returns success; the result of the IPMI connection when none was made; GENERIC_FAILURE with an
/// empty message when the machine type cannot be read. Both failures leave the report untouched;
/// everything else that cannot be read is simply absent.
[[nodiscard]] TarselResult EnclosureScan(const UpdateScanOption& option, UpdateScanReport& report,
                                         DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
