// Which inventory entries are installed firmware, and which of them are backup images.
//
// Rule table, first match wins; letter case is ignored. A prefix counts only with a separator
// behind it ("Previous-", "Available_"), so that "AvailableMemory" keeps its meaning.
//
//   evidence                                                    entry is
//   Status.State Absent                                         not present
//   Id or Name starts Previous, Rollback                        a former version
//   Id or Name starts Available, Staged, Pending, Next          not installed yet
//   SoftwareStatus (own or below Oem) one of those words        the same
//   anything else, also Installed, Current, Disabled, Standby   installed
#pragma once

#include <boost/json.hpp>
#include <string>

namespace Vantix::redfish {

enum class InstallState { kInstalled, kFormer, kNotYet, kNotPresent };

[[nodiscard]] InstallState InstallStateOf(const boost::json::object& body);

/// For messages: "not present", ...; empty for kInstalled.
[[nodiscard]] std::string InstallStateText(InstallState state);

/// Whether the entry calls itself a backup: by its words, or by a standby state.
[[nodiscard]] bool CallsItselfBackup(const boost::json::object& body);

/// The Id without its Current or Installed prefix. Services that list a component under both
/// prefixes mean one installation. Empty when there is no such prefix.
[[nodiscard]] std::string IdBehindPrefix(const std::string& id, bool& is_current);

}  // namespace Vantix::redfish
