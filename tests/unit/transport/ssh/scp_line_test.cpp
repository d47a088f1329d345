#include "transport/ssh/scp_line.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using Kind = ScpLine::Kind;

TEST(ScpLineTest, FileLineTellsTheSize) {
    const ScpLine line = ParseScpLine("C0644 4294967297 name with blanks");
    EXPECT_EQ(line.kind, Kind::kFile);
    EXPECT_EQ(line.size, 4294967297ULL);
}

TEST(ScpLineTest, ErrorLinesTellTheirWordsClean) {
    EXPECT_EQ(ParseScpLine("\1scp: x: No such file or directory").words,
              "scp: x: No such file or directory");
    const ScpLine line = ParseScpLine("\2lost\x1b connection");
    EXPECT_EQ(line.kind, Kind::kError);
    EXPECT_EQ(line.words, "lost  connection");
}

TEST(ScpLineTest, FoldersAndTimesAreNoFiles) {
    EXPECT_EQ(ParseScpLine("D0755 0 folder").kind, Kind::kOther);
    EXPECT_EQ(ParseScpLine("T1 0 1 0").kind, Kind::kOther);
    EXPECT_EQ(ParseScpLine("E").kind, Kind::kOther);
}

TEST(ScpLineTest, LinesThatAreNoneAreNoFiles) {
    for (const char* text : {"", "C", "C0644", "C0644 ", "C0644 x name", "C0644 12", "C0644 -1 x",
                             "C0644 99999999999999999999999 x", "C0644 12x name", "welcome"}) {
        EXPECT_EQ(ParseScpLine(text).kind, Kind::kOther) << text;
    }
}

TEST(ScpLineTest, AnnouncedFileCarriesModeSizeAndBaseName) {
    EXPECT_EQ(ScpFileLine(0700, 12, "/tmp/a/tool"), "C0700 12 tool\n");
    EXPECT_EQ(ScpFileLine(04755, 0, "tool"), "C4755 0 tool\n");
}

TEST(ScpLineTest, LineBreakInANameCannotForgeAnotherLine) {
    EXPECT_EQ(ScpFileLine(0600, 1, "a\nC0777 9 b"), "C0600 1 a_C0777 9 b\n");
}

TEST(ScpLineTest, ModesAreFourOctalDigits) {
    EXPECT_EQ(OctalMode(0), "0000");
    EXPECT_EQ(OctalMode(0644), "0644");
    EXPECT_EQ(OctalMode(0107777), "7777");
}

}  // namespace
}  // namespace Vantix::transport
