#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>

#include "platform/os/os.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;

mode_t ModeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(OsTest, FolderOfAModuleFileEndsWithItsSeparator) {
    EXPECT_EQ(DirectoryOfModuleFile("/opt/tool/lib.so"), "/opt/tool/");
    EXPECT_EQ(DirectoryOfModuleFile("/lib.so"), "/");
}

TEST(OsTest, ModuleFileWithoutSeparatorHasAnEmptyFolder) {
    EXPECT_EQ(DirectoryOfModuleFile("lib.so"), "");
    EXPECT_EQ(DirectoryOfModuleFile(""), "");
}

TEST(OsTest, BackslashIsAnOrdinaryLetterInAFolderName) {
    EXPECT_EQ(DirectoryOfModuleFile("/opt/a\\b/lib.so"), "/opt/a\\b/");
    EXPECT_EQ(DirectoryOfModuleFile("a\\b"), "");
}

TEST(OsTest, FolderOfTheOwnModuleIsAbsoluteAndExists) {
    const std::string directory = GetModuleDirectory();
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.front(), '/');
    EXPECT_EQ(directory.back(), '/');
    EXPECT_TRUE(std::filesystem::is_directory(directory));
}

TEST(OsTest, FolderOfTheOwnModuleSurvivesAChangeOfTheCurrentFolder) {
    const std::string before = GetModuleDirectory();
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path("/");
    EXPECT_EQ(GetModuleDirectory(), before);
    std::filesystem::current_path(former);
}

TEST(OsTest, MonotonicTimeNeverGoesBack) {
    const std::int64_t first = MonotonicSeconds();
    EXPECT_GE(MonotonicSeconds(), first);
}

TEST(OsTest, SleepOfNothingReturns) {
    EXPECT_NO_FATAL_FAILURE(SleepMilliseconds(0));
}

TEST(OsTest, PrivateFileIsMadeForItsOwnerWhateverTheMask) {
    const TemporaryFolder folder;
    const mode_t former = umask(0);
    EXPECT_TRUE(MakePrivateFile(folder.Path("new")));
    umask(former);
    EXPECT_EQ(ModeOf(folder.Path("new")), 0600U);
}

TEST(OsTest, PrivateFileKeepsItsContent) {
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.Write("old", "content").c_str(), 0666), 0);
    EXPECT_TRUE(MakePrivateFile(folder.Path("old")));
    EXPECT_EQ(ModeOf(folder.Path("old")), 0600U);
    EXPECT_EQ(folder.Read("old"), "content");
}

TEST(OsTest, ModeOfADeviceIsLeftAlone) {
    const mode_t before = ModeOf("/dev/null");
    EXPECT_TRUE(MakePrivateFile("/dev/null"));
    EXPECT_EQ(ModeOf("/dev/null"), before);
}

TEST(OsTest, PrivateFileInAMissingFolderFails) {
    const TemporaryFolder folder;
    EXPECT_FALSE(MakePrivateFile(folder.Path("no/such")));
}

TEST(OsTest, ReplacedFileHoldsExactlyTheText) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ReplaceFile(folder.Path("new"), "one\ntwo"));
    EXPECT_EQ(folder.Read("new"), "one\ntwo");
    EXPECT_TRUE(ReplaceFile(folder.Path("new"), ""));
    EXPECT_EQ(folder.Read("new"), "");
}

TEST(OsTest, ReplacedFileHasTheUsualMode) {
    const TemporaryFolder folder;
    const mode_t former = umask(022);
    EXPECT_TRUE(ReplaceFile(folder.Path("new"), "text"));
    umask(former);
    EXPECT_EQ(ModeOf(folder.Path("new")), 0644U);
}

TEST(OsTest, LinkAtTheNameIsReplacedAndNotFollowed) {
    const TemporaryFolder folder;
    const std::string precious = folder.Write("precious", "precious");
    std::filesystem::create_symlink(precious, folder.Path("link"));
    EXPECT_TRUE(ReplaceFile(folder.Path("link"), "text"));
    EXPECT_EQ(folder.Read("precious"), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(folder.Path("link")));
    EXPECT_EQ(folder.Read("link"), "text");
}

TEST(OsTest, SecondNameOfAFileIsReplacedAndTheFileKept) {
    const TemporaryFolder folder;
    std::filesystem::create_hard_link(folder.Write("precious", "precious"), folder.Path("second"));
    EXPECT_TRUE(ReplaceFile(folder.Path("second"), "text"));
    EXPECT_EQ(folder.Read("precious"), "precious");
}

TEST(OsTest, FileThatCannotBeReplacedLeavesNothingBehind) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path("place"));
    EXPECT_FALSE(ReplaceFile(folder.Path("place"), "text"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.Path("place")));
    const std::filesystem::directory_iterator entries(folder.Path(""));
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(OsTest, FileInAMissingFolderIsNotReplaced) {
    const TemporaryFolder folder;
    EXPECT_FALSE(ReplaceFile(folder.Path("no/such"), "text"));
}

}  // namespace
}  // namespace Vantix
