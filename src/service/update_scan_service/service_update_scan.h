// The entry point of a scan: fill an UpdateScanOption, construct the service, run it.
//
// Deliberately not here: saving and printing the report (serialize_update_scan.h).
#pragma once

#include <string>

#include "common/export.h"
#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"
#include "service/update_scan_service/update_scan_report.h"

class DynamicProgressBar;

namespace service {

namespace detail {
class ServiceUpdateScanImpl;
}

class TARSEL_EXPORT ServiceUpdateScan {
  public:
    /// Copies the option. Exceptions of the allocation pass to the caller; nothing leaks then.
    explicit ServiceUpdateScan(const UpdateScanOption& option);
    ~ServiceUpdateScan();
    ServiceUpdateScan(const ServiceUpdateScan&) = delete;

    /// Shallow: both objects share the other one's implementation afterwards and the former
    /// implementation is given up, never freed. A caller must not destroy both objects. Kept,
    /// because front ends know it as such.
    ServiceUpdateScan& operator=(const ServiceUpdateScan& other);

    /// "Scan".
    [[nodiscard]] static const std::string ActionName();

    /// Scans the target and fills the report, which should be a fresh one. The result's code is
    /// that of the scan path; GENERIC_FAILURE for a connection mode that has none. Exceptions of a
    /// path pass to the caller, and the report is then not cleaned up.
    [[nodiscard]] TarselResult Run(UpdateScanReport& report);

    /// The bar must outlive Run; null switches all progress output off.
    void SetProgressBar(DynamicProgressBar* progress_bar);

  private:
    detail::ServiceUpdateScanImpl* impl_;
};

}  // namespace service
