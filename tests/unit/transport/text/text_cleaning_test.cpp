#include "transport/text/text_cleaning.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using namespace std::string_literals;

TEST(TextCleaningTest, PlainTextStays) {
    EXPECT_EQ(CleanText("BIOS 1.2 (a)"), "BIOS 1.2 (a)");
}

TEST(TextCleaningTest, EmptyTextStaysEmpty) {
    EXPECT_EQ(CleanText(""), "");
}

TEST(TextCleaningTest, TextEndsAtTheFirstNul) {
    EXPECT_EQ(CleanText("1.2\0junk"s), "1.2");
}

TEST(TextCleaningTest, ControlBytesBecomeBlanks) {
    EXPECT_EQ(CleanText("a\rb\nc\td\x1B[0m\x7F."), "a b c d [0m .");
}

TEST(TextCleaningTest, BlanksAtBothEndsGo) {
    EXPECT_EQ(CleanText(" \t a b \r\n"), "a b");
}

TEST(TextCleaningTest, BlanksOnlyBecomeEmpty) {
    EXPECT_EQ(CleanText(" \t\r\n "), "");
}

TEST(TextCleaningTest, WellFormedUtf8Stays) {
    const std::string text = "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80";
    EXPECT_EQ(CleanText(text), text);
}

TEST(TextCleaningTest, NonBreakingSpaceIsNotTrimmed) {
    EXPECT_EQ(CleanText("\xC2\xA0x"), "\xC2\xA0x");
}

struct BadBytes {
    const char* name;
    const char* text;
    const char* clean;
};

class BadUtf8Test : public ::testing::TestWithParam<BadBytes> {};

TEST_P(BadUtf8Test, BecomesReplacementCharacters) {
    EXPECT_EQ(CleanText(GetParam().text), GetParam().clean);
}

INSTANTIATE_TEST_SUITE_P(
    TextCleaning, BadUtf8Test,
    ::testing::Values(BadBytes{"StrayByte",
                               "a\xFF"
                               "b",
                               "a\xEF\xBF\xBD"
                               "b"},
                      BadBytes{"StrayContinuation", "\x80.", "\xEF\xBF\xBD."},
                      BadBytes{"CutSequenceAtTheEnd", "a\xE2\x82", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"CutSequenceInside", "\xC3.", "\xEF\xBF\xBD."},
                      BadBytes{"OverlongSlash", "\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"OverlongThreeBytes", "\xE0\x80\x80",
                               "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"Surrogate", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"BeyondUnicode", "\xF4\x90\x80\x80",
                               "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"OverlongFourBytes", "\xF0\x80\x80\x80",
                               "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                      BadBytes{"Latin1", "M\xFCller", "M\xEF\xBF\xBDller"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(TextCleaningTest, EveryByteAloneGivesWellFormedText) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string clean = CleanText(std::string(1, static_cast<char>(byte)) + ".");
        for (std::size_t at = 0; at < clean.size();) {
            const std::size_t length = Utf8SequenceLength(clean, at);
            ASSERT_GT(length, 0U) << "byte " << byte;
            at += length;
        }
    }
}

TEST(CleanStartTest, LongTextIsCutAtEightyCharacters) {
    EXPECT_EQ(CleanStart(std::string(500, 'x')), std::string(80, 'x'));
}

TEST(CleanStartTest, CharactersAreCountedNotBytes) {
    EXPECT_EQ(CleanStart("\xC3\xA4\xC3\xB6\xC3\xBC", 2), "\xC3\xA4\xC3\xB6");
}

TEST(CleanStartTest, BlanksBeforeTheTextDoNotCount) {
    EXPECT_EQ(CleanStart("\r\n  <html>", 3), "<ht");
}

TEST(CleanStartTest, BlanksOnlyGiveNothing) {
    EXPECT_EQ(CleanStart("  \n"), "");
}

}  // namespace
}  // namespace Vantix::transport
