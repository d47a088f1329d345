// The place names of the scan's log records, and the bracket of timing trace entries around timed
// platform calls.
#pragma once

#include <source_location>

#include "platform/log/log.h"

namespace service::detail {

/// All files of the scan log under this one name, as readers of the logs expect it.
inline constexpr char kScanLogSource[] =
    "..\\..\\Src\\service\\update_scan_service\\detail\\service_update_scan_impl";

enum TraceStep : int {
    kTraceOsInfo = 14,
    kTraceMachineType = 15,
    kTraceDrivers = 19,
    kTraceSoftwareIdentities = 20,
    kTraceBmcInventory = 21,
    kTraceChassisInventory = 22,
    kTraceSwitchInventory = 23
};

/// Opens the bracket of a step.
inline void TraceBegin(TraceStep step,
                       std::source_location place = std::source_location::current()) {
    AddDetailTimeDebugLog(3, kScanLogSource, static_cast<int>(place.line()), "[B]", step, 0, "");
}

/// Closes it with the low 16 bits of the step's code.
inline void TraceEnd(TraceStep step, int code,
                     std::source_location place = std::source_location::current()) {
    AddDetailTimeDebugLog(3, kScanLogSource, static_cast<int>(place.line()), "[E]", step,
                          code & 0xFFFF, "");
}

}  // namespace service::detail
