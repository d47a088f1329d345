// Points in time as text: ISO 8601, always UTC, so that records of different machines compare.
#pragma once

#include <chrono>
#include <string>

#include "common/export.h"

namespace Vantix {

/// For example "2031-02-03T04:05:06Z".
TARSEL_EXPORT std::string UtcSecondsText(std::chrono::system_clock::time_point time);

/// For example "2031-02-03T04:05:06.789Z".
TARSEL_EXPORT std::string UtcMillisecondsText(std::chrono::system_clock::time_point time);

}  // namespace Vantix
