// RAID controllers in scans that do not ask for the disks behind them.
//
// Some scans leave RAID controllers to the BMC. Their lists of disks must not look complete where
// the BMC may have told nothing of those disks.
#pragma once

#include "platform/connection/run_context.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::raid {

/// Keeps for the run that its RAID controllers are asked (raid.h).
void NoteAsked(VantixConnection::RunContext& run);

/// Tells `run` each RAID controller that keeps its disks from the system as not tried, unless they
/// are asked in this run. An optional source: the disks may be known from elsewhere.
void ReportUnasked(const transport::SystemRoot& root, VantixConnection::RunContext& run);

}  // namespace Vantix::raid
