#include "transport/sysroot/root_file.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/system_tree.h"

namespace Vantix::transport {
namespace {

using test_support::SystemTree;

TEST(RootFileTest, PiecesAreReadFromAnywhere) {
    SystemTree tree;
    tree.File("/lib/x", "0123456789");
    const SystemRoot root(tree.Root());
    const RootFile file(root, "/lib/x");
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Read(0, 3), "012");
    EXPECT_EQ(file.Read(7, 2), "78");
}

TEST(RootFileTest, ReadingPastTheEndGivesWhatThereIs) {
    SystemTree tree;
    tree.File("/x", "0123");
    const SystemRoot root(tree.Root());
    const RootFile file(root, "/x");
    EXPECT_EQ(file.Read(2, 100), "23");
    EXPECT_EQ(file.Read(4, 100), "");
    EXPECT_EQ(file.Read(UINT64_MAX, 1), "");
}

TEST(RootFileTest, MissingFileAndFolderAreNotOpened) {
    SystemTree tree;
    tree.Folder("/folder");
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(RootFile(root, "/missing").IsOpen());
    EXPECT_FALSE(RootFile(root, "/folder").IsOpen());
    EXPECT_EQ(RootFile(root, "/missing").Read(0, 1), "");
}

TEST(RootFileTest, PipeIsNotWaitedFor) {
    SystemTree tree;
    tree.Folder("/folder");
    tree.Pipe("/folder/pipe");
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(RootFile(root, "/folder/pipe").IsOpen());
}

TEST(RootFileTest, LinksAreFollowedBelowTheRootOnly) {
    SystemTree tree;
    tree.File("/usr/lib/x", "inside").Link("/lib", "usr/lib").Link("/out", "/etc/passwd");
    const SystemRoot root(tree.Root());
    EXPECT_EQ(RootFile(root, "/lib/x").Read(0, 10), "inside");
    EXPECT_FALSE(RootFile(root, "/out").IsOpen());
}

}  // namespace
}  // namespace Vantix::transport
