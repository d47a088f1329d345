#include "transport/ssh/part_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_kinds.h"
#include "support/temporary_folder.h"

namespace Vantix::transport {
namespace {

using testing::HasSubstr;

class PartFileTest : public testing::Test {
  protected:
    [[nodiscard]] bool Exists(const std::string& name) const {
        return std::filesystem::exists(folder_.Path(name));
    }
    test_support::TemporaryFolder folder_;
};

TEST_F(PartFileTest, FileAppearsWhenItIsCommitted) {
    PartFile file(folder_.Path("data"), 100);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("one"));
    ASSERT_FALSE(file.Append("two"));
    EXPECT_FALSE(Exists("data"));
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(folder_.Read("data"), "onetwo");
    EXPECT_EQ(file.Size(), 6U);
}

TEST_F(PartFileTest, NothingStaysOfAFileThatWasGivenUp) {
    {
        PartFile file(folder_.Path("data"), 100);
        ASSERT_FALSE(file.Begin());
        ASSERT_FALSE(file.Append("one"));
    }
    EXPECT_FALSE(Exists("data"));
    EXPECT_FALSE(Exists("data.part"));
}

TEST_F(PartFileTest, OlderFileStaysUntilTheNewOneIsComplete) {
    folder_.Write("data", "old");
    {
        PartFile file(folder_.Path("data"), 100);
        ASSERT_FALSE(file.Begin());
        ASSERT_FALSE(file.Append("new"));
    }
    EXPECT_EQ(folder_.Read("data"), "old");
    PartFile file(folder_.Path("data"), 100);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("new"));
    ASSERT_FALSE(file.Commit());
    EXPECT_EQ(folder_.Read("data"), "new");
}

TEST_F(PartFileTest, BeginningAnewForgetsWhatWasThere) {
    PartFile file(folder_.Path("data"), 100);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("first try"));
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("second"));
    ASSERT_FALSE(file.Commit());
    EXPECT_EQ(folder_.Read("data"), "second");
}

TEST_F(PartFileTest, MoreThanTheLimitIsRefused) {
    PartFile file(folder_.Path("data"), 5);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("12345"));
    const SshFailure failure = file.Append("6");
    EXPECT_EQ(failure.problem, SshProblem::kFileTooLarge);
    EXPECT_THAT(failure.text, HasSubstr("5 bytes"));
}

TEST_F(PartFileTest, FolderThatIsNotThereIsALocalProblem) {
    PartFile file(folder_.Path("nothing/data"), 5);
    EXPECT_EQ(file.Begin().problem, SshProblem::kLocalFile);
}

TEST_F(PartFileTest, LinkOfThePartsNameIsNotFollowed) {
    folder_.Write("victim", "precious");
    test_support::MakeLink(folder_.Path("victim"), folder_.Path("data.part"));
    PartFile file(folder_.Path("data"), 100);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("new"));
    ASSERT_FALSE(file.Commit());
    EXPECT_EQ(folder_.Read("victim"), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(folder_.Path("data")));
}

TEST_F(PartFileTest, LinkOfTheFilesNameIsReplacedNotFollowed) {
    folder_.Write("victim", "precious");
    test_support::MakeLink(folder_.Path("victim"), folder_.Path("data"));
    PartFile file(folder_.Path("data"), 100);
    ASSERT_FALSE(file.Begin());
    ASSERT_FALSE(file.Append("new"));
    ASSERT_FALSE(file.Commit());
    EXPECT_EQ(folder_.Read("victim"), "precious");
    EXPECT_EQ(folder_.Read("data"), "new");
}

}  // namespace
}  // namespace Vantix::transport
