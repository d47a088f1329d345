// The least that a front end needs: prints what the library is, and that a scan without a target
// says so.
#include <iostream>

#include "common/version/version.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"

int main() {
    service::ServiceUpdateScan scan{service::UpdateScanOption()};
    service::UpdateScanReport report;
    const TarselResult result = scan.Run(report);
    std::cout << TarselVersion() << ' ' << service::ServiceUpdateScan::ActionName() << ' '
              << service::SerializeScanReport::TAG_MT << '\n';
    return result.IsSucceed() ? 1 : 0;
}
