// How complete a scan was, source by source, for people.
#pragma once

#include <string>
#include <vector>

#include "platform/connection/run_context.h"

namespace tarsel {

/// One line a source: name, state, counts and what went wrong; below it the first issues. Empty
/// without sources. Every line ends with a line end; control bytes of texts become blanks.
std::string StatusBlock(const std::string& target,
                        const std::vector<Vantix::VantixConnection::SourceStatus>& sources);

/// The sources with gaps in one sentence, for quiet runs; empty when there is none.
std::string GapSentence(const std::string& target,
                        const std::vector<Vantix::VantixConnection::SourceStatus>& sources);

}  // namespace tarsel
