#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/remote_command/remote_command.h"
#include "support/file_kinds.h"
#include "support/temporary_folder.h"
#include "tarsel/common_result.h"

namespace {

struct Extracted {
    bool is_read = false;
    int code = -4711;
    std::string message = "untouched";
};

class SummaryReportTest : public testing::Test {
  protected:
    static Extracted ExtractFrom(const std::string& path) {
        Extracted result;
        result.is_read = SummaryReport::ExtractSummaryResult(path, result.code, result.message);
        return result;
    }

    [[nodiscard]] Extracted Extract(const std::string& xml) const {
        return ExtractFrom(folder_.Write("common_result.xml", xml));
    }

    void ExpectRefused(const std::string& xml) const {
        const Extracted result = Extract(xml);
        EXPECT_FALSE(result.is_read);
        EXPECT_EQ(result.code, -4711);
        EXPECT_EQ(result.message, "untouched");
    }

    static std::string WithCode(const std::string& code) {
        return "<RESULT><CODE>" + code + "</CODE><MESSAGE>Text.</MESSAGE></RESULT>";
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(SummaryReportTest, FileOfTheCommandLineIsRead) {
    tarsel::CommonResult written;
    written.code = 65645;
    written.message = "You & <me>.";
    written.sources.emplace_back().detail = "<CODE>7</CODE>";
    const Extracted result = Extract(tarsel::CommonResultXml(written));
    EXPECT_TRUE(result.is_read);
    EXPECT_EQ(result.code, 65645);
    EXPECT_EQ(result.message, "You & <me>.");
}

TEST_F(SummaryReportTest, CodeMayBeHexadecimal) {
    EXPECT_EQ(Extract(WithCode("0x1006D")).code, 0x1006D);
    EXPECT_EQ(Extract(WithCode("0X1006d")).code, 0x1006D);
}

TEST_F(SummaryReportTest, CodeUsesAll32Bits) {
    EXPECT_EQ(Extract(WithCode("0xFFFFFFFF")).code, -1);
    EXPECT_EQ(Extract(WithCode("-1")).code, -1);
    EXPECT_EQ(Extract(WithCode("2147483647")).code, 2147483647);
}

TEST_F(SummaryReportTest, BlanksAroundTheCodeDoNotCount) {
    EXPECT_EQ(Extract(WithCode("\n  12\t")).code, 12);
}

TEST_F(SummaryReportTest, MissingMessageIsEmpty) {
    const Extracted result = Extract("<RESULT><CODE>0</CODE></RESULT>");
    EXPECT_TRUE(result.is_read);
    EXPECT_EQ(result.message, "");
}

TEST_F(SummaryReportTest, MessageIsCleaned) {
    const Extracted result = Extract(
        "<RESULT><CODE>1</CODE><MESSAGE> a\x1B[2J\xFF"
        "b\n</MESSAGE></RESULT>");
    EXPECT_TRUE(result.is_read);
    EXPECT_EQ(result.message,
              "a [2J\xEF\xBF\xBD"
              "b");
}

TEST_F(SummaryReportTest, OverlongMessageIsCut) {
    const Extracted result = Extract("<RESULT><CODE>1</CODE><MESSAGE>" + std::string(100000, 'x') +
                                     "</MESSAGE></RESULT>");
    EXPECT_TRUE(result.is_read);
    EXPECT_LE(result.message.size(), 4003U);
}

class BadCodeTest : public SummaryReportTest, public testing::WithParamInterface<const char*> {};

TEST_P(BadCodeTest, IsRefusedAndNothingIsTouched) {
    ExpectRefused(WithCode(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(SummaryReport, BadCodeTest,
                         testing::Values("", " ", "twelve", "12a", "0x", "0xg", "0x1FFFFFFFF",
                                         "2147483648", "-2147483649", "1.0", "1e3", "+1", "0x-1",
                                         "1 2", "<b>1</b>"));

TEST_F(SummaryReportTest, OtherRootIsRefused) {
    ExpectRefused("<OTHER><CODE>0</CODE></OTHER>");
    ExpectRefused("<A><RESULT><CODE>0</CODE></RESULT></A>");
}

TEST_F(SummaryReportTest, CodeBelowAnotherElementDoesNotCount) {
    ExpectRefused("<RESULT><SOURCES><CODE>0</CODE></SOURCES></RESULT>");
}

TEST_F(SummaryReportTest, MalformedXmlIsRefused) {
    ExpectRefused("");
    ExpectRefused("<RESULT><CODE>0</CODE>");
    ExpectRefused("no xml");
    ExpectRefused(std::string("<RESULT>\0</RESULT>", 18));
}

TEST_F(SummaryReportTest, EntityDeclarationsExpandToNothing) {
    ExpectRefused("<!DOCTYPE RESULT [<!ENTITY zero \"0\">]><RESULT><CODE>&zero;</CODE></RESULT>");
}

TEST_F(SummaryReportTest, DeepNestingDoesNoHarm) {
    std::string deep;
    for (int i = 0; i < 300000; ++i) deep += "<a>";
    ExpectRefused(deep);
    std::string closed = deep;
    for (int i = 0; i < 300000; ++i) closed += "</a>";
    ExpectRefused(closed);
    EXPECT_EQ(Extract("<RESULT><CODE>3</CODE>" + closed + "</RESULT>").code, 3);
}

TEST_F(SummaryReportTest, HugeFileIsRefused) {
    ExpectRefused(WithCode("0") + std::string(5 * 1024 * 1024, ' '));
}

TEST_F(SummaryReportTest, MissingFileIsRefused) {
    EXPECT_FALSE(ExtractFrom(folder_.Path("missing.xml")).is_read);
}

TEST_F(SummaryReportTest, FolderIsRefused) {
    EXPECT_FALSE(ExtractFrom(folder_.Path("")).is_read);
}

TEST_F(SummaryReportTest, SymbolicLinkIsRefused) {
    folder_.Write("real.xml", WithCode("0"));
    test_support::MakeLink(folder_.Path("real.xml"), folder_.Path("link.xml"));
    EXPECT_FALSE(ExtractFrom(folder_.Path("link.xml")).is_read);
}

}  // namespace
