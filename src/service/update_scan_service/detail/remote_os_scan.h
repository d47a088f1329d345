// The scan of a remote operating system by the tool's own run there.
//
// Deliberately not here: the channel to the remote machine (platform/remote_command) and the format
// of what it brings back.
#pragma once

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

/// Sets the remote machine up, runs `remote_command` there, fetches its files, loads the scan file
/// into the report where there is one, and returns what the remote run says of itself. The progress
/// bar is not used. The command is logged when it fails: it must hold no secret.
///
/// Failures: CONNECTION_FAILED "Failed to parse uri"; REMOTE_MACHINE_NOT_SUPPORTED with the reason
/// why there is no channel; the result of a failed step of the channel; the code of a scan file
/// that cannot be loaded; GENERIC_FAILURE "Failed to extract remote common result", with what was
/// loaded before in the report; GENERIC_FAILURE with the text of an exception. No exception leaves
/// it.
[[nodiscard]] TarselResult RemoteOsScan(const UpdateScanOption& option, UpdateScanReport& report,
                                        DynamicProgressBar* progress_bar);

}  // namespace detail
}  // namespace service
