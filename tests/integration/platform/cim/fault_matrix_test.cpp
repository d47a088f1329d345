// Every fault at every request of a scan ends in a clear result: a code, or what could be read.
#include <gtest/gtest.h>

#include "cim_machine.h"
#include "common/result/result_codes.h"
#include "platform/identities/identities.h"
#include "platform/system_info/system_info.h"

namespace Vantix::VantixConnection {
namespace {

using simulators::Fault;

constexpr int kRequestsOfAScan = 5;

struct ScanOutcome {
    TarselResult connected = TarselResult(GENERIC_FAILURE);
    int machine_code = 0;
    int identities_code = 0;
    std::size_t identities = 0;
};

ScanOutcome Scan(const simulators::BmcSimulator& bmc) {
    ConnectOption option = OptionFor(bmc);
    option.timeout_seconds = 1;
    option.inventory_timeout_seconds = 1;
    ScanOutcome outcome;
    std::vector<ConnectionInfo> list;
    outcome.connected = FetchCIMConnectionList(option, list);
    if (list.empty()) return outcome;
    std::pair<std::string, std::string> machine;
    outcome.machine_code = SystemInfoScan::GetMachineType(list.front(), machine);
    std::vector<VantixOptions::SoftwareIdentity_> identities;
    outcome.identities_code =
        Agentless::AgentlessSoftwareIdentity(list.front()).GetPLDMSoftwareIdentities(identities);
    outcome.identities = identities.size();
    return outcome;
}

class CimFaultMatrixTest : public ::testing::TestWithParam<Fault::Kind> {
  protected:
    simulators::BmcSimulator bmc_{Machine("tavro-v3-no-redfish")};
};

TEST_P(CimFaultMatrixTest, EveryRequestMayFail) {
    for (int request = 1; request <= kRequestsOfAScan; ++request) {
        simulators::FaultRule rule = FaultAt(request, GetParam());
        rule.fault.status = 500;
        rule.fault.size = 100000;
        bmc_.SetFaults({rule});
        bmc_.ResetCounts();
        const ScanOutcome outcome = Scan(bmc_);
        const bool is_told = !outcome.connected.IsSucceed() || outcome.machine_code != SUCCEED ||
                             outcome.identities_code != SUCCEED;
        EXPECT_TRUE(is_told || outcome.identities == 5U) << "request " << request;
        EXPECT_TRUE(outcome.connected.IsSucceed() || !outcome.connected.message.empty());
        EXPECT_LE(bmc_.Counts().requests, kRequestsOfAScan + 3);
        EXPECT_EQ(bmc_.Counts().logins_refused, 0);
    }
}

TEST_P(CimFaultMatrixTest, FaultOnlyAtAnOptionalClassCostsNoItem) {
    simulators::FaultRule rule = FaultOn("CIM_Chassis", GetParam());
    rule.fault.status = 500;
    rule.fault.size = 100000;
    bmc_.SetFaults({rule});

    const ScanOutcome outcome = Scan(bmc_);

    EXPECT_TRUE(outcome.connected.IsSucceed()) << outcome.connected;
    EXPECT_EQ(outcome.machine_code, SUCCEED);
    EXPECT_EQ(outcome.identities, 5U);
}

INSTANTIATE_TEST_SUITE_P(AllFaults, CimFaultMatrixTest,
                         ::testing::Values(Fault::Kind::kReset, Fault::Kind::kEmptyReply,
                                           Fault::Kind::kSilent, Fault::Kind::kTruncate,
                                           Fault::Kind::kCloseAfterReply, Fault::Kind::kStatus,
                                           Fault::Kind::kEmptyBody, Fault::Kind::kBadJson,
                                           Fault::Kind::kTwoDocuments, Fault::Kind::kHtml,
                                           Fault::Kind::kHugeBody, Fault::Kind::kDeepJson,
                                           Fault::Kind::kGzip, Fault::Kind::kRedirect));

TEST(CimFaultTest, AnswerThatBreaksOffKeepsTheCompleteInstances) {
    simulators::BmcSimulator bmc(Machine("tavro-v3-no-redfish"));
    bmc.SetFaults({FaultOn("CIM_SoftwareIdentity", Fault::Kind::kBadJson)});

    const ScanOutcome outcome = Scan(bmc);

    EXPECT_EQ(outcome.identities_code, BMC_INTERNAL_ERROR);
    EXPECT_GT(outcome.identities, 0U);
    EXPECT_LT(outcome.identities, 5U);
}

TEST(CimFaultTest, RefusedLoginInTheMiddleEndsAllFurtherRequests) {
    simulators::BmcSimulator bmc(Machine("tavro-v3-no-redfish"));
    simulators::FaultRule rule = FaultAt(3, Fault::Kind::kStatus);
    rule.fault.status = 401;
    bmc.SetFaults({rule});

    const ScanOutcome outcome = Scan(bmc);

    EXPECT_EQ(outcome.identities_code, AUTHENTICATION_FAILED);
    EXPECT_EQ(bmc.Counts().requests, 3);
}

}  // namespace
}  // namespace Vantix::VantixConnection
