// How complete a scan was, source by source, for people.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"

namespace tarsel {

inline constexpr std::size_t kIssuesShown = 3;
inline constexpr std::size_t kAllIssues = std::numeric_limits<std::size_t>::max();

/// One line a source: name, state, counts and what went wrong; below it the first issues and
/// the number of the others. Empty without sources. Every line ends with a line end; control bytes
/// of texts become blanks.
std::string StatusBlock(const std::string& target,
                        const std::vector<Vantix::VantixConnection::SourceStatus>& sources,
                        std::size_t issues_shown = kIssuesShown);

/// The sources with gaps in one sentence, for quiet runs; empty when there is none.
std::string GapSentence(const std::string& target,
                        const std::vector<Vantix::VantixConnection::SourceStatus>& sources);

}  // namespace tarsel
