#include "platform/connection/run_context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace Vantix::VantixConnection {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

SourceStatus Source(const std::string& name, SourceState state, bool required = true) {
    SourceStatus status;
    status.source = name;
    status.state = state;
    status.required = required;
    return status;
}

TEST(RunContextTest, OneRefusedLoginSpendsTheDefaultBudget) {
    RunContext run;
    EXPECT_TRUE(run.MayTryLogin());
    run.LoginRefused("session");
    EXPECT_FALSE(run.MayTryLogin());
}

TEST(RunContextTest, BudgetCountsRefusalsOfAllProtocolsTogether) {
    RunContext run(2);
    run.LoginRefused("session");
    EXPECT_TRUE(run.MayTryLogin());
    run.LoginRefused("another protocol");
    EXPECT_FALSE(run.MayTryLogin());
}

TEST(RunContextTest, BudgetIsAtLeastOne) {
    EXPECT_TRUE(RunContext(0).MayTryLogin());
}

TEST(RunContextTest, RunIsCancelledOnceAskedTo) {
    RunContext run;
    EXPECT_FALSE(run.IsCancelled());
    std::thread([&run] { run.Cancel(); }).join();
    EXPECT_TRUE(run.IsCancelled());
}

TEST(RunContextTest, WithoutAFailureTheLastOneIsSuccess) {
    EXPECT_TRUE(RunContext().LastFailure().IsSucceed());
}

TEST(RunContextTest, LastFailureIsKept) {
    RunContext run;
    run.RecordFailure(TarselResult(13, "first"));
    run.RecordFailure(TarselResult(12, "second"));
    EXPECT_EQ(run.LastFailure().code, 12);
    EXPECT_EQ(run.LastFailure().message, "second");
}

TEST(RunContextTest, RunWithoutSourcesIsNotPartial) {
    EXPECT_FALSE(RunContext().IsPartial());
}

using GapCase = std::pair<SourceState, bool>;
class RunContextGapTest : public testing::TestWithParam<GapCase> {};

TEST_P(RunContextGapTest, RequiredSourceDecidesWhetherTheRunIsPartial) {
    RunContext run;
    run.ReportSource(Source("firmware inventory", GetParam().first));
    EXPECT_EQ(run.IsPartial(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    States, RunContextGapTest,
    testing::Values(GapCase(SourceState::kComplete, false), GapCase(SourceState::kPartial, true),
                    GapCase(SourceState::kUnsupported, false), GapCase(SourceState::kDenied, true),
                    GapCase(SourceState::kTimeout, true), GapCase(SourceState::kFailed, true),
                    GapCase(SourceState::kNotTried, true)));

TEST(RunContextTest, OptionalSourceNeverMakesARunPartial) {
    RunContext run;
    run.ReportSource(Source("drives", SourceState::kFailed, false));
    EXPECT_FALSE(run.IsPartial());
}

TEST(RunContextTest, LaterStatusOfASourceReplacesTheFormer) {
    RunContext run;
    run.ReportSource(Source("firmware inventory", SourceState::kTimeout));
    run.ReportSource(Source("drives", SourceState::kComplete));
    run.ReportSource(Source("firmware inventory", SourceState::kComplete));
    ASSERT_THAT(run.Sources(), SizeIs(2));
    EXPECT_EQ(run.Sources()[0].source, "firmware inventory");
    EXPECT_FALSE(run.IsPartial());
}

TEST(RunContextTest, NoticeIsKeptOnce) {
    RunContext run;
    run.AddNotice("The check is off.");
    run.AddNotice("The BMC is slow.");
    run.AddNotice("The check is off.");
    EXPECT_THAT(run.Notices(), ElementsAre("The check is off.", "The BMC is slow."));
}

TEST(RunContextTest, ActivityReachesItsListener) {
    RunContext run;
    std::string heard;
    run.on_activity = [&heard](const std::string& text) { heard = text; };
    run.Activity("member 12 of 40");
    EXPECT_EQ(heard, "member 12 of 40");
}

TEST(RunContextTest, ActivityWithoutListenerIsIgnored) {
    EXPECT_NO_THROW(RunContext().Activity("member 1 of 2"));
    EXPECT_THAT(RunContext().Sources(), IsEmpty());
}

TEST(RunContextTest, FindingIsRecalledByItsKey) {
    RunContext run;
    run.Remember("cipher", "17");
    run.Remember("cipher", "3");
    EXPECT_EQ(run.Recall("cipher"), "3");
}

TEST(RunContextTest, UnknownFindingIsEmpty) {
    EXPECT_EQ(RunContext().Recall("cipher"), "");
}

TEST(RunContextTest, EveryStateHasItsWord) {
    EXPECT_STREQ(SourceStateText(SourceState::kComplete), "complete");
    EXPECT_STREQ(SourceStateText(SourceState::kPartial), "partial");
    EXPECT_STREQ(SourceStateText(SourceState::kUnsupported), "unsupported");
    EXPECT_STREQ(SourceStateText(SourceState::kDenied), "denied");
    EXPECT_STREQ(SourceStateText(SourceState::kTimeout), "timeout");
    EXPECT_STREQ(SourceStateText(SourceState::kFailed), "failed");
    EXPECT_STREQ(SourceStateText(SourceState::kNotTried), "not tried");
}

TEST(RunContextTest, AccountIsKeptAndThereIsNoneAtFirst) {
    RunContext run;
    EXPECT_EQ(run.KeptAccount().user, "");
    run.KeepAccount({"host1", "invented-pass"});
    EXPECT_EQ(run.KeptAccount().user, "host1");
    EXPECT_EQ(run.KeptAccount().password, "invented-pass");
}

}  // namespace
}  // namespace Vantix::VantixConnection
