// Repairs of versions and names that two classes of systems report in forms of their own.
//
// The two do different things on purpose; comparisons are exact and case-sensitive in both.
// Records without the expected texts stay as they are.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"

namespace service::detail {

/// Changes the version only: removes the record's own software identifier and a dash from its
/// beginning, or else the prefix that belongs to the identifier; then cuts the version of "UEFI"
/// before the first "(" and trims what it keeps.
void NormalizeCfcVersion(Vantix::VantixOptions::SoftwareIdentity_& identity);

/// Removes the prefix that belongs to the software identifier from the version and gives the UEFI
/// entry and FPGA images their names; FPGA images get the classification "FPGA" as well.
void NormalizeCspVersion(Vantix::VantixOptions::SoftwareIdentity_& identity);

/// Applies those that are asked for to every record: the first to all, then the second to all.
void NormalizeVersions(std::vector<Vantix::VantixOptions::SoftwareIdentity_>& identities,
                       bool is_cfc_system, bool is_csp_system);

}  // namespace service::detail
