// How complete the remote run says it was: the sources in its common result file.
//
// The result itself is SummaryReport's affair.
#pragma once

#include <string>
#include <vector>

#include "platform/connection/run_context.h"

namespace Vantix::remote {

/// The sources of a common result file; empty when there is none that can be read. A source counts
/// as required only when the run ended with the exit code for partial scans: the file does not tell
/// which ones are optional. At most 100 sources, with clean texts.
[[nodiscard]] std::vector<VantixConnection::SourceStatus> ReadSources(const std::string& path);

}  // namespace Vantix::remote
