// Chooses which request shows which fault. Applies nothing itself.

#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "bmc_simulator/bmc_options.h"

namespace simulators {

class FaultPlan {
  public:
    explicit FaultPlan(std::vector<FaultRule> rules = {});

    /// The fault of the first rule that matches and is not used up. `ordinal` counts from 1.
    [[nodiscard]] std::optional<Fault> Next(std::string_view method, std::string_view target,
                                            int ordinal, std::string_view body = {});

  private:
    std::vector<FaultRule> rules_;
};

}  // namespace simulators
