// From the user's arguments to the service's option record.
#pragma once

#include <memory>
#include <string>

#include "service/update_scan_service/update_scan_option.h"
#include "tarsel/scan_arguments.h"

namespace tarsel {

/// What must not stand in the arguments.
struct Secrets {
    std::string password;
    std::string ssh_key_passphrase;
};

/// The record for a scan of the target.
service::UpdateScanOption ScanOptionFor(
    const ScanArguments& arguments, const Secrets& secrets,
    const std::shared_ptr<Vantix::VantixConnection::RunContext>& run);

/// The scope with which the tables are printed: they list drivers in the scope "dd" alone, and
/// whoever scanned all wants to see them, too.
std::string TableScopeFor(const std::string& scan_type);

}  // namespace tarsel
