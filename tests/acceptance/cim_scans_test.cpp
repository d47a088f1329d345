// Machines that speak CIM, from the command line to the scan file: what is expected lies beside
// each scenario.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "acceptance/tarsel_command_test_base.h"
#include "support/golden_file.h"

namespace acceptance {
namespace {

using simulators::Fault;
using simulators::FaultRule;
using test_support::MatchesGoldenFile;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct CimMachine {
    const char* scenario;
    const char* option;
    std::vector<std::string> more;
    bool is_cim_port_given = false;
};

void PrintTo(const CimMachine& machine, std::ostream* out) {
    *out << machine.option << " of " << machine.scenario;
}

class CimScanTestBase : public TarselCommandTestBase {
  protected:
    [[nodiscard]] std::vector<std::string> TargetOf(const CimMachine& machine) const {
        std::vector<std::string> target{machine.option, Target()};
        target.insert(target.end(), machine.more.begin(), machine.more.end());
        if (machine.is_cim_port_given) target.insert(target.end(), {"--cim-port", Port()});
        return target;
    }
    [[nodiscard]] static std::string Expected(const CimMachine& machine, const char* file) {
        return std::string(TARSEL_SCENARIOS) + "/" + machine.scenario + "/" + file;
    }
    void Start(const CimMachine& machine, std::vector<FaultRule> faults = {}) {
        simulators::BmcOptions options = Bmc(machine.scenario);
        options.faults = std::move(faults);
        StartBmc(std::move(options));
    }
    static FaultRule FaultOf(Fault::Kind kind, int status = 200) {
        FaultRule rule;
        rule.target = "/cimom";
        rule.fault.kind = kind;
        rule.fault.status = status;
        return rule;
    }
};

class CimScanTest : public CimScanTestBase, public testing::WithParamInterface<CimMachine> {};

TEST_P(CimScanTest, GivesTheExpectedTablesAndScanFile) {
    Start(GetParam());
    const Ended ended = Run(ScanOf(TargetOf(GetParam())));
    EXPECT_TRUE(MatchesGoldenFile(ended.output, Expected(GetParam(), "expected-tables.txt")));
    EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"),
                                  Expected(GetParam(), "expected-scan.xml")));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
}

TEST_P(CimScanTest, WrongPasswordIsTriedOnce) {
    Start(GetParam());
    auto setup = ScanOf(TargetOf(GetParam()));
    setup.environment["TARSEL_PASSWORD"] = "wrong";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_EQ(bmc_->Counts().logins_refused, 1);
}

TEST_P(CimScanTest, UntrustedCertificateGetsNoByteOfARequest) {
    Start(GetParam());
    const Ended ended = Run(UntrustingScanOf(TargetOf(GetParam())));
    EXPECT_EQ(ended.exit_code, 6) << ended.errors;
    EXPECT_EQ(bmc_->Counts().requests, 0);
}

TEST_P(CimScanTest, SilentServiceEndsInTime) {
    Start(GetParam(), {FaultOf(Fault::Kind::kSilent)});
    const Ended ended = Run(ScanOf(TargetOf(GetParam()), {"--timeout", "1"}));
    EXPECT_EQ(ended.exit_code, 5) << ended.errors;
    EXPECT_THAT(ended.output, IsEmpty());
}

TEST_P(CimScanTest, ResetConnectionsAreToldAndEnd) {
    Start(GetParam(), {FaultOf(Fault::Kind::kReset)});
    EXPECT_EQ(Run(ScanOf(TargetOf(GetParam()))).exit_code, 5);
}

TEST_P(CimScanTest, WebPageInsteadOfAnAnswerIsUnsupported) {
    Start(GetParam(), {FaultOf(Fault::Kind::kHtml)});
    EXPECT_EQ(Run(ScanOf(TargetOf(GetParam()))).exit_code, 7);
}

TEST_P(CimScanTest, OneResetIsOvercome) {
    FaultRule rule = FaultOf(Fault::Kind::kReset);
    rule.skip = 1;
    rule.times = 1;
    Start(GetParam(), {rule});
    const Ended ended = Run(ScanOf(TargetOf(GetParam())));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"),
                                  Expected(GetParam(), "expected-scan.xml")));
}

TEST_P(CimScanTest, DeadHostIsUnreachable) {
    Start(GetParam());
    auto target = TargetOf(GetParam());
    // The CIM service is named by its own option, so that no other port is taken for the host's.
    if (!GetParam().is_cim_port_given) target.insert(target.end(), {"--cim-port", Port()});
    const auto setup = ScanOf(target);
    bmc_->Stop();
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 5) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), IsEmpty());
}

TEST_P(CimScanTest, NoSecretIsInAnyOutputAtTheHighestVerbosity) {
    Start(GetParam());
    const Ended ended = Run(ScanOf(TargetOf(GetParam()), {"-vv"}));
    ASSERT_GT(bmc_->Counts().authorization_headers_seen, 0);
    const std::string all =
        ended.output + ended.errors + Output("tarsel.log") + Output("common_result.xml");
    EXPECT_THAT(all, Not(HasSubstr("Fake-Pass")));
    for (const auto& request : bmc_->Counts().log) {
        const std::string* const login = simulators::FindHeader(request.headers, "authorization");
        if (login == nullptr) continue;
        EXPECT_THAT(all, Not(HasSubstr(login->substr(login->find(' ') + 1))));
    }
}

std::string NameOf(const testing::TestParamInfo<CimMachine>& info) {
    std::string name = info.param.scenario;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Machines, CimScanTest,
                         testing::Values(CimMachine{"chassis-module", "--tolv", {}},
                                         CimMachine{"chassis-switch", "--tolv", {"--switch", "2"}},
                                         CimMachine{"esxi-host", "--esxi", {}},
                                         CimMachine{"cim-only-bmc", "--bmc", {}, true},
                                         CimMachine{"tavro-v3-no-redfish", "--bmc", {}, true}),
                         NameOf);

class CimScanOutcomeTest : public CimScanTestBase {};

TEST_F(CimScanOutcomeTest, BayWithoutSwitchIsTold) {
    Start({"chassis-switch", "--tolv", {}});
    const Ended ended = Run(ScanOf({"--tolv", Target(), "--switch", "3"}));
    EXPECT_EQ(ended.exit_code, 1) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("bay 3"));
}

TEST_F(CimScanOutcomeTest, BrokenInstanceMakesTheScanPartial) {
    FaultRule rule = FaultOf(Fault::Kind::kBody);
    rule.body_contains = "CIM_SoftwareIdentity";
    // The fourth request: systems in two namespaces, the chassis, then the software.
    rule.fault.body =
        "<CIM><MESSAGE ID=\"1004\"><SIMPLERSP><IMETHODRESPONSE><IRETURNVALUE><INSTANCE/>"
        "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"InstanceID\"><VALUE>EX:INSTALLED:BMC</VALUE>"
        "</PROPERTY></INSTANCE></IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
    Start({"cim-only-bmc", "--bmc", {}}, {rule});
    const Ended ended = Run(Scan({"--cim-port", Port()}));
    EXPECT_EQ(ended.exit_code, 3) << ended.errors;
    EXPECT_THAT(ended.errors, HasSubstr("firmware inventory"));
}

}  // namespace
}  // namespace acceptance
