#include "platform/table/display_width.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(DisplayWidthTest, EmptyTextTakesNoRoom) {
    EXPECT_EQ(DisplayWidth(""), 0U);
}

TEST(DisplayWidthTest, AsciiTakesOneColumnACharacter) {
    EXPECT_EQ(DisplayWidth("BMC 1.10 ~"), 10U);
}

TEST(DisplayWidthTest, AccentedLettersTakeOneColumn) {
    EXPECT_EQ(DisplayWidth("\u00e9\u00fc\u0151"), 3U);
}

TEST(DisplayWidthTest, CombiningMarksTakeNoRoom) {
    EXPECT_EQ(DisplayWidth("e\u0301"), 1U);
    EXPECT_EQ(DisplayWidth("a\u200b\ufe0f"), 1U);
}

TEST(DisplayWidthTest, EastAsianCharactersTakeTwoColumns) {
    EXPECT_EQ(DisplayWidth("\u56fa\u4ef6"), 4U);
    EXPECT_EQ(DisplayWidth("\uac00"), 2U);
    EXPECT_EQ(DisplayWidth("\uff21"), 2U);
    EXPECT_EQ(DisplayWidth("\U00020000"), 2U);
}

TEST(DisplayWidthTest, CharactersBesideWideRangesTakeOneColumn) {
    EXPECT_EQ(DisplayWidth("\u303f"), 1U);
    EXPECT_EQ(DisplayWidth("\u10ff"), 1U);
    EXPECT_EQ(DisplayWidth("\uff61"), 1U);
}

TEST(DisplayWidthTest, EmojiTakeTwoColumns) {
    EXPECT_EQ(DisplayWidth("\U0001F600"), 2U);
}

TEST(DisplayWidthTest, BytesThatAreNoUtf8TakeOneColumnEach) {
    EXPECT_EQ(DisplayWidth("\xff"), 1U);
    EXPECT_EQ(DisplayWidth("\x80z"), 2U);
    EXPECT_EQ(DisplayWidth("\xc3"), 1U);
    EXPECT_EQ(DisplayWidth("\xe5\x9b"), 2U);
    EXPECT_EQ(DisplayWidth("\xe5"
                           "az"),
              3U);
}

TEST(DisplayWidthTest, OverlongSurrogateAndTooLargeFormsCountByBytes) {
    EXPECT_EQ(DisplayWidth("\xc0\xaf"), 2U);
    EXPECT_EQ(DisplayWidth("\xe0\x80\xaf"), 3U);
    EXPECT_EQ(DisplayWidth("\xed\xa0\x80"), 3U);
    EXPECT_EQ(DisplayWidth("\xf4\x90\x80\x80"), 4U);
    EXPECT_EQ(DisplayWidth("\xf8\x88\x80\x80\x80"), 5U);
}

TEST(WithoutControlsTest, LineBreaksAndTabsBecomeBlanks) {
    EXPECT_EQ(WithoutControls("a\r\nb\tc"), "a  b c");
}

TEST(WithoutControlsTest, NulEscapeAndDeleteBecomeBlanks) {
    EXPECT_EQ(WithoutControls(std::string("a\0b\x1b[1m\x7f", 8)), "a b [1m ");
}

TEST(WithoutControlsTest, SecondControlRangeBecomesOneBlankACharacter) {
    EXPECT_EQ(WithoutControls("a\u0085b\u009bc"), "a b c");
}

TEST(WithoutControlsTest, OtherTextStaysAsItIs) {
    const std::string text = "caf\u00e9 \u56fa\u4ef6 \xff e\u0301";
    EXPECT_EQ(WithoutControls(text), text);
}

}  // namespace
