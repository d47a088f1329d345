#include "bmc_simulator/bmc_counts.h"

#include <algorithm>

namespace simulators {
namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, Lower, Lower);
}

}  // namespace

const std::string* FindHeader(const HeaderList& headers, std::string_view name) {
    const auto found = std::ranges::find_if(
        headers, [&](const auto& header) { return EqualIgnoringCase(header.first, name); });
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
