#include "platform/system_check/system_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

std::set<std::string> Read(const std::string& text) {
    std::istringstream stream(text);
    return ReadSystemList(stream);
}

TEST(SystemListTest, EachLineIsAMachineType) {
    EXPECT_THAT(Read("EX-1\nEX-2\n"), ElementsAre("EX-1", "EX-2"));
}

TEST(SystemListTest, LastLineNeedsNoLineEnd) {
    EXPECT_THAT(Read("EX-1"), ElementsAre("EX-1"));
}

TEST(SystemListTest, BlanksCarriageReturnsAndByteOrderMarkAreTrimmed) {
    EXPECT_THAT(Read("\xEF\xBB\xBF EX 1 \t\r\n\r\n  \nEX-2\r\n"), ElementsAre("EX 1", "EX-2"));
}

TEST(SystemListTest, CommentsAreIgnoredAtBeginAndEndOfALine) {
    EXPECT_THAT(Read("# EX-0\nEX-1 # the first\n   #EX-2\n"), ElementsAre("EX-1"));
}

TEST(SystemListTest, AnyBytesAreTolerated) {
    EXPECT_THAT(Read(std::string("\xFF\xFE\0\x01\nEX-1\n\0\n", 12)),
                testing::Contains(std::string("EX-1")));
}

TEST(SystemListTest, HugeLinesAreSkipped) {
    EXPECT_THAT(Read(std::string(1000000, 'x') + "\nEX-1\n"), ElementsAre("EX-1"));
}

TEST(SystemListTest, LineOfTheGreatestLengthCounts) {
    const std::string longest(kLongestSystemListLine, 'X');
    EXPECT_THAT(Read(longest + "\n" + longest + "Y\n"), ElementsAre(longest));
}

TEST(SystemListTest, LongCommentDoesNotHideItsMachineType) {
    EXPECT_THAT(Read("EX-1 # " + std::string(5000, 'x') + "\n"), ElementsAre("EX-1"));
}

TEST(SystemListTest, HugeFileIsReadInPart) {
    const std::string many(kLargestSystemList, '\n');
    EXPECT_THAT(Read("EX-1\n" + many + "EX-2\n"), ElementsAre("EX-1"));
}

TEST(SystemListTest, EmptyTextIsAnEmptyList) {
    EXPECT_THAT(Read(""), IsEmpty());
}

TEST(SystemListTest, MachineTypesAreComparedWholeAndWithoutLetterCase) {
    const TemporaryFolder folder;
    SystemList list(folder.Write("list.txt", "eX-1\n"));
    EXPECT_TRUE(list.Contains("Ex-1"));
    EXPECT_TRUE(list.Contains(" EX-1 "));
    EXPECT_FALSE(list.Contains("EX-12"));
    EXPECT_FALSE(list.Contains("EX"));
}

TEST(SystemListTest, EmptyMachineTypeIsOnNoList) {
    const TemporaryFolder folder;
    SystemList list(folder.Write("list.txt", "\n\nEX-1\n"));
    EXPECT_FALSE(list.Contains(""));
    EXPECT_FALSE(list.Contains("  "));
}

TEST(SystemListTest, MissingFileIsAnEmptyList) {
    const TemporaryFolder folder;
    EXPECT_FALSE(SystemList(folder.Path("missing.txt")).Contains("EX-1"));
}

TEST(SystemListTest, FolderInPlaceOfTheFileIsAnEmptyList) {
    const TemporaryFolder folder;
    EXPECT_FALSE(SystemList(folder.Path("")).Contains("EX-1"));
}

TEST(SystemListTest, FileIsReadOnTheFirstQuestionAndOnlyThen) {
    const TemporaryFolder folder;
    SystemList list(folder.Path("list.txt"));
    folder.Write("list.txt", "EX-1\n");
    EXPECT_TRUE(list.Contains("EX-1"));
    folder.Write("list.txt", "EX-2\n");
    EXPECT_FALSE(list.Contains("EX-2"));
}

}  // namespace
}  // namespace Vantix
