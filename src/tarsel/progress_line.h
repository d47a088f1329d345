// The one line that shows where a scan stands: pure text.
#pragma once

#include <cstddef>
#include <string>

namespace tarsel {

struct ProgressState {
    std::string stage;  ///< for example "Scanning..."
    int elapsed_seconds = 0;
    int estimated_seconds = 0;  ///< 0: unknown
    std::string activity;       ///< what is being waited for; may be empty
};

/// The line, at most `columns` - 1 columns wide so that the cursor stays on it, without control
/// bytes. The bar never shows a finished scan: an estimate is only an estimate.
std::string ProgressLine(const ProgressState& state, std::size_t columns);

}  // namespace tarsel
