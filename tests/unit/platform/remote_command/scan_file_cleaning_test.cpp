#include "platform/remote_command/scan_file_cleaning.h"

#include <gtest/gtest.h>

#include <filesystem>

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

TEST(ScanFileCleaningTest, FileIsCleanedInPlaceAndNothingElseIsLeft) {
    const test_support::TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", "<A>\x1B</A>");
    EXPECT_TRUE(CleanScanFile(path));
    EXPECT_EQ(folder.Read("scan.xml"), "<A> </A>");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 1);
}

TEST(ScanFileCleaningTest, CleanFileIsNotTouched) {
    const test_support::TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", "<A>x</A>");
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(path, old);
    EXPECT_TRUE(CleanScanFile(path));
    EXPECT_EQ(std::filesystem::last_write_time(path), old);
}

TEST(ScanFileCleaningTest, MissingFileIsAFailure) {
    const test_support::TemporaryFolder folder;
    EXPECT_FALSE(CleanScanFile(folder.Path("missing")));
}

}  // namespace
}  // namespace Vantix::remote
