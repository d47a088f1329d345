#include "guest/console_parts.h"

#include <gtest/gtest.h>

namespace guest {
namespace {

TEST(ConsolePartsTest, PartHoldsItsLinesAndTheStatusOfItsCommand) {
    const ConsoleParts parts = ReadParts("noise\r\n@@begin one\r\na\r\n b\r\n@@end one 3\r\nnoise");
    ASSERT_EQ(parts.size(), 1U);
    EXPECT_EQ(parts.at("one").text, "a\n b\n");
    EXPECT_EQ(parts.at("one").status, 3);
}

TEST(ConsolePartsTest, PartThatWasNeverClosedHasNoStatus) {
    const ConsoleParts parts = ReadParts("@@begin one\na\n@@begin two\n@@end two 0\n");
    EXPECT_EQ(parts.at("one").status, -1);
    EXPECT_EQ(parts.at("two").status, 0);
}

TEST(ConsolePartsTest, EndOfAnotherPartIsText) {
    const ConsoleParts parts = ReadParts("@@begin one\n@@end two 0\n@@end one 0\n");
    EXPECT_EQ(parts.at("one").text, "@@end two 0\n");
}

TEST(ConsolePartsTest, FactsAreSplitAtTheFirstEqualsSign) {
    const Facts facts = ReadFacts("a=b=c\nno fact\nempty=\n");
    EXPECT_EQ(facts, (Facts{{"a", "b=c"}, {"empty", ""}}));
}

TEST(ConsolePartsTest, ValuesOfTheNamedFactsBecomeMarks) {
    const Facts facts = {{"a", "1.2"}, {"b", "1.2"}, {"c", ""}, {"d", "x"}};
    EXPECT_EQ(WithMarks("1.2 x 1.2", facts, {"a", "b", "c", "no"}), "${a} x ${a}");
}

}  // namespace
}  // namespace guest
