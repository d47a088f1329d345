#include "platform/raid/raid_gaps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "common/result/result_codes.h"

namespace Vantix::raid {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using transport::ArcconfProblem;
using VantixConnection::IsGap;
using VantixConnection::SourceState;

constexpr ArcconfProblem kFailures[] = {ArcconfProblem::kNotInstalled, ArcconfProblem::kNotStarted,
                                        ArcconfProblem::kTimedOut,     ArcconfProblem::kCancelled,
                                        ArcconfProblem::kNoRights,     ArcconfProblem::kNotItsWords,
                                        ArcconfProblem::kNoController, ArcconfProblem::kRefused};

RaidGap AGap(const std::string& label, bool is_certain = true) {
    return {label, CauseOf(ArcconfProblem::kNotInstalled, "", ""), is_certain};
}

TEST(RaidCauseTest, EachProblemHasItsOwnSentence) {
    std::set<std::string> texts = {CauseNotListed().text, CauseCutOff().text,
                                   CauseOtherMaker().text};
    for (const ArcconfProblem problem : kFailures) texts.insert(CauseOf(problem, "", "").text);
    EXPECT_EQ(texts.size(), 3 + std::size(kFailures));
}

TEST(RaidCauseTest, EachProblemHasAdvice) {
    for (const ArcconfProblem problem : kFailures) {
        EXPECT_FALSE(CauseOf(problem, "", "").advice.empty());
    }
}

TEST(RaidCauseTest, ToolsWordsAndReleaseAreQuoted) {
    EXPECT_EQ(CauseOf(ArcconfProblem::kNotItsWords, "what?", "9.99").text,
              "arcconf 9.99 gave an answer that is not understood: \"what?\"");
    EXPECT_EQ(CauseOf(ArcconfProblem::kNoController, "", "9.99").text,
              "arcconf 9.99 finds no controller");
}

TEST(RaidCauseTest, StatesTellDeniedAndTimeoutFromTheRest) {
    EXPECT_EQ(CauseOf(ArcconfProblem::kNoRights, "", "").state, SourceState::kDenied);
    EXPECT_EQ(CauseOf(ArcconfProblem::kTimedOut, "", "").state, SourceState::kTimeout);
    EXPECT_EQ(CauseOf(ArcconfProblem::kNotInstalled, "", "").state, SourceState::kFailed);
}

TEST(RaidCauseTest, ResultCodesFollowTheProblem) {
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNone), SUCCEED);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNotInstalled), SUCCEED);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNoController), SUCCEED);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kTimedOut), TIMEOUT);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kCancelled), INTERRUPTED_BY_USER);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNoRights), ADMINISTRATOR_PERMISSION_NEEDED);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNotStarted), GENERIC_FAILURE);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kNotItsWords), GENERIC_FAILURE);
    EXPECT_EQ(ResultCodeOf(ArcconfProblem::kRefused), GENERIC_FAILURE);
}

TEST(RaidLabelTest, NamesIdsAddressAndDriver) {
    RaidAdapter adapter;
    adapter.ids = "9005:028f";
    adapter.address = "0000:d9:00.0";
    EXPECT_EQ(LabelOf(adapter), "storage controller 9005:028f at 0000:d9:00.0");
    adapter.driver = "smartpqi";
    adapter.hides_disks = true;
    EXPECT_EQ(LabelOf(adapter), "RAID controller 9005:028f at 0000:d9:00.0 (driver smartpqi)");
}

TEST(RaidStatusTest, WithoutGapsItIsComplete) {
    const auto status = StatusOf({}, 1, 7);
    EXPECT_EQ(status.source, "RAID disks");
    EXPECT_EQ(status.state, SourceState::kComplete);
    EXPECT_EQ(status.items_read, 7);
    EXPECT_FALSE(IsGap(status));
}

TEST(RaidStatusTest, SurelyMissingDisksMakeTheScanPartial) {
    const auto status = StatusOf({AGap("A")}, 0, 0);
    EXPECT_EQ(status.state, SourceState::kFailed);
    EXPECT_EQ(status.items_failed, 1);
    EXPECT_THAT(status.issues, ElementsAre("A: arcconf is not installed"));
    EXPECT_THAT(status.detail, HasSubstr("Install"));
    EXPECT_TRUE(IsGap(status));
}

TEST(RaidStatusTest, PerhapsMissingDisksDoNotMakeItPartial) {
    EXPECT_FALSE(IsGap(StatusOf({AGap("A", false)}, 0, 0)));
    EXPECT_TRUE(IsGap(StatusOf({AGap("A", false), AGap("B", true)}, 0, 0)));
}

TEST(RaidStatusTest, SomeControllersReadMakeItPartial) {
    EXPECT_EQ(StatusOf({AGap("A")}, 1, 3).state, SourceState::kPartial);
}

TEST(RaidNoticesTest, ControllersWithTheSameCauseShareASentence) {
    EXPECT_THAT(NoticesOf({AGap("A"), {"B", CauseOtherMaker(), true}, AGap("C")}),
                ElementsAre("The disks behind A, C were not read: arcconf is not installed. "
                            "Install the program arcconf of the controller's maker.",
                            "The disks behind B were not read: no supported tool reads "
                            "controllers of this maker. The tool of the controller's maker lists "
                            "them."));
}

}  // namespace
}  // namespace Vantix::raid
