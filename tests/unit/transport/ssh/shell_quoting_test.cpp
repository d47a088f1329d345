#include <gtest/gtest.h>

#include <string>

#include "transport/ssh/remote_shell.h"

namespace Vantix::transport {
namespace {

TEST(ShellQuotingTest, PlainWordIsQuotedToo) {
    EXPECT_EQ(QuoteForShell("word"), "'word'");
}

TEST(ShellQuotingTest, EmptyWordStaysAWord) {
    EXPECT_EQ(QuoteForShell(""), "''");
}

TEST(ShellQuotingTest, SingleQuoteEndsAndBeginsTheQuotedText) {
    EXPECT_EQ(QuoteForShell("it's"), R"('it'\''s')");
    EXPECT_EQ(QuoteForShell("'"), R"(''\''')");
}

TEST(ShellQuotingTest, NothingElseIsSpecial) {
    EXPECT_EQ(QuoteForShell("a b\"$(id)`id`\\;&|<>*?~#!"), "'a b\"$(id)`id`\\;&|<>*?~#!'");
}

TEST(ShellQuotingTest, NewlineStandsForItself) {
    EXPECT_EQ(QuoteForShell("a\nb"), "'a\nb'");
}

TEST(ShellQuotingTest, BytesThatAreNoTextStandForThemselves) {
    EXPECT_EQ(QuoteForShell("\xff\x01"), "'\xff\x01'");
}

TEST(ShellQuotingTest, ZeroByteThatNoShellCanCarryIsLeftOut) {
    EXPECT_EQ(QuoteForShell(std::string("a\0b", 3)), "'ab'");
}

TEST(ShellQuotingTest, PathWithLeadingDashIsNoOption) {
    EXPECT_EQ(QuotePathForShell("-rf"), "'./-rf'");
    EXPECT_EQ(QuotePathForShell("--"), "'./--'");
}

TEST(ShellQuotingTest, OtherPathsAreLeftAlone) {
    EXPECT_EQ(QuotePathForShell("/tmp/-a"), "'/tmp/-a'");
    EXPECT_EQ(QuotePathForShell("a-b"), "'a-b'");
    EXPECT_EQ(QuotePathForShell(""), "''");
}

}  // namespace
}  // namespace Vantix::transport
