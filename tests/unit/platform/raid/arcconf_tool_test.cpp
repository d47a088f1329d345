#include "platform/raid/arcconf_tool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/raid/arcconf_places.h"
#include "support/arcconf_text.h"
#include "support/fake_arcconf.h"
#include "support/system_tree.h"

namespace Vantix::raid {
namespace {

using test_support::FakeArcconf;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using transport::ArcconfProblem;
using transport::CommandEnd;
using transport::SystemRoot;

const char* const kGood = "Controllers found: 1\n";

TEST(ArcconfToolTest, MachinesOwnProgramIsLookedUpInAllItsPlaces) {
    FakeArcconf runner;
    const std::vector<std::string> places = ArcconfPlaces();
    runner.InstallAt(places.back()).Answer("list", kGood);
    const SystemRoot root("/");
    const VantixConnection::RunContext run;
    EXPECT_EQ(ArcconfTool(runner, root, run).List().problem, ArcconfProblem::kNone);
    EXPECT_THAT(runner.tried, ElementsAreArray(places));
}

class RecordedToolTest : public testing::Test {
  protected:
    RecordedToolTest() { tree_.File("/usr/sbin/arcconf", "#!/bin/sh\n"); }

    [[nodiscard]] std::string ToolPath() const {
        return std::filesystem::canonical(tree_.Root()).generic_string() + "/usr/sbin/arcconf";
    }

    SystemTree tree_;
    FakeArcconf runner_;
    VantixConnection::RunContext run_;
};

TEST_F(RecordedToolTest, RecordedTreeBringsItsOwnProgram) {
    runner_.Answer("list", kGood);
    const SystemRoot root(tree_.Root());
    EXPECT_EQ(ArcconfTool(runner_, root, run_).List().problem, ArcconfProblem::kNone);
    EXPECT_THAT(runner_.tried, ElementsAre(ToolPath()));
}

TEST_F(RecordedToolTest, RecordedTreeWithoutProgramRunsNone) {
    const SystemTree empty;
    const SystemRoot root(empty.Root());
    EXPECT_EQ(ArcconfTool(runner_, root, run_).List().problem, ArcconfProblem::kNotInstalled);
    EXPECT_THAT(runner_.tried, IsEmpty());
}

TEST_F(RecordedToolTest, LinkOutOfTheTreeIsNotFollowed) {
    SystemTree other;
    other.Link("/usr/sbin/arcconf", ToolPath());
    const SystemRoot root(other.Root());
    EXPECT_EQ(ArcconfTool(runner_, root, run_).List().problem, ArcconfProblem::kNotInstalled);
    EXPECT_THAT(runner_.tried, IsEmpty());
}

TEST_F(RecordedToolTest, OldReleaseWithoutListIsAskedForVersions) {
    runner_.Answer("list", "usage: ...", 3).Answer("getversion", kGood);
    const SystemRoot root(tree_.Root());
    const ArcconfAnswer answer = ArcconfTool(runner_, root, run_).List();
    EXPECT_EQ(answer.problem, ArcconfProblem::kNone);
    EXPECT_EQ(answer.output, kGood);
}

TEST_F(RecordedToolTest, RubbishTwiceKeepsTheWordsOfTheFirst) {
    runner_.Answer("list", "first rubbish", 3).Answer("getversion", "second rubbish", 3);
    const SystemRoot root(tree_.Root());
    const ArcconfAnswer answer = ArcconfTool(runner_, root, run_).List();
    EXPECT_EQ(answer.problem, ArcconfProblem::kNotItsWords);
    EXPECT_EQ(answer.words, "first rubbish");
}

TEST_F(RecordedToolTest, ProgramThatHungIsNotAskedAgain) {
    runner_.End("list", CommandEnd::kTimedOut);
    const SystemRoot root(tree_.Root());
    ArcconfTool tool(runner_, root, run_);
    EXPECT_EQ(tool.List().problem, ArcconfProblem::kTimedOut);
    EXPECT_EQ(tool.Disks(1).problem, ArcconfProblem::kTimedOut);
    EXPECT_EQ(tool.Release(), "");
    EXPECT_THAT(runner_.questions, ElementsAre("list"));
}

TEST_F(RecordedToolTest, RefusalOfOneQuestionLeavesTheOthers) {
    runner_.Answer("getconfig 1 PD", "Controllers found: 1\nCommand aborted.", 2)
        .Answer("getconfig 2 PD", kGood);
    const SystemRoot root(tree_.Root());
    ArcconfTool tool(runner_, root, run_);
    EXPECT_EQ(tool.Disks(1).problem, ArcconfProblem::kRefused);
    EXPECT_EQ(tool.Disks(2).problem, ArcconfProblem::kNone);
}

TEST_F(RecordedToolTest, ReleaseComesFromTheBareProgram) {
    runner_.Answer("", "| UCLI | Version 9.99 (B1) |\n");
    const SystemRoot root(tree_.Root());
    EXPECT_EQ(ArcconfTool(runner_, root, run_).Release(), "9.99 (B1)");
}

TEST_F(RecordedToolTest, WaitIsNamed) {
    runner_.Answer("list", kGood);
    std::vector<std::string> activities;
    run_.on_activity = [&](const std::string& text) { activities.push_back(text); };
    const SystemRoot root(tree_.Root());
    static_cast<void>(ArcconfTool(runner_, root, run_).List());
    EXPECT_THAT(activities, ElementsAre("arcconf list"));
}

}  // namespace
}  // namespace Vantix::raid
