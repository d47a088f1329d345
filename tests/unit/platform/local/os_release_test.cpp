#include "platform/local/os_release.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vantix::local::OsName;
using Vantix::local::OsNameOf;
using Vantix::local::ParseOsRelease;

std::string Value(const std::string& line) {
    const auto release = ParseOsRelease(line);
    return release.size() == 1 ? release.begin()->second : "?";
}

OsName NameOf(const std::string& text) {
    return OsNameOf(ParseOsRelease(text));
}

TEST(OsReleaseTest, ValuesAreTakenBareAndInBothQuotes) {
    EXPECT_EQ(Value("ID=debian"), "debian");
    EXPECT_EQ(Value("ID=\"debian\""), "debian");
    EXPECT_EQ(Value("ID='debian'"), "debian");
    EXPECT_EQ(Value("ID="), "");
    EXPECT_EQ(Value("ID=\"\""), "");
    EXPECT_EQ(Value("NAME=\"Debian GNU/Linux\""), "Debian GNU/Linux");
    EXPECT_EQ(Value("NAME=\"it's\""), "it's");
    EXPECT_EQ(Value("NAME='say \"x\"'"), "say \"x\"");
}

TEST(OsReleaseTest, BackslashEscapesWhatAShellWouldTouch) {
    EXPECT_EQ(Value(R"(NAME="a \"b\" \$c \`d\` \\e")"), R"(a "b" $c `d` \e)");
    EXPECT_EQ(Value(R"(NAME="a\nb")"), R"(a\nb)");
    EXPECT_EQ(Value(R"(NAME='a\$b')"), R"(a\$b)");
    EXPECT_EQ(Value(R"(NAME=a\ b)"), "a b");
    EXPECT_EQ(Value("NAME=\"a\\"), "a\\");
}

TEST(OsReleaseTest, NothingBehindTheClosingQuoteCounts) {
    EXPECT_EQ(Value("ID=\"debian\" # not this"), "debian");
    EXPECT_EQ(Value("ID=\"debian"), "debian");
}

TEST(OsReleaseTest, CommentsBlankLinesAndOtherTextArePassedOver) {
    EXPECT_TRUE(ParseOsRelease("# ID=x\n\n  \nnonsense\n=x\nbad name=x\nID-LIKE=x\n").empty());
    EXPECT_TRUE(ParseOsRelease("").empty());
}

TEST(OsReleaseTest, LineEndsOfOtherSystemsAndBlanksAroundAreTrimmed) {
    EXPECT_EQ(NameOf("  ID=debian\r\n\tVERSION_ID=\"12\"\r\n").name, "debian12");
}

TEST(OsReleaseTest, LastAssignmentOfANameCounts) {
    EXPECT_EQ(NameOf("ID=a\nVERSION_ID=1\nID=b").name, "b1");
}

TEST(OsReleaseTest, ValuesAreClean) {
    EXPECT_EQ(Value("NAME=\"a\x01\xff\""), "a \xEF\xBF\xBD");
}

TEST(OsNameTest, MajorVersionBelongsToTheName) {
    EXPECT_EQ(NameOf("ID=\"rhel\"\nVERSION_ID=\"9.3\"").name, "rhel9");
    EXPECT_EQ(NameOf("ID=\"rhel\"\nVERSION_ID=\"9.3\"").minor_version, "3");
    EXPECT_EQ(NameOf("ID=\"sles\"\nVERSION_ID=\"15.5\"").name, "sles15");
    EXPECT_EQ(NameOf("ID=\"sles\"\nVERSION_ID=\"15.5\"").minor_version, "5");
    EXPECT_EQ(NameOf("ID=alpine\nVERSION_ID=3.18.4").minor_version, "18.4");
}

TEST(OsNameTest, VersionWithoutDotHasNoMinorPart) {
    EXPECT_EQ(NameOf("ID=debian\nVERSION_ID=\"12\"").name, "debian12");
    EXPECT_EQ(NameOf("ID=debian\nVERSION_ID=\"12\"").minor_version, "");
}

TEST(OsNameTest, ReleaseOfYearAndMonthStaysWhole) {
    const std::string text = "ID=ubuntu\nVERSION_ID=\"22.04\"\nVERSION=\"22.04.3 LTS (Example)\"";
    EXPECT_EQ(NameOf(text).name, "ubuntu22.04");
    EXPECT_EQ(NameOf(text).minor_version, "3");
    EXPECT_EQ(NameOf("ID=ubuntu\nVERSION_ID=23.10\nVERSION=\"23.10 (Example)\"").minor_version, "");
    EXPECT_EQ(NameOf("ID=openEuler\nVERSION_ID=\"22.03\"").name, "openeuler22.03");
    EXPECT_EQ(NameOf("ID=ubuntu").name, "ubuntu");
}

TEST(OsNameTest, RollingReleaseIsItsIdAlone) {
    EXPECT_EQ(NameOf("ID=arch\nBUILD_ID=rolling").name, "arch");
    EXPECT_EQ(NameOf("ID=arch").minor_version, "");
}

TEST(OsNameTest, WithoutIdItIsLinux) {
    EXPECT_EQ(NameOf("NAME=Something").name, "linux");
    EXPECT_EQ(NameOf("").name, "linux");
}

TEST(OsNameTest, MaintenanceSystemHasItsOwnName) {
    EXPECT_EQ(NameOf("ID=platform\nVERSION_ID=\"4.2\"").name, "PLATFORM");
    EXPECT_EQ(NameOf("ID=PLATFORM\nVERSION_ID=\"4.2\"").minor_version, "4.2");
    EXPECT_EQ(NameOf("ID=platform-linux").name, "platform-linux");
}

}  // namespace
