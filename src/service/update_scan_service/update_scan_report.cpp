#include "service/update_scan_service/update_scan_report.h"

#include <iterator>
#include <utility>

namespace service {

void UpdateScanReport::PushScanItem(const UpdateScanItem& item) {
    scan_results_.push_back(item);
}

void UpdateScanReport::PushScanItem(UpdateScanItem&& item) {
    scan_results_.push_back(std::move(item));
}

void UpdateScanReport::PushScanItem(std::vector<UpdateScanItem>::const_iterator first,
                                    std::vector<UpdateScanItem>::const_iterator last) {
    // Copied first: growing the list would end the life of iterators into it.
    std::vector<UpdateScanItem> copies(first, last);
    scan_results_.insert(scan_results_.end(), std::make_move_iterator(copies.begin()),
                         std::make_move_iterator(copies.end()));
}

}  // namespace service
