#include "transport/process/joined_command_line.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

TEST(JoinedCommandLineTest, PlainWordsAreJoinedByBlanks) {
    EXPECT_EQ(JoinedCommandLine({"-I", "lanplus", "-p", "623"}), "-I lanplus -p 623");
    EXPECT_EQ(JoinedCommandLine({}), "");
}

TEST(JoinedCommandLineTest, BlanksAndEmptyWordsAreQuoted) {
    EXPECT_EQ(JoinedCommandLine({"two words", "", "tab\there"}),
              "\"two words\" \"\" \"tab\there\"");
}

TEST(JoinedCommandLineTest, QuotationMarksAreEscaped) {
    EXPECT_EQ(JoinedCommandLine({R"(say "hi")"}), R"("say \"hi\"")");
}

TEST(JoinedCommandLineTest, BackslashesDoubleOnlyBeforeAQuotationMark) {
    EXPECT_EQ(JoinedCommandLine({R"(C:\a\b)"}), R"(C:\a\b)");
    EXPECT_EQ(JoinedCommandLine({R"(C:\a b\)"}), R"("C:\a b\\")");
    EXPECT_EQ(JoinedCommandLine({R"(a\"b)"}), R"("a\\\"b")");
    EXPECT_EQ(JoinedCommandLine({R"(a\\b c)"}), R"("a\\b c")");
}

}  // namespace
}  // namespace Vantix::transport
