// How scans over CIM end when the service is closed, unprotected, faulty or elsewhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using simulators::Fault;
using simulators::FaultRule;
using test_support::ChildProcess;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kCimPath = "/cimom";
constexpr const char* kInventory = "CIM_SoftwareIdentity\"";

class CimOutcomeTestBase : public TarselCommandTestBase {
  protected:
    static FaultRule InventoryFault(Fault::Kind kind, int status = 200) {
        FaultRule rule;
        rule.target = kCimPath;
        rule.body_contains = kInventory;
        rule.fault.kind = kind;
        rule.fault.status = status;
        return rule;
    }

    static simulators::BmcOptions ChassisWith(const FaultRule& rule) {
        auto options = Bmc("chassis-module");
        options.faults = {rule};
        return options;
    }

    [[nodiscard]] Arguments Chassis() const { return {"--tolv", Target()}; }
};

class CimOutcomeTest : public CimOutcomeTestBase {};

// Without a Redfish service the login is the CIM service's to refuse.
TEST_F(CimOutcomeTest, PasswordRefusedByTheFallBackIsTriedOnce) {
    auto options = Bmc("cim-only-bmc");
    FaultRule no_redfish;
    no_redfish.target_prefix = "/redfish";
    no_redfish.fault.kind = Fault::Kind::kStatus;
    no_redfish.fault.status = 404;
    options.faults = {no_redfish};
    StartBmc(options);
    auto setup = ScanOf({"--bmc", Target(), "--cim-port", Port()});
    setup.environment["TARSEL_PASSWORD"] = "wrong";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("the account's role"));
    const auto log = bmc_->Counts().log;
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [](const auto& request) { return request.status == 401; }),
              1);
}

TEST_F(CimOutcomeTest, PortBehindTheHostIsThatOfTheCimService) {
    StartBmc(Bmc("chassis-module"));
    const Ended ended = Run(ScanOf(Chassis()));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(bmc_->Counts().connections, 1);
}

TEST_F(CimOutcomeTest, NamespaceWithoutAnInventoryIsUnsupported) {
    StartBmc(Bmc("chassis-module"));
    const Ended ended = Run(ScanOf(Chassis(), {"--cim-namespace", "root/nowhere"}));
    EXPECT_EQ(ended.exit_code, 7) << ended.errors;
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>66</CODE>"));
}

TEST_F(CimOutcomeTest, WebServerWithoutCimIsUnsupported) {
    StartBmc(Bmc("rack-server"));
    const Ended ended = Run(ScanOf(Chassis()));
    EXPECT_EQ(ended.exit_code, 7) << ended.errors;
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>66</CODE>"));
}

TEST_F(CimOutcomeTest, HypervisorWithoutItsCimServiceIsToldHowToStartIt) {
    StartBmc(Bmc("esxi-host"));
    const Ended ended = Run(ScanOf({"--esxi", Target(), "--cim-port", "1"}));
    EXPECT_EQ(ended.exit_code, 7) << ended.errors;
    EXPECT_THAT(ended.errors, AllOf(HasSubstr("sfcbd-watchdog"), HasSubstr("127.0.0.1")));
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
}

TEST_F(CimOutcomeTest, BmcWithClosedCimIsToldToOpenIt) {
    StartBmc(Bmc("cim-only-bmc"));
    const Ended ended = Run(ScanOf({"--bmc", Target(), "--cim-port", "1"}));
    EXPECT_EQ(ended.exit_code, 7) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("enable CIM over HTTPS"));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>55</CODE>"));
}

// ---- a release that has no CIM service any more
// ------------------------------------------------

class NewerHypervisorTest : public CimOutcomeTestBase {
  protected:
    NewerHypervisorTest() {
        namespace fs = std::filesystem;
        fs::copy(std::string(TARSEL_SCENARIOS) + "/esxi-host", folder_.Path("host"),
                 fs::copy_options::recursive);
        Renew("host/sdk.xml");
        Renew("host/cim/CIM_OperatingSystem.xml");
        auto options = Bmc();
        options.scenario_dir = folder_.Path("host");
        StartBmc(options);
    }

    void ExpectUnsupported(const Ended& ended) const {
        EXPECT_EQ(ended.exit_code, 7) << ended.errors;
        EXPECT_THAT(ended.errors,
                    HasSubstr("Tarsel do not support this installed VMWare ESXi Version"));
        EXPECT_THAT(ended.output, IsEmpty());
    }

  private:
    void Renew(const std::string& file) const {
        const std::string before = "8.0.2";
        std::string text = folder_.Read(file);
        std::size_t at = text.find(before);
        ASSERT_NE(at, std::string::npos) << file;
        for (; at != std::string::npos; at = text.find(before)) {
            text.replace(at, before.size(), "9.0.0");
        }
        folder_.Write(file, text);
    }
};

TEST_F(NewerHypervisorTest, ThatStillSpeaksCimIsUnsupported) {
    ExpectUnsupported(Run(ScanOf({"--esxi", Target()})));
}

TEST_F(NewerHypervisorTest, ThatDoesNotSpeakCimIsUnsupportedToo) {
    ExpectUnsupported(Run(ScanOf({"--esxi", Target(), "--cim-port", "1"})));
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
}

// ---- CIM without TLS
// ----------------------------------------------------------------------------

class PlainCimScanTest : public CimOutcomeTestBase {
  protected:
    void StartPlainChassis() {
        auto options = Bmc("chassis-module");
        options.plain_http = true;
        StartBmc(options);
    }

    static long Times(const std::string& text, const std::string& part) {
        long times = 0;
        for (std::size_t at = text.find(part); at != std::string::npos;
             at = text.find(part, at + 1)) {
            ++times;
        }
        return times;
    }
};

TEST_F(PlainCimScanTest, LoginIsOnlySentWhereProtectionWasGivenUp) {
    StartPlainChassis();
    const Ended ended = Run(UntrustingScanOf(Chassis(), {"--cim-http"}));
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
    EXPECT_EQ(Times(ended.errors, "CIM runs without TLS: no user name and password are sent."), 1)
        << ended.errors;
}

TEST_F(PlainCimScanTest, InsecureOneWorksAndSaysSoOnce) {
    StartPlainChassis();
    const Ended ended = Run(UntrustingScanOf(Chassis(), {"--cim-http", "--insecure"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(Times(ended.errors, "CIM runs without TLS"), 1) << ended.errors;
    EXPECT_EQ(Times(ended.errors, "travel unprotected"), 1) << ended.errors;
}

// ---- faults
// --------------------------------------------------------------------------------------

struct CimFault {
    const char* name;
    Fault::Kind kind;
    int status;
    int exit_code;
};

void PrintTo(const CimFault& fault, std::ostream* out) {
    *out << fault.name;
}

class CimFaultTest : public CimOutcomeTestBase, public testing::WithParamInterface<CimFault> {};

TEST_P(CimFaultTest, EndsInASentenceAndItsExitCode) {
    StartBmc(ChassisWith(InventoryFault(GetParam().kind, GetParam().status)));
    const Ended ended = Run(ScanOf(Chassis(), {"--timeout", "2", "--inventory-timeout", "2"}));
    EXPECT_EQ(ended.exit_code, GetParam().exit_code) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("tarsel: "));
    EXPECT_THAT(ended.errors, AllOf(HasSubstr("CIM"), HasSubstr("127.0.0.1")));
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, CimFaultTest,
                         testing::Values(CimFault{"Reset", Fault::Kind::kReset, 200, 5},
                                         CimFault{"EmptyReply", Fault::Kind::kEmptyReply, 200, 5},
                                         CimFault{"Truncated", Fault::Kind::kTruncate, 200, 5},
                                         CimFault{"Silent", Fault::Kind::kSilent, 200, 5},
                                         CimFault{"Html", Fault::Kind::kHtml, 200, 7},
                                         CimFault{"Empty", Fault::Kind::kEmptyBody, 200, 7},
                                         CimFault{"Forbidden", Fault::Kind::kStatus, 403, 7},
                                         CimFault{"Failure", Fault::Kind::kStatus, 500, 1},
                                         CimFault{"Unavailable", Fault::Kind::kStatus, 503, 1}),
                         [](const testing::TestParamInfo<CimFault>& fault) {
                             return std::string(fault.param.name);
                         });

TEST_F(CimOutcomeTest, SummaryTellsWhatTheScanKeptToItself) {
    StartBmc(ChassisWith(InventoryFault(Fault::Kind::kStatus, 500)));
    EXPECT_EQ(Run(ScanOf(Chassis())).exit_code, 1);
    EXPECT_THAT(Output("common_result.xml"),
                AllOf(HasSubstr("<CODE>1</CODE>"), HasSubstr("The CIM service did not work on")));
}

TEST_F(CimOutcomeTest, InterruptedScanEnds) {
    StartBmc(ChassisWith(InventoryFault(Fault::Kind::kSilent)));
    ChildProcess scan(ScanOf(Chassis(), {"-vv"}));
    ASSERT_TRUE(scan.WaitForErrors("Start Tolv inventorying...")) << scan.Errors();
    scan.Signal(SIGINT);
    EXPECT_EQ(scan.Wait(), 130) << scan.Errors();
}

}  // namespace
}  // namespace acceptance
