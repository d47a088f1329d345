#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <filesystem>
#include <iterator>

// A macro of the system's headers that would rename our own function.
#undef ReplaceFile

#include "common/files/file_path.h"
#include "platform/os/os.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;

TEST(OsTest, FolderOfAModuleFileEndsWithItsSeparator) {
    EXPECT_EQ(DirectoryOfModuleFile("C:\\tool\\a.dll"), "C:\\tool\\");
    EXPECT_EQ(DirectoryOfModuleFile("C:/tool/a.dll"), "C:/tool/");
    EXPECT_EQ(DirectoryOfModuleFile("C:\\tool/a.dll"), "C:\\tool/");
}

TEST(OsTest, ModuleFileWithoutSeparatorHasAnEmptyFolder) {
    EXPECT_EQ(DirectoryOfModuleFile("a.dll"), "");
    EXPECT_EQ(DirectoryOfModuleFile(""), "");
}

TEST(OsTest, FolderOfTheOwnModuleIsAbsoluteAndExists) {
    const std::string directory = GetModuleDirectory();
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.back(), '\\');
    EXPECT_TRUE(FilePath(directory).is_absolute());
    EXPECT_TRUE(std::filesystem::is_directory(FilePath(directory)));
}

TEST(OsTest, MonotonicTimeNeverGoesBack) {
    const std::int64_t first = MonotonicSeconds();
    EXPECT_GE(MonotonicSeconds(), first);
}

TEST(OsTest, PrivateFileKeepsItsContent) {
    const TemporaryFolder folder;
    EXPECT_TRUE(MakePrivateFile(folder.Write("old", "content")));
    EXPECT_EQ(folder.Read("old"), "content");
}

// The access list of a file as text: "D:(A;;FA;;;SY)...".
std::string AccessList(const std::string& path) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error =
        GetNamedSecurityInfoA(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, nullptr, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) return "error " + std::to_string(error);
    char* text = nullptr;
    ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1,
                                                         DACL_SECURITY_INFORMATION, &text, nullptr);
    const std::string list(text);
    LocalFree(text);
    LocalFree(descriptor);
    return list;
}

void OpenToEverybody(const std::string& path) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorA("D:P(A;;FA;;;WD)", SDDL_REVISION_1,
                                                         &descriptor, nullptr);
    SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
}

TEST(OsTest, PrivateFileIsClosedToEverybodyElse) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("old", "content");
    OpenToEverybody(file);
    ASSERT_THAT(AccessList(file), testing::HasSubstr("WD)"));
    EXPECT_TRUE(MakePrivateFile(file));
    EXPECT_THAT(AccessList(file), testing::Not(testing::HasSubstr("WD)")));
    EXPECT_THAT(AccessList(file), testing::HasSubstr("(A;;FA;;;SY)"));
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

TEST(OsTest, ReplacedFileMayHaveAnyName) {
    const TemporaryFolder folder;
    const std::string name = FileName(FilePath(folder.Path("")) / FilePath("ü中.xml"));
    EXPECT_TRUE(ReplaceFile(name, "text"));
    EXPECT_TRUE(std::filesystem::exists(FilePath(name)));
}

TEST(OsTest, SecondNameOfAFileIsReplacedAndTheFileKept) {
    const TemporaryFolder folder;
    std::filesystem::create_hard_link(folder.Write("precious", "precious"), folder.Path("second"));
    EXPECT_TRUE(ReplaceFile(folder.Path("second"), "text"));
    EXPECT_EQ(folder.Read("precious"), "precious");
    EXPECT_EQ(folder.Read("second"), "text");
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
