#include "platform/local/local_host.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "support/system_tree.h"

namespace {

using test_support::SystemTree;
using Vantix::local::HostDevices;
using Vantix::local::HostRoot;
using Vantix::local::ReportDenied;
using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::ConnectOption;
using Vantix::VantixConnection::SourceState;

ConnectOption OptionFor(const SystemTree& tree) {
    ConnectOption option;
    option.system_root = tree.Root();
    return option;
}

TEST(LocalHostTest, WithoutARunItIsThisMachine) {
    EXPECT_TRUE(HostRoot()->IsThisMachine());
    EXPECT_NE(HostRoot(), HostRoot());
}

TEST(LocalHostTest, FamiliesOfOneRunShareTheTree) {
    SystemTree tree;
    tree.File("/sys/a", "first");
    const ConnectOption option = OptionFor(tree);
    const ActiveRun run(option);
    EXPECT_EQ(HostRoot()->ReadText("/sys/a"), "first");
    tree.File("/sys/a", "second");
    EXPECT_EQ(HostRoot()->ReadText("/sys/a"), "first");
}

TEST(LocalHostTest, InnerRunHasItsOwnTree) {
    SystemTree outer_tree;
    SystemTree inner_tree;
    outer_tree.File("/sys/a", "outer");
    inner_tree.File("/sys/a", "inner");
    const ConnectOption outer_option = OptionFor(outer_tree);
    const ConnectOption inner_option = OptionFor(inner_tree);
    const ActiveRun outer(outer_option);
    {
        const ActiveRun inner(inner_option);
        EXPECT_EQ(HostRoot()->ReadText("/sys/a"), "inner");
    }
    EXPECT_EQ(HostRoot()->ReadText("/sys/a"), "outer");
}

TEST(LocalHostTest, NextRunReadsAnew) {
    SystemTree tree;
    tree.File("/sys/a", "first");
    const ConnectOption option = OptionFor(tree);
    { EXPECT_EQ((ActiveRun(option), HostRoot()->ReadText("/sys/a")), "first"); }
    tree.File("/sys/a", "second");
    const ActiveRun run(option);
    EXPECT_EQ(HostRoot()->ReadText("/sys/a"), "second");
}

TEST(LocalHostTest, RecordedMachineHasNoDevicesOfThisOne) {
    const SystemTree tree;
    const ConnectOption option = OptionFor(tree);
    const ActiveRun run(option);
    EXPECT_EQ(HostDevices(), nullptr);
}

TEST(LocalHostTest, WhatOnlyRootMayReadIsAnOptionalSource) {
    SystemTree tree;
    const ConnectOption option = OptionFor(tree);
    const ActiveRun run(option);
    HostRoot()->AddDenied("/sys/b");
    HostRoot()->AddDenied("/dev/a");
    ReportDenied(*HostRoot());
    const auto sources = option.run->Sources();
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].source, "attributes for root only");
    EXPECT_EQ(sources[0].state, SourceState::kDenied);
    EXPECT_EQ(sources[0].issues, (std::vector<std::string>{"/dev/a", "/sys/b"}));
    EXPECT_EQ(sources[0].items_failed, 2);
    EXPECT_FALSE(option.run->IsPartial());
}

TEST(LocalHostTest, LaterReportsHoldTheEarlierOnesToo) {
    SystemTree tree;
    const ConnectOption option = OptionFor(tree);
    const ActiveRun run(option);
    HostRoot()->AddDenied("/sys/a");
    ReportDenied(*HostRoot());
    HostRoot()->AddDenied("/sys/b");
    ReportDenied(*HostRoot());
    ASSERT_EQ(option.run->Sources().size(), 1u);
    EXPECT_EQ(option.run->Sources()[0].issues.size(), 2u);
}

TEST(LocalHostTest, NothingIsReportedWhereNothingWasForbidden) {
    SystemTree tree;
    const ConnectOption option = OptionFor(tree);
    const ActiveRun run(option);
    ReportDenied(*HostRoot());
    EXPECT_TRUE(option.run->Sources().empty());
}

}  // namespace
