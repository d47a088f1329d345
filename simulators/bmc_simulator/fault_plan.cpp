#include "bmc_simulator/fault_plan.h"

#include <utility>

namespace simulators {
namespace {

bool Matches(const FaultRule& rule, std::string_view method, std::string_view target, int ordinal,
             std::string_view body) {
    return (rule.method.empty() || rule.method == method) &&
           (rule.target.empty() || rule.target == target) &&
           target.starts_with(rule.target_prefix) &&
           target.find(rule.target_contains) != std::string_view::npos &&
           body.find(rule.body_contains) != std::string_view::npos &&
           (rule.nth_request == 0 || rule.nth_request == ordinal);
}

}  // namespace

FaultPlan::FaultPlan(std::vector<FaultRule> rules) : rules_(std::move(rules)) {}

std::optional<Fault> FaultPlan::Next(std::string_view method, std::string_view target, int ordinal,
                                     std::string_view body) {
    for (FaultRule& rule : rules_) {
        if (rule.times == 0 || !Matches(rule, method, target, ordinal, body)) continue;
        if (rule.skip > 0) {
            --rule.skip;
            continue;
        }
        if (rule.times > 0) --rule.times;
        return rule.fault;
    }
    return std::nullopt;
}

}  // namespace simulators
