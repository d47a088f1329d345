// A whole scan through the exported classes alone.
#include <gtest/gtest.h>

#include <vector>

#include "platform/progress/progress.h"
#include "service/update_scan_service/service_update_scan.h"
#include "simulated_server.h"

namespace {

class CountingBar : public DynamicProgressBar {
  public:
    void SetStage(int, const std::string& text) override { stages.push_back(text); }
    std::vector<std::string> stages;
};

TEST(LibraryScanTest, ServerIsScannedWithTheFrontEndsOwnProgressBar) {
    const simulators::BmcSimulator server(front_end::RackServer());
    service::ServiceUpdateScan scan(front_end::ScanOf(server));
    CountingBar bar;
    scan.SetProgressBar(&bar);
    service::UpdateScanReport report;
    const TarselResult result = scan.Run(report);
    EXPECT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(report.GetMT(), "Example Rack 100");
    EXPECT_GT(report.GetScanResults().size(), 20U);
    EXPECT_FALSE(bar.stages.empty());
}

TEST(LibraryScanTest, UntrustedServerIsNotScanned) {
    const simulators::BmcSimulator server(front_end::RackServer());
    service::UpdateScanOption option = front_end::ScanOf(server);
    option.connect_option.fingerprint.clear();
    service::ServiceUpdateScan scan(option);
    service::UpdateScanReport report;
    EXPECT_FALSE(scan.Run(report).IsSucceed());
    EXPECT_EQ(server.Counts().requests, 0);
}

}  // namespace
