// The clean-up that every finished scan gets, whatever its result.
//
// Deliberately not here: adding, re-ordering or merging items, and correcting the scan count.
#pragma once

namespace service {

class UpdateScanReport;

namespace detail {

/// Erases the items whose name begins with "oem" (lower case only); the others keep their order.
void RemoveOemItems(UpdateScanReport& report);

/// Appends "(", the software identifier and ")" to the name of every item that shares name, slot
/// number and version with another one, and to every item named exactly "Drive". Driver items
/// (classification "22") are neither counted nor renamed.
void DistinguishDuplicateNames(UpdateScanReport& report);

}  // namespace detail
}  // namespace service
