// The run of a scan: options log, choice of the scan path, progress, clean-up of the report.
//
// Deliberately not here: what a scan path does (one file pair each beside this one).
#pragma once

#include <string>

#include "common/result/tarsel_result.h"
#include "service/update_scan_service/update_scan_option.h"

class DynamicProgressBar;

namespace service {

class UpdateScanReport;

namespace detail {

class ServiceUpdateScanImpl {
  public:
    explicit ServiceUpdateScanImpl(const UpdateScanOption& option);

    /// Logs the options, scans, and cleans the report up whatever the result was. Exceptions of
    /// the scan path pass: neither a progress call nor the clean-up follows them.
    [[nodiscard]] TarselResult Run(UpdateScanReport& report);

    void SetProgressBar(DynamicProgressBar* progress_bar) { progress_bar_ = progress_bar; }

  private:
    void LogOptions() const;
    [[nodiscard]] TarselResult Dispatch(UpdateScanReport& report) const;

    // The layout of these members is fixed; the scan reads neither the first nor the last.
    std::string reserved_;
    UpdateScanOption option_;
    DynamicProgressBar* progress_bar_ = nullptr;
    TarselResult last_result_;
};

}  // namespace detail
}  // namespace service
