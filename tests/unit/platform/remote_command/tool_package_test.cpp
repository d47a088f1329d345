#include "platform/remote_command/tool_package.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/temporary_folder.h"

namespace Vantix::remote {
namespace {

TEST(ToolPackageTest, NameSaysVersionSystemAndMachine) {
    EXPECT_EQ(ToolPackageName("0.1.0", "Linux", "x86_64"), "tarsel-0.1.0-Linux-x86_64.tar.gz");
}

TEST(ToolPackageTest, MachineThatIsNoWordHasNoName) {
    EXPECT_EQ(ToolPackageName("0.1.0", "Linux", "../../x"), "");
    EXPECT_EQ(ToolPackageName("0.1.0", "", "x86_64"), "");
    EXPECT_EQ(ToolPackageName("0.1.0", "Linux", "x 86"), "");
    EXPECT_EQ(ToolPackageName("0.1.0", "Linux", std::string(300, 'x')), "");
}

class ToolPackageFolderTest : public testing::Test {
  protected:
    [[nodiscard]] ToolPackage Find(const std::string& machine) const {
        return FindToolPackage(folder_.Path(""), "0.1.0", "Linux", machine);
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(ToolPackageFolderTest, FittingPackageIsFound) {
    const std::string file = folder_.Write("tarsel-0.1.0-Linux-x86_64.tar.gz", "x");
    folder_.Write("tarsel-0.1.0-Linux-aarch64.tar.gz", "x");
    EXPECT_EQ(Find("x86_64").file, file);
}

TEST_F(ToolPackageFolderTest, OtherMachineFindsNone) {
    folder_.Write("tarsel-0.1.0-Linux-x86_64.tar.gz", "x");
    const ToolPackage package = Find("riscv64");
    EXPECT_EQ(package.file, "");
    EXPECT_EQ(package.error,
              "There is no tarsel-0.1.0-Linux-riscv64.tar.gz in " + folder_.Path("") + ".");
}

TEST_F(ToolPackageFolderTest, OtherVersionFindsNone) {
    folder_.Write("tarsel-0.0.9-Linux-x86_64.tar.gz", "x");
    EXPECT_EQ(Find("x86_64").file, "");
}

TEST_F(ToolPackageFolderTest, FolderOfThatNameIsNoPackage) {
    std::filesystem::create_directory(folder_.Path("tarsel-0.1.0-Linux-x86_64.tar.gz"));
    EXPECT_EQ(Find("x86_64").file, "");
}

TEST_F(ToolPackageFolderTest, HostileMachineNameLeavesTheFolderAlone) {
    EXPECT_EQ(Find("../../../etc/passwd").error, "The remote machine does not say what it is.");
}

}  // namespace
}  // namespace Vantix::remote
