#include "service/update_scan_service/service_update_scan.h"

#include "service/update_scan_service/detail/service_update_scan_impl.h"

namespace service {

ServiceUpdateScan::ServiceUpdateScan(const UpdateScanOption& option)
    : impl_(new detail::ServiceUpdateScanImpl(option)) {}

ServiceUpdateScan::~ServiceUpdateScan() {
    delete impl_;
}

ServiceUpdateScan& ServiceUpdateScan::operator=(const ServiceUpdateScan& other) = default;

const std::string ServiceUpdateScan::ActionName() {
    return "Scan";
}

TarselResult ServiceUpdateScan::Run(UpdateScanReport& report) {
    return impl_->Run(report);
}

void ServiceUpdateScan::SetProgressBar(DynamicProgressBar* progress_bar) {
    impl_->SetProgressBar(progress_bar);
}

}  // namespace service
