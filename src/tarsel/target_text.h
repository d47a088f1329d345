// What messages call the target of a scan and whoever asks for the password there.
#pragma once

#include <string>

#include "tarsel/scan_arguments.h"

namespace tarsel {

/// The target: host, and port where one was given; for this machine its own name, or "this machine"
/// when it has none; for a recorded machine tree its folder.
std::string TargetText(const ScanArguments& arguments);

/// Who is logged in to: the target, or this machine's BMC.
std::string PeerText(const ScanArguments& arguments);

}  // namespace tarsel
