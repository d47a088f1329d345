// Exit codes, and what a target sees of a scan that ends in them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using simulators::Fault;
using simulators::FaultRule;
using testing::HasSubstr;
using testing::IsEmpty;

class ScanOutcomeTest : public TarselCommandTestBase {};

constexpr const char* kOneMember = "/redfish/v1/UpdateService/FirmwareInventory/";

TEST_F(ScanOutcomeTest, WholeScanWithAPinIsComplete) {
    StartBmc();
    const Ended ended = Run(Scan());
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("Example Rack 100"));
    EXPECT_THAT(ended.output, HasSubstr("Scan Result"));
    EXPECT_EQ(bmc_->Counts().sessions_made, 1);
    EXPECT_EQ(bmc_->Counts().sessions_ended, 1);
}

TEST_F(ScanOutcomeTest, CertificateFileIsAsGoodAsAPin) {
    StartBmc();
    EXPECT_EQ(Run(UntrustingScan({"--ca-file", bmc_->CaFile()})).exit_code, 0);
}

TEST_F(ScanOutcomeTest, InsecureScanWorksAndSaysSoOnce) {
    StartBmc();
    const Ended ended = Run(UntrustingScan({"--insecure"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    const std::size_t first = ended.errors.find("not checked");
    ASSERT_NE(first, std::string::npos) << ended.errors;
    EXPECT_EQ(ended.errors.find("not checked", first + 1), std::string::npos) << ended.errors;
}

TEST_F(ScanOutcomeTest, Ipv6AddressInBracketsIsScanned) {
    auto options = Bmc();
    options.listen_ipv6 = true;
    StartBmc(options);
    auto setup = Command({"scan", "--bmc", "demo@[::1]:" + std::to_string(bmc_->Port()), "--pin",
                          bmc_->Fingerprint(), "--output", folder_.Path("out")});
    setup.environment["TARSEL_PASSWORD"] = kPassword;
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<TARGET>[::1]:"));
}

TEST_F(ScanOutcomeTest, BasicLoginMakesNoSession) {
    StartBmc();
    EXPECT_EQ(Run(Scan({"--auth", "basic"})).exit_code, 0);
    EXPECT_EQ(bmc_->Counts().sessions_made, 0);
}

TEST_F(ScanOutcomeTest, WrongPasswordIsTriedOnce) {
    StartBmc();
    auto setup = Scan();
    setup.environment["TARSEL_PASSWORD"] = "wrong";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_EQ(bmc_->Counts().logins_refused, 1);
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
}

TEST_F(ScanOutcomeTest, DeadHostIsUnreachable) {
    StartBmc();
    const auto setup = Scan({"--deadline", "1"});  // no time for repetitions
    bmc_->Stop();
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 5) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
}

TEST_F(ScanOutcomeTest, UntrustedCertificateGetsNoByteOfARequest) {
    StartBmc();
    const Ended ended = Run(UntrustingScan());
    EXPECT_EQ(ended.exit_code, 6) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
    EXPECT_EQ(bmc_->Counts().requests, 0);
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
}

TEST_F(ScanOutcomeTest, WrongFingerprintGetsNoLogin) {
    StartBmc();
    const Ended ended = Run(UntrustingScan({"--pin", std::string(64, 'a')}));
    EXPECT_EQ(ended.exit_code, 6) << ended.errors;
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
    EXPECT_EQ(bmc_->Counts().sessions_made, 0);
    EXPECT_EQ(bmc_->Counts().requests, 0);
}

TEST_F(ScanOutcomeTest, ServiceWithoutRedfishIsUnsupported) {
    auto options = Bmc();
    options.scenario_dir.clear();
    StartBmc(options);
    const Ended ended = Run(Scan());
    EXPECT_EQ(ended.exit_code, 7) << ended.errors;
}

TEST_F(ScanOutcomeTest, LostMemberMakesTheScanPartial) {
    auto options = Bmc();
    options.expand = simulators::ExpandMode::kUnsupported;
    FaultRule rule;
    rule.target_prefix = kOneMember;
    rule.times = 1;
    rule.fault.kind = Fault::Kind::kStatus;
    rule.fault.status = 404;
    options.faults = {rule};
    StartBmc(options);
    const Ended ended = Run(Scan());
    EXPECT_EQ(ended.exit_code, 3) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("firmware inventory"));
    EXPECT_THAT(ended.output, HasSubstr("Scan Result"));
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), HasSubstr("<PACKAGE>"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<EXITCODE>3</EXITCODE>"));
}

TEST_F(ScanOutcomeTest, QuietPartialScanStillNamesItsGap) {
    auto options = Bmc();
    options.expand = simulators::ExpandMode::kUnsupported;
    FaultRule rule;
    rule.target_prefix = kOneMember;
    rule.times = 1;
    rule.fault.status = 404;
    options.faults = {rule};
    StartBmc(options);
    const Ended ended = Run(Scan({"--quiet"}));
    EXPECT_EQ(ended.exit_code, 3);
    EXPECT_THAT(ended.errors, testing::StartsWith("tarsel: The scan of 127.0.0.1"));
    EXPECT_THAT(ended.errors, HasSubstr("is partial: firmware inventory"));
}

TEST_F(ScanOutcomeTest, FactsAloneNeedNoInventory) {
    StartBmc();
    const Ended ended = Run(Scan({"--info-only"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("Example Rack 100"));
    EXPECT_EQ(Output("Tarsel-update-scan.xml").find("<PACKAGE>"), std::string::npos);
    for (const std::string& line : bmc_->Counts().RequestLines()) {
        EXPECT_EQ(line.find("FirmwareInventory"), std::string::npos) << line;
    }
}

class ScanUsageTest : public TarselCommandTestBase,
                      public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(ScanUsageTest, WrongUseIsToldInOneLine) {
    const Ended ended = Run(Command(GetParam()));
    EXPECT_EQ(ended.exit_code, 2) << ended.errors;
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(ended.errors, testing::StartsWith("tarsel: "));
    EXPECT_EQ(std::count(ended.errors.begin(), ended.errors.end(), '\n'), 1) << ended.errors;
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, ScanUsageTest,
    testing::Values(std::vector<std::string>{}, std::vector<std::string>{"scan"},
                    std::vector<std::string>{"update"},
                    std::vector<std::string>{"scan", "--bmc", "demo@127.0.0.1:port"},
                    std::vector<std::string>{"scan", "--bmc", "demo@[::1"},
                    std::vector<std::string>{"scan", "--bmc", "127.0.0.1"},
                    std::vector<std::string>{"scan", "--bmc", "demo@127.0.0.1", "--password=x"},
                    std::vector<std::string>{"scan", "--bmc", "demo:x@127.0.0.1"},
                    std::vector<std::string>{"scan", "--bmc", "demo@127.0.0.1", "--auth", "x"},
                    // No password and no terminal to ask for it.
                    std::vector<std::string>{"scan", "--bmc", "demo@127.0.0.1"}));

TEST_F(ScanOutcomeTest, HelpAndVersionSucceedOnTheStandardOutput) {
    const Ended help = Run(Command({"--help"}));
    EXPECT_EQ(help.exit_code, 0);
    EXPECT_THAT(help.output, HasSubstr("Exit codes:"));
    EXPECT_THAT(help.errors, IsEmpty());
    const Ended version = Run(Command({"--version"}));
    EXPECT_EQ(version.exit_code, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("tarsel [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
}  // namespace acceptance
