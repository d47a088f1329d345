#include "tarsel/status_block.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarsel {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Vantix::VantixConnection::SourceState;
using Vantix::VantixConnection::SourceStatus;

SourceStatus Source(const std::string& name, SourceState state, int read = 0, int failed = 0) {
    SourceStatus status;
    status.source = name;
    status.state = state;
    status.items_read = read;
    status.items_failed = failed;
    return status;
}

TEST(StatusBlockTest, WithoutSourcesThereIsNone) {
    EXPECT_THAT(StatusBlock("::1", {}), IsEmpty());
}

TEST(StatusBlockTest, ColumnsLineUp) {
    EXPECT_EQ(StatusBlock("::1", {Source("firmware inventory", SourceState::kComplete, 41),
                                  Source("drives", SourceState::kPartial, 3, 1)}),
              "Sources of ::1:\n"
              "  firmware inventory  complete     41 read\n"
              "  drives              partial      3 read, 1 failed\n");
}

TEST(StatusBlockTest, DetailFollowsTheCounts) {
    SourceStatus status = Source("drives", SourceState::kDenied);
    status.detail = "a licence is needed";
    EXPECT_THAT(StatusBlock("::1", {status}),
                HasSubstr("denied       0 read: a licence is needed\n"));
}

TEST(StatusBlockTest, FirstIssuesAreShownAndTheRestCounted) {
    SourceStatus status = Source("drives", SourceState::kPartial, 1, 5);
    status.issues = {"one", "two", "three", "four", "five"};
    const std::string block = StatusBlock("::1", {status});
    EXPECT_THAT(block,
                HasSubstr("    - one\n    - two\n    - three\n    - 2 more, see tarsel.log\n"));
    EXPECT_THAT(block, Not(HasSubstr("four")));
}

TEST(StatusBlockTest, AllIssuesAreShownOnDemand) {
    SourceStatus status = Source("drives", SourceState::kPartial, 1, 5);
    status.issues = {"one", "two", "three", "four", "five"};
    const std::string block = StatusBlock("::1", {status}, kAllIssues);
    EXPECT_THAT(block, HasSubstr("    - four\n    - five\n"));
    EXPECT_THAT(block, Not(HasSubstr("more")));
}

TEST(StatusBlockTest, AFewIssuesAreShownWhole) {
    SourceStatus status = Source("drives", SourceState::kPartial, 1, 1);
    status.issues = {"one"};
    EXPECT_THAT(StatusBlock("::1", {status}), Not(HasSubstr("more")));
}

TEST(StatusBlockTest, ControlBytesOfAPeerAreNotPassedOn) {
    SourceStatus status = Source("drives", SourceState::kPartial);
    status.issues = {"a\x1B[31m\nforged line"};
    EXPECT_THAT(StatusBlock("::1", {status}), HasSubstr("    - a [31m forged line\n"));
}

TEST(GapSentenceTest, NamesTheRequiredSourcesWithGaps) {
    SourceStatus optional = Source("drives", SourceState::kFailed);
    optional.required = false;
    EXPECT_EQ(GapSentence("::1", {Source("firmware inventory", SourceState::kPartial), optional,
                                  Source("system", SourceState::kTimeout),
                                  Source("managers", SourceState::kComplete),
                                  Source("software inventory", SourceState::kUnsupported)}),
              "The scan of ::1 is partial: firmware inventory (partial), system (timeout); see "
              "tarsel.log for more.");
}

TEST(GapSentenceTest, WithoutGapsThereIsNone) {
    EXPECT_THAT(GapSentence("::1", {Source("system", SourceState::kComplete)}), IsEmpty());
}

}  // namespace
}  // namespace tarsel
