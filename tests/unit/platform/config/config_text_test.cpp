#include "platform/config/config_text.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Vantix {
namespace {

std::optional<int> Find(const std::string& text, const std::string& key = "KEY") {
    std::istringstream stream(text);
    return FindConfigNumber(stream, key);
}

TEST(ConfigTextTest, NumberBehindTheKeyIsFound) {
    EXPECT_EQ(Find("OTHER=1\nKEY=42\n"), 42);
}

TEST(ConfigTextTest, BlanksAndCarriageReturnsAreIgnored) {
    EXPECT_EQ(Find("\t KEY  = \t-7 \r\n"), -7);
}

TEST(ConfigTextTest, ByteOrderMarkIsIgnored) {
    EXPECT_EQ(Find("\xEF\xBB\xBFKEY=3"), 3);
}

TEST(ConfigTextTest, LastLineWithoutLineEndCounts) {
    EXPECT_EQ(Find("KEY=5"), 5);
}

TEST(ConfigTextTest, LastOfRepeatedKeysCounts) {
    EXPECT_EQ(Find("KEY=1\nKEY=2\n"), 2);
}

TEST(ConfigTextTest, CommentedKeyIsAbsent) {
    EXPECT_EQ(Find("# KEY=1\n"), std::nullopt);
}

TEST(ConfigTextTest, KeysAreComparedWhole) {
    EXPECT_EQ(Find("KEYS=1\nMYKEY=2\nkey=3\n"), std::nullopt);
}

TEST(ConfigTextTest, ValuesThatAreNoNumbersAreAbsent) {
    for (const char* value : {"", "ten", "1x", "1.5", "0x10", "99999999999", "+1", "1 2"}) {
        EXPECT_EQ(Find(std::string("KEY=") + value), std::nullopt) << value;
    }
}

TEST(ConfigTextTest, LinesOfAnyBytesAreTolerated) {
    EXPECT_EQ(Find(std::string("\0\xFF==\n=\nKEY=6\n", 13)), 6);
}

TEST(ConfigTextTest, EmptyTextHasNoKey) {
    EXPECT_EQ(Find(""), std::nullopt);
}

}  // namespace
}  // namespace Vantix
