#include "transport/http/connection_budget.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

HttpOutcome Answer(int connect_ms, int response_ms) {
    HttpOutcome outcome;
    outcome.response.status = 200;
    outcome.response.connect_time = Milliseconds(connect_ms);
    outcome.response.response_time = Milliseconds(response_ms);
    return outcome;
}

ConnectionBudget BudgetAfter(int open, const HttpOutcome& outcome) {
    ConnectionBudget budget;
    for (int flying = 1; flying <= open; ++flying) budget.Sent(flying);
    budget.Ended(outcome);
    return budget;
}

TEST(ConnectionBudgetTest, BeforeAnythingIsKnownEveryRequestMayGo) {
    EXPECT_TRUE(ConnectionBudget().MaySend(2, 5));
}

TEST(ConnectionBudgetTest, AnIdleConnectionIsAlwaysUsed) {
    EXPECT_TRUE(BudgetAfter(2, Answer(1000, 1)).MaySend(1, 1));
}

TEST(ConnectionBudgetTest, LittleWorkDoesNotPayForADearHandshake) {
    EXPECT_FALSE(BudgetAfter(1, Answer(100, 10)).MaySend(1, 2));
}

TEST(ConnectionBudgetTest, MuchWorkPaysForADearHandshake) {
    EXPECT_TRUE(BudgetAfter(1, Answer(100, 10)).MaySend(1, 60));
}

TEST(ConnectionBudgetTest, ACheapHandshakeIsAlwaysWorthIt) {
    EXPECT_TRUE(BudgetAfter(2, Answer(3, 50)).MaySend(2, 1));
}

TEST(ConnectionBudgetTest, OfHandshakesSideBySideTheShortestCounts) {
    ConnectionBudget budget = BudgetAfter(2, Answer(200, 50));
    EXPECT_FALSE(budget.MaySend(2, 3));
    budget.Ended(Answer(100, 50));
    EXPECT_TRUE(budget.MaySend(2, 3));
}

TEST(ConnectionBudgetTest, FailedExchangesTeachNothing) {
    HttpOutcome failed = Answer(1, 1);
    failed.error.kind = HttpErrorKind::kReset;
    ConnectionBudget budget = BudgetAfter(1, failed);
    EXPECT_TRUE(budget.MaySend(1, 1));
    EXPECT_FALSE(budget.PrefersIdle());
}

TEST(ConnectionBudgetTest, AnIdleConnectionIsPreferredWhereAnswersAreFasterThanHandshakes) {
    EXPECT_TRUE(BudgetAfter(1, Answer(100, 50)).PrefersIdle());
    EXPECT_FALSE(BudgetAfter(1, Answer(3, 50)).PrefersIdle());
}

TEST(ConnectionBudgetTest, AConnectionGivenUpIsNotCountedAsOpen) {
    ConnectionBudget budget = BudgetAfter(2, Answer(100, 10));
    budget.GaveUp(1);
    EXPECT_FALSE(budget.MaySend(1, 2));
}

}  // namespace
}  // namespace Vantix::transport
