// From the records of the inventory libraries to the items of a scan report.
//
// Deliberately not here: anything that talks to a target, filters, merges or removes duplicates
// (result_cleanup.h), or repairs versions (version_normalization.h).
#pragma once

#include <iosfwd>
#include <string_view>
#include <vector>

#include "platform/identities/software_identity.h"

namespace Vantix {
struct DriverData;
}

namespace service {

class UpdateScanReport;
struct UpdateScanItem;

namespace detail {

/// True when a component of this software identifier is updatable through the management
/// controller without an agent: one of the known identifiers as a whole, a beginning of
/// "FPGA-IHFS", "FPGA-IHFG" or "HOLM-", or an ending of "_CPLD". ASCII case is ignored.
[[nodiscard]] bool IsAgentlessComponent(std::string_view software_id);

/// One item from one record. The agentless flag is "1" for an agentless component, whatever the
/// record says, and otherwise the record's own text as it stands.
[[nodiscard]] UpdateScanItem ConvertSoftwareIdentity(
    const Vantix::VantixOptions::SoftwareIdentity_& identity);

/// One item from one driver, with classification "22". A driver whose identifier carries the
/// marker "nodriver#" (in any case) and that has no version gets the version "N/A".
[[nodiscard]] UpdateScanItem ConvertDriverData(const Vantix::DriverData& driver);

/// Both append one item a record, in the order of the records, to the results of the report.
/// The scan count stays as it is.
void AppendSoftwareIdentities(
    UpdateScanReport& report,
    const std::vector<Vantix::VantixOptions::SoftwareIdentity_>& identities);
void AppendDriverData(UpdateScanReport& report, const std::vector<Vantix::DriverData>& drivers);

/// Writes the identity as log records show it: name, description, element name and version, one
/// line each, every line ended.
void DumpSoftwareIdentity(std::ostream& out,
                          const Vantix::VantixOptions::SoftwareIdentity_& identity);

}  // namespace detail
}  // namespace service
