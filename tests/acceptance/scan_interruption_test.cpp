// Interrupted scans: the session at the target is ended, whatever happens here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using simulators::Fault;
using simulators::FaultRule;
using test_support::ChildProcess;
using testing::HasSubstr;

class ScanInterruptionTest : public TarselCommandTestBase {
  protected:
    // A BMC that never answers for an inventory, so that the scan is certainly in its middle.
    static simulators::BmcOptions StuckBmc() {
        auto options = Bmc();
        FaultRule rule;
        rule.method = "GET";
        rule.target_contains = "FirmwareInventory";
        rule.fault.kind = Fault::Kind::kSilent;
        options.faults = {rule};
        return options;
    }

    // True as soon as the BMC holds such a request.
    bool WaitForRequest(const std::string& part) const {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (std::chrono::steady_clock::now() < limit) {
            for (const std::string& line : bmc_->Counts().RequestLines()) {
                if (line.find(part) != std::string::npos) return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }
};

class ScanSignalTest : public ScanInterruptionTest, public testing::WithParamInterface<int> {};

TEST_P(ScanSignalTest, SessionIsEndedBeforeTheProcess) {
    StartBmc(StuckBmc());
    ChildProcess scan(Scan());
    ASSERT_TRUE(WaitForRequest("FirmwareInventory"));
    scan.Signal(GetParam());
    EXPECT_EQ(scan.Wait(), 128 + GetParam()) << scan.Errors();
    EXPECT_EQ(bmc_->Counts().sessions_made, 1);
    EXPECT_EQ(bmc_->Counts().sessions_ended, 1);
    EXPECT_THAT(Output("common_result.xml"),
                HasSubstr("<EXITCODE>" + std::to_string(128 + GetParam()) + "</EXITCODE>"));
}

INSTANTIATE_TEST_SUITE_P(Signals, ScanSignalTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(ScanInterruptionTest, SecondSignalEndsTheProcessAtOnce) {
    auto options = StuckBmc();
    FaultRule stuck_log_out;
    stuck_log_out.method = "DELETE";
    stuck_log_out.fault.kind = Fault::Kind::kSilent;
    options.faults.push_back(stuck_log_out);
    StartBmc(options);
    ChildProcess scan(Scan());
    ASSERT_TRUE(WaitForRequest("FirmwareInventory"));
    scan.Signal(SIGINT);
    ASSERT_TRUE(WaitForRequest("DELETE"));
    scan.Signal(SIGINT);
    EXPECT_EQ(scan.Wait(), 1000 + SIGINT);
}

TEST_F(ScanInterruptionTest, InterruptedScanSaysSoInOneSentence) {
    StartBmc(StuckBmc());
    ChildProcess scan(Scan({"--quiet"}));
    ASSERT_TRUE(WaitForRequest("FirmwareInventory"));
    scan.Signal(SIGINT);
    scan.Wait();
    EXPECT_THAT(scan.Errors(), testing::StartsWith("tarsel: "));
    EXPECT_THAT(scan.Errors(), HasSubstr("127.0.0.1"));
    EXPECT_EQ(scan.Output(), "");
}

}  // namespace
}  // namespace acceptance
