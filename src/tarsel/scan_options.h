// From the user's arguments to the service's option record.
#pragma once

#include <memory>
#include <string>

#include "service/update_scan_service/update_scan_option.h"
#include "tarsel/scan_arguments.h"

namespace tarsel {

/// The record for a scan through the BMC.
service::UpdateScanOption ScanOptionFor(
    const ScanArguments& arguments, const std::string& password,
    const std::shared_ptr<Vantix::VantixConnection::RunContext>& run);

}  // namespace tarsel
