// What the local families share: the tree that this run reads as its own machine, its devices where
// they are no files, and the list of what only root may read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/local/present_devices.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::local {

/// The status line that lists what only root may read.
inline constexpr const char* kPrivilegedSource = "attributes for root only";

/// The tree of the active run (ConnectOption::system_root). All families of one run share it, so
/// that nothing is read twice; without an active run each call gives a new one.
[[nodiscard]] std::shared_ptr<const transport::SystemRoot> HostRoot();

/// The devices of the active run's machine (PresentDevices), asked for once a run. Null where they
/// are files: for a recorded tree, and where the kernel shows them so.
[[nodiscard]] std::shared_ptr<const std::vector<PresentDevice>> HostDevices();

/// Tells the active run what `root` could not read for want of rights; an optional source, so the
/// scan does not become partial. Each family calls it when it has read all it wanted.
void ReportDenied(const transport::SystemRoot& root);

}  // namespace Vantix::local
