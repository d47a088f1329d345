#include "platform/pci/vpd_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/system_tree.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::SystemTree;
using Vantix::pci::OpenVpdFile;
using Vantix::pci::PieceReader;
using Vantix::transport::SystemRoot;

TEST(VpdFileTest, FileIsReadInPieces) {
    SystemTree tree;
    tree.File("/sys/vpd", "0123456789");
    const PieceReader reader = OpenVpdFile(SystemRoot(tree.Root()), "/sys/vpd");
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader(0, 4), "0123");
    EXPECT_EQ(reader(8, 4), "89");
    EXPECT_EQ(reader(10, 4), "");
    EXPECT_EQ(reader(4, 4), "4567");
}

TEST(VpdFileTest, MissingFilesAndFoldersAreNotOpened) {
    SystemTree tree;
    tree.Folder("/sys/folder");
    const SystemRoot root(tree.Root());
    for (const char* path : {"/sys/missing", "/sys/folder"}) {
        EXPECT_FALSE(OpenVpdFile(root, path)) << path;
    }
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(VpdFileTest, PipesAndLinksAreNotOpened) {
    SystemTree tree;
    tree.File("/sys/target", "x").Link("/sys/link", "target").Pipe("/sys/pipe");
    const SystemRoot root(tree.Root());
    for (const char* path : {"/sys/pipe", "/sys/link"}) {
        EXPECT_FALSE(OpenVpdFile(root, path)) << path;
    }
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(VpdFileTest, ForbiddenFileIsNoted) {
    SystemTree tree;
    tree.File("/sys/vpd", "x");
    tree.Forbid("/sys/vpd");
    const test_support::UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(OpenVpdFile(root, "/sys/vpd"));
    EXPECT_EQ(root.DeniedPaths(), std::vector<std::string>{"/sys/vpd"});
}

TEST(VpdFileTest, ReaderOutlivesTheTreeItWasOpenedIn) {
    PieceReader reader;
    {
        SystemTree tree;
        tree.File("/sys/vpd", "0123");
        reader = OpenVpdFile(SystemRoot(tree.Root()), "/sys/vpd");
    }
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader(0, 4), "0123");
}

}  // namespace
