// The lists of machine types beside the library, and the questions that scan paths ask of them.
//
// Deliberately not here: the format of the files (platform/system_check).
#pragma once

#include <string>

#include "platform/system_check/system_check.h"

namespace service::detail {

/// The system check over the six list files in the folder of this library.
[[nodiscard]] Vantix::SystemCheck MakeSystemCheck();

/// True for a machine of the predecessor brand, which current tools must leave alone. An empty
/// machine type is never looked up.
[[nodiscard]] bool IsLegacySystem(Vantix::SystemCheck& system_check,
                                  const std::string& machine_type);

}  // namespace service::detail
