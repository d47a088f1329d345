#include "service/update_scan_service/detail/result_cleanup.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "service/update_scan_service/update_scan_report.h"

namespace service::detail {
namespace {

constexpr const char* kDriverClassification = "22";

// Two items are alike when the plain concatenations are equal, so that "AB" in slot "1" and "A" in
// slot "B1" are alike too. A separator, or a comparison field by field, would change reports.
using ScanItemKey = std::string;
using ScanItemKeyCounts = std::map<ScanItemKey, std::int32_t>;

ScanItemKey KeyOf(const UpdateScanItem& item) {
    return item.name + item.slotNum + item.version;
}

}  // namespace

void RemoveOemItems(UpdateScanReport& report) {
    std::erase_if(report.GetScanResults(),
                  [](const UpdateScanItem& item) { return item.name.starts_with("oem"); });
}

void DistinguishDuplicateNames(UpdateScanReport& report) {
    ScanItemKeyCounts counts;
    // A key changes with its item's name only, and then it is no longer needed: one look-up each.
    std::vector<std::pair<UpdateScanItem*, ScanItemKeyCounts::const_iterator>> firmware_items;
    for (UpdateScanItem& item : report.GetScanResults()) {
        if (item.classification == kDriverClassification) continue;
        const auto entry = counts.try_emplace(KeyOf(item), 0).first;
        ++entry->second;
        firmware_items.emplace_back(&item, entry);
    }
    for (const auto& [item, entry] : firmware_items) {
        if (entry->second > 1 || item->name == "Drive") {
            item->name += "(" + item->softwareId + ")";
        }
    }
}

}  // namespace service::detail
