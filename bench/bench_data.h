// Invented inventories of any size for the benchmarks.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/identities/software_identity.h"
#include "service/update_scan_service/update_scan_report.h"

namespace bench {

/// `count` identities as a rack server's inventory delivers them; every tenth shares its name.
std::vector<Vantix::VantixOptions::SoftwareIdentity_> MakeIdentities(std::size_t count);

/// A whole report with the items of MakeIdentities.
service::UpdateScanReport MakeReport(std::size_t count);

}  // namespace bench
