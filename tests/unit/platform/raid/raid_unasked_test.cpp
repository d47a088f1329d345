#include "platform/raid/raid_unasked.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pci_tree.h"
#include "support/system_tree.h"

namespace Vantix::raid {
namespace {

using test_support::SystemTree;
using testing::ElementsAre;
using testing::HasSubstr;
using VantixConnection::RunContext;
using VantixConnection::SourceState;

class RaidUnaskedTest : public testing::Test {
  protected:
    void Report() { ReportUnasked(transport::SystemRoot(tree_.Root()), run_); }

    SystemTree tree_;
    RunContext run_;
};

TEST_F(RaidUnaskedTest, EveryControllerThatKeepsItsDisksIsNamedInOneSource) {
    AddServedController(tree_);
    AddOtherMakersController(tree_);
    Report();
    const auto sources = run_.Sources();
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].source, "RAID disks");
    EXPECT_EQ(sources[0].state, SourceState::kNotTried);
    EXPECT_THAT(sources[0].issues, ElementsAre(HasSubstr("0000:01:00.0 (driver megaraid_sas)"),
                                               HasSubstr("0000:d9:00.0 (driver smartpqi)")));
}

TEST_F(RaidUnaskedTest, ItIsNoGapBecauseTheBmcMayTellTheDisks) {
    AddServedController(tree_);
    Report();
    ASSERT_EQ(run_.Sources().size(), 1u);
    EXPECT_FALSE(run_.IsPartial());
}

TEST_F(RaidUnaskedTest, ControllersThatAreAskedInTheRunAreNotNamed) {
    AddServedController(tree_);
    NoteAsked(run_);
    Report();
    EXPECT_TRUE(run_.Sources().empty());
}

TEST_F(RaidUnaskedTest, HostAdaptersAndOtherCardsAreNotNamed) {
    AddServedHostAdapter(tree_);
    AddNetworkCard(tree_);
    Report();
    EXPECT_TRUE(run_.Sources().empty());
}

}  // namespace
}  // namespace Vantix::raid
