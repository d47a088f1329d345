#include "platform/remote_command/scan_file_cleaning.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_kinds.h"
#include "support/temporary_folder.h"

namespace Vantix::remote {
namespace {

TEST(ScanFileCleaningTest, CleanTextStaysAsItIs) {
    const std::string xml =
        "<?xml version=\"1.0\"?>\n<A>\r\n\t<B>caf\xC3\xA9 &amp; &#233; &#xE9; &lt;</B>&# &#\n</A>";
    EXPECT_EQ(CleanScanXml(xml), xml);
}

TEST(ScanFileCleaningTest, ControlBytesBecomeBlanks) {
    EXPECT_EQ(CleanScanXml("<A>\x1B[2J\x07\x7F</A>"), "<A> [2J  </A>");
    EXPECT_EQ(CleanScanXml(std::string_view("a\0b", 3)), "a b");
}

TEST(ScanFileCleaningTest, ControlCharactersOfTwoBytesBecomeBlanks) {
    EXPECT_EQ(CleanScanXml("a\xC2\x9B"
                           "2J"),
              "a 2J");
    EXPECT_EQ(CleanScanXml("a\xC2\xA0"
                           "b"),
              "a\xC2\xA0"
              "b");
}

TEST(ScanFileCleaningTest, BytesThatAreNoTextBecomeReplacements) {
    EXPECT_EQ(CleanScanXml("a\xFF"
                           "b\x9B"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
}

class ControlReferenceTest : public testing::TestWithParam<const char*> {};

TEST_P(ControlReferenceTest, BecomesABlank) {
    EXPECT_EQ(CleanScanXml(std::string("a") + GetParam() + "b"), "a b");
}

INSTANTIATE_TEST_SUITE_P(ScanFileCleaning, ControlReferenceTest,
                         testing::Values("&#27;", "&#x1b;", "&#X1B;", "&#0027;", "&#155;", "&#x9b;",
                                         "&#127;", "&#0;", "&#18446744073709551643;", "&#;",
                                         "&#x110000;", "&#1b;"));

TEST(ScanFileCleaningTest, ReferencesTooLongToBeJudgedAreNoneAnyMore) {
    const std::string digits = std::string(80, '0') + "27;";
    EXPECT_EQ(CleanScanXml("a&#" + digits + "b"), "a&amp;#" + digits + "b");
    EXPECT_EQ(CleanScanXml("&#x" + digits), "&amp;#x" + digits);
    EXPECT_EQ(CleanScanXml("&#00"), "&amp;#00");
}

TEST(ScanFileCleaningTest, NoLengthOfAReferenceCarriesAControlCharacter) {
    for (std::size_t zeros = 0; zeros < 100; ++zeros) {
        const std::string text = "<a>&#" + std::string(zeros, '0') + "27;</a>";
        const std::string clean = CleanScanXml(text);
        const bool is_harmless = clean == "<a> </a>" || clean.starts_with("<a>&amp;#");
        EXPECT_TRUE(is_harmless) << zeros << ": " << clean;
    }
}

TEST(ScanFileCleaningTest, CleanedTextIsCleanAlsoAfterHalfReferences) {
    for (const char* text : {"&#&#", "&#27", "&#&amp;", "&#x;", "&#", "&#1&#2;&#;", "&#zz;"}) {
        const std::string clean = CleanScanXml(text);
        EXPECT_EQ(CleanScanXml(clean), clean) << text;
    }
}

TEST(ScanFileCleaningTest, ManyPackagesAreReasonable) {
    std::string xml = "<SCAN>";
    for (int i = 0; i < 20000; ++i) {
        xml += "<PACKAGE>";
        for (int tag = 0; tag < 11; ++tag) xml += "<T>" + std::string(20, 'x') + "</T>";
        xml += "</PACKAGE>\n";
    }
    EXPECT_TRUE(IsReasonableScanXml(xml + "</SCAN>"));
}

TEST(ScanFileCleaningTest, ElementsAndAttributesWithoutEndAreNot) {
    std::string elements;
    std::string attributes;
    for (int i = 0; i < 500'001; ++i) {
        elements += "<a/>";
        attributes += i % 100 == 0 ? "><A" : " a=''";
    }
    EXPECT_FALSE(IsReasonableScanXml(elements));
    EXPECT_TRUE(IsReasonableScanXml(elements.substr(4)));
    EXPECT_FALSE(IsReasonableScanXml(attributes));
}

TEST(ScanFileCleaningTest, TextsThatWidenEveryRowAreNot) {
    EXPECT_TRUE(IsReasonableScanXml("<A>" + std::string(4096, 'x') + "</A>"));
    EXPECT_FALSE(IsReasonableScanXml("<A>" + std::string(4097, 'x') + "</A>"));
}

TEST(ScanFileCleaningTest, ExcessiveFileStaysAsItWas) {
    const test_support::TemporaryFolder folder;
    const std::string xml = "<A>\x1B" + std::string(5000, 'x') + "</A>";
    EXPECT_EQ(CleanScanFile(folder.Write("scan.xml", xml)), ScanFileState::kExcessive);
    EXPECT_EQ(folder.Read("scan.xml"), xml);
}

TEST(ScanFileCleaningTest, LinkOfTheTemporaryNameIsNotFollowed) {
    const test_support::TemporaryFolder folder;
    const std::string other = folder.Write("other", "precious");
    test_support::MakeLink(other, folder.Path("scan.xml.clean"));
    const std::string path = folder.Write("scan.xml", "<A>\x1B</A>");
    EXPECT_EQ(CleanScanFile(path), ScanFileState::kClean);
    EXPECT_EQ(folder.Read("scan.xml"), "<A> </A>");
    EXPECT_EQ(folder.Read("other"), "precious");
}

TEST(ScanFileCleaningTest, FileIsCleanedInPlaceAndNothingElseIsLeft) {
    const test_support::TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", "<A>\x1B</A>");
    EXPECT_EQ(CleanScanFile(path), ScanFileState::kClean);
    EXPECT_EQ(folder.Read("scan.xml"), "<A> </A>");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 1);
}

TEST(ScanFileCleaningTest, LogIsCleanedWhateverItsLinesAre) {
    const test_support::TemporaryFolder folder;
    const std::string line(5000, 'x');
    const std::string path = folder.Write("log", "\x1B]0;owned\x07" + line + "\n");
    EXPECT_TRUE(CleanLogFile(path));
    EXPECT_EQ(folder.Read("log"), " ]0;owned " + line + "\n");
    EXPECT_FALSE(CleanLogFile(folder.Path("missing")));
}

TEST(ScanFileCleaningTest, CleanFileIsNotTouched) {
    const test_support::TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", "<A>x</A>");
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(path, now - std::chrono::hours(1));
    const auto old = std::filesystem::last_write_time(path);  // as finely as it is kept
    ASSERT_LT(old, now);
    EXPECT_EQ(CleanScanFile(path), ScanFileState::kClean);
    EXPECT_EQ(std::filesystem::last_write_time(path), old);
}

TEST(ScanFileCleaningTest, MissingFileIsAFailure) {
    const test_support::TemporaryFolder folder;
    EXPECT_EQ(CleanScanFile(folder.Path("missing")), ScanFileState::kNotWritten);
}

}  // namespace
}  // namespace Vantix::remote
