// `tarsel scan`: password, scan, files, tables, and what the user is told about them.
#pragma once

#include "tarsel/scan_arguments.h"

namespace tarsel {

/// Returns the exit code. The tables go to the standard output, everything else to the standard
/// error output. What becomes of the files:
/// - common_result.xml is written whenever the scan was started;
/// - the scan XML is written when the scan succeeded (also partially) or failed with units in its
///   report; after a failure without any, the file of an earlier run is renamed to ".old".
int RunScanCommand(const ScanArguments& arguments);

}  // namespace tarsel
