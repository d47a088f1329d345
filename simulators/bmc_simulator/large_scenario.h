// Generated scenario folders of any size, for benchmarks. All data are invented.

#pragma once

#include <string>

namespace simulators {

enum class LargeScenarioKind {
    kBare,        ///< root, one system, one manager, update service, `entries` firmware members
    kWithChassis  ///< also a chassis with slots, adapters and drives that the members relate to
};

/// Writes the scenario below `folder`, which is made where it is missing. Its root
/// offers $expand; BmcOptions::expand takes the offer back.
/// Throws std::runtime_error where a file cannot be written.
void MakeLargeScenario(const std::string& folder, int entries,
                       LargeScenarioKind kind = LargeScenarioKind::kBare);

}  // namespace simulators
