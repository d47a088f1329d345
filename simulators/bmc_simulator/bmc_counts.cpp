#include "bmc_simulator/bmc_counts.h"

#include <algorithm>

#include "bmc_simulator/name_case.h"

namespace simulators {
const std::string* FindHeader(const HeaderList& headers, std::string_view name) {
    const auto found = std::ranges::find_if(
        headers, [&](const auto& header) { return SameName(header.first, name); });
    return found == headers.end() ? nullptr : &found->second;
}

int BmcCounts::RequestsTo(std::string_view target) const {
    return static_cast<int>(std::ranges::count(log, target, &RequestRecord::target));
}

std::vector<std::string> BmcCounts::RequestLines() const {
    std::vector<std::string> lines;
    for (const RequestRecord& record : log) lines.push_back(record.method + " " + record.target);
    return lines;
}

}  // namespace simulators
