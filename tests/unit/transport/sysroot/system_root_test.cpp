#include "transport/sysroot/system_root.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/system_tree.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::SystemTree;
using test_support::UnprivilegedUser;
using Vantix::transport::SystemRoot;

TEST(SystemRootTest, TextIsCleanedAndBytesAreNot) {
    SystemTree tree;
    tree.File("/sys/a", std::string("  EX1.02 \n\0junk", 14));
    const SystemRoot root(tree.Root());
    EXPECT_EQ(root.ReadText("/sys/a"), "EX1.02");
    EXPECT_EQ(root.ReadBytes("/sys/a"), std::string("  EX1.02 \n\0junk", 14));
}

TEST(SystemRootTest, MissingFilesAndFoldersReadAsNothing) {
    SystemTree tree;
    tree.Folder("/sys/folder");
    const SystemRoot root(tree.Root());
    for (const char* path : {"/sys/missing", "/sys/folder"}) {
        EXPECT_FALSE(root.ReadBytes(path).has_value()) << path;
        EXPECT_EQ(root.ReadText(path), "") << path;
    }
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(SystemRootTest, PipesReadAsNothing) {
    SystemTree tree;
    tree.Pipe("/sys/pipe");
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(root.ReadBytes("/sys/pipe").has_value());
    EXPECT_EQ(root.ReadText("/sys/pipe"), "");
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(SystemRootTest, LongFilesAreCutAtTheLimit) {
    SystemTree tree;
    tree.File("/sys/long", std::string(10000, 'x'));
    EXPECT_EQ(SystemRoot(tree.Root()).ReadBytes("/sys/long", 4100)->size(), 4100u);
}

TEST(SystemRootTest, FileIsReadOnceOnly) {
    SystemTree tree;
    tree.File("/sys/a", "first");
    const SystemRoot root(tree.Root());
    EXPECT_EQ(root.ReadText("/sys/a"), "first");
    tree.File("/sys/a", "second");
    EXPECT_EQ(root.ReadText("/sys/a"), "first");
    EXPECT_EQ(SystemRoot(tree.Root()).ReadText("/sys/a"), "second");
}

TEST(SystemRootTest, ForbiddenFilesAreRemembered) {
    SystemTree tree;
    tree.File("/sys/serial", "S").File("/sys/vendor", "V");
    tree.Forbid("/sys/serial");
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_EQ(root.ReadText("/sys/serial"), "");
    EXPECT_EQ(root.ReadText("/sys/vendor"), "V");
    EXPECT_EQ(root.DeniedPaths(), std::vector<std::string>{"/sys/serial"});
}

TEST(SystemRootTest, ForbiddenFoldersAreRemembered) {
    SystemTree tree;
    tree.File("/sys/entries/a", "");
    tree.Forbid("/sys/entries");
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_TRUE(root.List("/sys/entries").empty());
    EXPECT_EQ(root.DeniedPaths(), std::vector<std::string>{"/sys/entries"});
}

TEST(SystemRootTest, WhatWasReadByOtherMeansIsTheFilesContent) {
    SystemTree tree;
    tree.File("/sys/a", "file").File("/sys/b", "file");
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(root.WasRead("/sys/a"));
    root.AddRead("/sys/a", "pieces");
    root.AddRead("/sys/b", std::nullopt);
    EXPECT_TRUE(root.WasRead("/sys/a"));
    EXPECT_EQ(root.ReadBytes("/sys/a"), "pieces");
    EXPECT_FALSE(root.ReadBytes("/sys/b").has_value());
    root.AddRead("/sys/a", "again");
    EXPECT_EQ(root.ReadText("/sys/a"), "pieces");
}

TEST(SystemRootTest, NamesAreListedInNaturalOrder) {
    SystemTree tree;
    tree.File("/sys/n/nvme10", "").File("/sys/n/nvme2", "").File("/sys/n/nvme0", "");
    const SystemRoot root(tree.Root());
    EXPECT_EQ(root.List("/sys/n"), (std::vector<std::string>{"nvme0", "nvme2", "nvme10"}));
    EXPECT_TRUE(root.List("/sys/missing").empty());
}

TEST(SystemRootTest, LinksTellTheirLastNameAlsoWhereTheyDangle) {
    SystemTree tree;
    tree.Link("/sys/d/driver", "../../bus/pci/drivers/nvme").File("/sys/d/file", "");
    const SystemRoot root(tree.Root());
    EXPECT_EQ(root.LinkName("/sys/d/driver"), "nvme");
    EXPECT_EQ(root.LinkName("/sys/d/file"), "");
    EXPECT_EQ(root.LinkName("/sys/d/missing"), "");
}

TEST(SystemRootTest, ResolveFollowsRelativeLinksWithinTheRoot) {
    SystemTree tree;
    tree.Folder("/sys/devices/pci0000:00/0000:00:01.0");
    tree.Link("/sys/bus/pci/devices/0000:00:01.0", "../../../devices/pci0000:00/0000:00:01.0");
    EXPECT_EQ(SystemRoot(tree.Root()).Resolve("/sys/bus/pci/devices/0000:00:01.0"),
              "/sys/devices/pci0000:00/0000:00:01.0");
}

TEST(SystemRootTest, CirclesDanglingAndOutwardLinksLeadNowhere) {
    SystemTree tree;
    tree.Link("/sys/a", "b").Link("/sys/b", "a").Link("/sys/c", "missing").Link("/sys/d", "/tmp");
    const SystemRoot root(tree.Root());
    for (const char* path : {"/sys/a", "/sys/c", "/sys/d", "/sys/missing"}) {
        EXPECT_EQ(root.Resolve(path), "") << path;
    }
}

TEST(SystemRootTest, LinkOutOfARecordedTreeIsNotRead) {
    SystemTree other;
    other.File("/sys/out", "of another machine");
    SystemTree tree;
    tree.Link("/sys/out", other.Root() + "/sys/out");
    tree.File("/sys/real", "own").Link("/sys/in", "real");
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(root.ReadBytes("/sys/out").has_value());
    EXPECT_EQ(root.ReadText("/sys/in"), "own");
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(SystemRootTest, OnlySlashIsThisMachine) {
    EXPECT_TRUE(SystemRoot("/").IsThisMachine());
    EXPECT_TRUE(SystemRoot("").IsThisMachine());
    EXPECT_FALSE(SystemRoot("/tmp/").IsThisMachine());
    EXPECT_EQ(SystemRoot("").HostPath("/sys/x"), "/sys/x");
}

}  // namespace
