#include "transport/process/program_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Vantix::transport {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string Find(const std::string& name, const std::string& folders,
                 const std::set<std::string>& programs) {
    return FindProgram(name, folders,
                       [&](const std::string& path) { return programs.count(path) > 0; });
}

TEST(ProgramSearchTest, FoldersOfThePathComeFirst) {
    EXPECT_THAT(ProgramFolders("/opt/tools:/usr/bin"), StartsWith("/opt/tools:/usr/bin:"));
}

TEST(ProgramSearchTest, AdministratorsFoldersAreAlwaysSearched) {
    EXPECT_THAT(ProgramFolders("/opt/tools"), HasSubstr(":/usr/sbin:"));
}

TEST(ProgramSearchTest, EmptyPathLeavesTheUsualFolders) {
    EXPECT_THAT(ProgramFolders(""), StartsWith("/usr/local/sbin:"));
}

TEST(ProgramSearchTest, NoFolderIsSearchedTwice) {
    const std::string folders = ProgramFolders("/usr/bin:/usr/bin");
    EXPECT_EQ(folders.find("/usr/bin:"), folders.rfind("/usr/bin:"));
}

TEST(ProgramSearchTest, CurrentFolderIsNeverSearched) {
    const std::string folders = ProgramFolders(".::tools:/opt/tools");
    EXPECT_THAT(folders, StartsWith("/opt/tools:"));
    EXPECT_THAT(folders, Not(HasSubstr("::")));
}

TEST(ProgramSearchTest, FirstFolderWithTheProgramWins) {
    EXPECT_EQ(Find("tool", "/a:/b", {"/a/tool", "/b/tool"}), "/a/tool");
    EXPECT_EQ(Find("tool", "/a:/b", {"/b/tool"}), "/b/tool");
}

TEST(ProgramSearchTest, ProgramThatIsNowhereGivesAnEmptyPath) {
    EXPECT_EQ(Find("tool", "/a:/b", {"/c/tool"}), "");
}

TEST(ProgramSearchTest, NameWithASlashIsTakenAsItStands) {
    EXPECT_EQ(Find("/c/tool", "/a:/b", {"/c/tool"}), "/c/tool");
    EXPECT_EQ(Find("/c/tool", "/a:/b", {"/a/tool"}), "");
}

TEST(ProgramSearchTest, EmptyNameIsNoProgram) {
    EXPECT_EQ(Find("", "/a:/b", {"/a/"}), "");
}

}  // namespace
}  // namespace Vantix::transport
