// Each fault at each of the first requests of a scan: a clear result, no session left behind.

#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "integration/platform/redfish/bmc_scan.h"

namespace Vantix::redfish {
namespace {

using simulators::BmcCounts;
using simulators::BmcSimulator;
using simulators::Fault;
using simulators::FaultRule;

constexpr int kRequests = 12;

struct MatrixRow {
    const char* name;
    Fault::Kind kind;
    int status;
    /// The answer to the login hides the token of a session that the service made all the same.
    bool hides_login;
};

FaultRule RuleOf(const MatrixRow& row) {
    FaultRule rule;
    rule.times = 1;
    rule.fault.kind = row.kind;
    rule.fault.status = row.status;
    if (row.kind == Fault::Kind::kRedirect) rule.fault.location = "https://localhost.invalid/x";
    return rule;
}

VantixConnection::ConnectOption ShortOptionFor(const BmcSimulator& bmc) {
    VantixConnection::ConnectOption option = OptionFor(bmc);
    option.timeout_seconds = 1;
    option.inventory_timeout_seconds = 1;
    return option;
}

// Whether the fault hit the login.
bool HitLogin(const BmcCounts& counts, int ordinal) {
    const auto index = static_cast<std::size_t>(ordinal - 1);
    return index < counts.log.size() && counts.log[index].method == "POST";
}

void ExpectSessionsEnded(const BmcCounts& counts, int unknowable) {
    EXPECT_EQ(counts.sessions_made, counts.sessions_ended + counts.sessions_expired + unknowable);
    EXPECT_EQ(counts.sessions_open, unknowable);
}

// Success, or a failure that has a code and, where the connection failed, a sentence.
void ExpectClearResult(const ScanOutcome& outcome) {
    if (!outcome.connection.IsSucceed()) {
        EXPECT_NE(outcome.connection.message, "");
        EXPECT_NE(outcome.connection.message.find("127.0.0.1"), std::string::npos);
        return;
    }
    if (outcome.identities_code != SUCCEED) {
        EXPECT_NE(GetResultMessage(outcome.identities_code), "");
    } else {
        EXPECT_FALSE(outcome.identities.empty());
    }
}

TEST(FaultMatrixSizeTest, UndisturbedScanHasAllTheRequestsOfTheMatrix) {
    BmcSimulator bmc(Scenario("rack-server"));
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    EXPECT_GE(bmc.Counts().requests, kRequests);
}

class FaultMatrixTest : public ::testing::TestWithParam<MatrixRow> {};

TEST_P(FaultMatrixTest, AtEachRequestEndsClearlyAndEndsItsSession) {
    BmcSimulator bmc(Scenario("rack-server"));
    for (int ordinal = 1; ordinal <= kRequests; ++ordinal) {
        SCOPED_TRACE("request " + std::to_string(ordinal));
        FaultRule rule = RuleOf(GetParam());
        rule.nth_request = ordinal;
        bmc.ForgetSessions();
        bmc.ResetCounts();
        bmc.SetFaults({rule});
        const ScanOutcome outcome = ScanImpatiently(ShortOptionFor(bmc));
        ExpectClearResult(outcome);
        const BmcCounts counts = bmc.Counts();
        const bool lost = GetParam().hides_login && HitLogin(counts, ordinal);
        ExpectSessionsEnded(counts, lost ? 1 : 0);
        EXPECT_LE(counts.logins_refused, 0);
    }
}

TEST_P(FaultMatrixTest, AtTheLogOutIsNoFailureOfTheScan) {
    BmcSimulator bmc(Scenario("rack-server"));
    FaultRule rule = RuleOf(GetParam());
    rule.method = "DELETE";
    bmc.SetFaults({rule});
    const ScanOutcome outcome = ScanImpatiently(ShortOptionFor(bmc));
    EXPECT_TRUE(outcome.Succeeded());
    // One log-out is sent; whether the service acted on it is not in the client's hands.
    const BmcCounts counts = bmc.Counts();
    EXPECT_EQ(counts.sessions_made, 1);
    EXPECT_EQ(counts.log.back().method, "DELETE");
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultMatrixTest,
    ::testing::Values(MatrixRow{"Reset", Fault::Kind::kReset, 200, false},
                      MatrixRow{"EmptyReply", Fault::Kind::kEmptyReply, 200, false},
                      MatrixRow{"Truncated", Fault::Kind::kTruncate, 200, false},
                      MatrixRow{"Silent", Fault::Kind::kSilent, 200, false},
                      MatrixRow{"DiesAfterReply", Fault::Kind::kCloseAfterReply, 200, false},
                      MatrixRow{"Status401", Fault::Kind::kStatus, 401, true},
                      MatrixRow{"Status403", Fault::Kind::kStatus, 403, true},
                      MatrixRow{"Status404", Fault::Kind::kStatus, 404, true},
                      MatrixRow{"Status429", Fault::Kind::kStatus, 429, true},
                      MatrixRow{"Status500", Fault::Kind::kStatus, 500, true},
                      MatrixRow{"Status503", Fault::Kind::kStatus, 503, true},
                      MatrixRow{"BadJson", Fault::Kind::kBadJson, 200, false},
                      MatrixRow{"WrongTypes", Fault::Kind::kWrongTypes, 200, false},
                      MatrixRow{"TwoDocuments", Fault::Kind::kTwoDocuments, 200, false},
                      MatrixRow{"ControlBytes", Fault::Kind::kControlBytes, 200, false},
                      MatrixRow{"EmptyBody", Fault::Kind::kEmptyBody, 200, true},
                      MatrixRow{"Html", Fault::Kind::kHtml, 200, true},
                      MatrixRow{"RedirectToAnotherHost", Fault::Kind::kRedirect, 302, true}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace Vantix::redfish
