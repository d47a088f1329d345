// Loading what cannot be loaded: which code, which text, and what stays in the report.
#include <gtest/gtest.h>

#include <string>

#include "support/grouping_locale.h"
#include "unit/service/update_scan_service/scan_xml_reader_fixture.h"

namespace scan_xml_reader {
namespace {

TEST_F(ScanXmlReaderTest, GroupedNumberIsNoNumberWhateverTheLocale) {
    const test_support::GlobalGroupingLocale grouping;
    EXPECT_EQ(Load(Replaced(ScanXmlWithPackages(""), "<TOTAL>3</TOTAL>", "<TOTAL>1,234</TOTAL>")),
              INVALID_FILE);
}

TEST_F(ScanXmlReaderTest, NumberWithLettersYieldsInvalidFileAfterTheTexts) {
    EXPECT_EQ(Load(Replaced(ScanXmlWithPackages(Package("BMC")), "<TOTAL>3</TOTAL>",
                            "<TOTAL>12a</TOTAL>")),
              INVALID_FILE);
    EXPECT_EQ(report_.GetMT(), "9XQ1");
    EXPECT_EQ(report_.GetScope(), "EXAMPLE0001");
    EXPECT_EQ(report_.GetScanCount(), 0);
    EXPECT_TRUE(report_.GetScanResults().empty());
    EXPECT_TRUE(console_.starts_with("conversion of data to type \"")) << console_;
    EXPECT_TRUE(console_.ends_with("\" failed\n")) << console_;
}

TEST_F(ScanXmlReaderTest, EmptyOrTooLargeNumbersYieldInvalidFile) {
    for (const char* text : {"", " ", "99999999999", "1.5", "0x10", "1 2", "--1"}) {
        EXPECT_EQ(Load(Replaced(ScanXmlWithPackages(""), "<ISPARTITION>0</ISPARTITION>",
                                Element("ISPARTITION", text))),
                  INVALID_FILE)
            << text;
    }
}

TEST_F(ScanXmlReaderTest, FailureInAPackageKeepsThePackagesBefore) {
    EXPECT_EQ(Load(ScanXmlWithPackages(
                  Package("FIRST") + Package("BAD", "<HASDEVICE>x</HASDEVICE>") + Package("LAST"))),
              INVALID_FILE);
    ASSERT_EQ(report_.GetScanResults().size(), 1U);
    EXPECT_EQ(report_.GetScanResults().front().softwareId, "FIRST");
}

TEST_F(ScanXmlReaderTest, EveryRequiredPackageTextIsNamedWhenMissing) {
    for (const std::string tag :
         {"SOFTWAREID", "VERSION", "CLASSIFICATION", "DESCRIPTION", "NAME"}) {
        EXPECT_EQ(Load(ScanXmlWithPackages(Renamed(Package("BMC"), tag))), INVALID_FILE) << tag;
        EXPECT_EQ(console_, "No such node (" + tag + ")\n");
    }
}

TEST_F(ScanXmlReaderTest, EveryRequiredHeaderValueIsNamedWhenMissing) {
    for (const std::string tag :
         {"MT", "OS", "OSMINVERSION", "ARCH", "SN", "ISPARTITION", "TOTAL"}) {
        EXPECT_EQ(Load(ScanXml(Renamed(kHeader, tag) + "<PACKAGES/>")), INVALID_FILE) << tag;
        EXPECT_EQ(console_, "No such node (SCAN.CONTENT." + tag + ")\n");
    }
}

TEST_F(ScanXmlReaderTest, MissingPackageListYieldsInvalidFile) {
    EXPECT_EQ(Load(ScanXml(kHeader)), INVALID_FILE);
    EXPECT_EQ(console_, "No such node (SCAN.CONTENT.PACKAGES)\n");
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(ScanXmlReaderTest, MissingKeysAreToldOnTheConsoleAndNotLogged) {
    EXPECT_EQ(Load(ScanXml(kHeader)), INVALID_FILE);
    EXPECT_TRUE(log_.Texts(1).empty());
    EXPECT_TRUE(log_.Texts(2).empty());
    EXPECT_TRUE(log_.Texts(3).empty());
}

TEST_F(ScanXmlReaderTest, FirstFailureKeepsTheOptionalValuesReadBefore) {
    EXPECT_EQ(Load("<SCAN><CONTENT><BMCTYPE>Ossa2</BMCTYPE>"
                   "<BMCRELEASENAME>early</BMCRELEASENAME></CONTENT></SCAN>"),
              INVALID_FILE);
    EXPECT_EQ(report_.GetBmcType(), "Ossa2");
    EXPECT_EQ(report_.GetBmcReleaseName(), "early");
    EXPECT_EQ(report_.GetXmlVersion(), "1.0");
}

TEST_F(ScanXmlReaderTest, CommentInsideThePackageListYieldsInvalidFile) {
    EXPECT_EQ(Load(ScanXmlWithPackages(Package("FIRST") + "<!-- note -->" + Package("SECOND"))),
              INVALID_FILE);
    ASSERT_EQ(report_.GetScanResults().size(), 1U);
    EXPECT_EQ(report_.GetScanResults().front().softwareId, "FIRST");
    EXPECT_EQ(console_, "No such node (SOFTWAREID)\n");
}

TEST_F(ScanXmlReaderTest, AttributeOnThePackageListYieldsInvalidFile) {
    EXPECT_EQ(Load(ScanXml(kHeader + "<PACKAGES x=\"1\">" + Package("BMC") + "</PACKAGES>")),
              INVALID_FILE);
}

TEST_F(ScanXmlReaderTest, MissingFileYieldsFileNotExist) {
    const std::string path = folder_.Path("none.xml");
    EXPECT_EQ(LoadPath(path), FILE_NOT_EXIST);
    EXPECT_EQ(console_, path + " does not exist.\n");
    ASSERT_EQ(log_.Records().size(), 1U);
    EXPECT_EQ(log_.Records().front().level, 1);
    EXPECT_EQ(log_.Records().front().text, path + " does not exist.");
    EXPECT_EQ(log_.Records().front().source, kLogSource);
}

TEST_F(ScanXmlReaderTest, DirectoryNameYieldsFileNotExist) {
    const std::string path = folder_.Path("");
    EXPECT_EQ(LoadPath(path), FILE_NOT_EXIST);
    EXPECT_EQ(console_, path + " does not exist.\n");
    EXPECT_EQ(log_.Texts(1), (Lines{path + " does not exist."}));
}

TEST_F(ScanXmlReaderTest, EmptyNameYieldsFileNotExist) {
    EXPECT_EQ(LoadPath(""), FILE_NOT_EXIST);
    EXPECT_EQ(console_, " does not exist.\n");
}

TEST_F(ScanXmlReaderTest, MalformedFileIsLoggedWithItsNameAndLine) {
    report_.SetBmcType("kept");
    EXPECT_EQ(Load("<SCAN>\n<CONTENT>\n<MT"), INVALID_FILE);
    ASSERT_EQ(log_.Records().size(), 1U);
    EXPECT_EQ(log_.Records().front().level, 1);
    EXPECT_TRUE(log_.Records().front().text.starts_with(folder_.Path("scan.xml") + "(3): "))
        << log_.Records().front().text;
    EXPECT_EQ(console_, "");
    EXPECT_EQ(report_.GetBmcType(), "kept");
}

TEST_F(ScanXmlReaderTest, TruncatedFilesYieldInvalidFile) {
    const std::string xml = ScanXmlWithPackages(Package("BMC"));
    for (std::size_t length = 1; length < xml.size(); length += 7) {
        EXPECT_EQ(Load(xml.substr(0, length)), INVALID_FILE) << length;
    }
}

TEST_F(ScanXmlReaderTest, MalformedFileNamedLikeTheOpenErrorYieldsReadFileFailed) {
    EXPECT_EQ(LoadPath(folder_.Write("cannot open file.xml", "<SCAN")), READ_FILE_FAILED);
}

TEST_F(ScanXmlReaderTest, EmptyFileTakesTheWayOfMissingKeys) {
    report_.SetBmcType("Ossa");
    EXPECT_EQ(Load(""), INVALID_FILE);
    EXPECT_EQ(console_, "No such node (SCAN.XMLVERSION)\n");
    EXPECT_EQ(report_.GetBmcType(), "");
    EXPECT_EQ(log_.Texts(4), (Lines{"No tarsel tag has found, it is tarsel scan xml."}));
    EXPECT_EQ(log_.Texts(1).size(), 1U);
}

TEST_F(ScanXmlReaderTest, FileOfOtherContentYieldsInvalidFile) {
    for (const char* text :
         {"not xml at all", "{\"SCAN\": 1}", "\xff\xfe<\0S\0C\0", "<<>>", "<SCAN></SCAN></SCAN>"}) {
        EXPECT_EQ(Load(text), INVALID_FILE) << text;
    }
}

TEST_F(ScanXmlReaderTest, NulByteInsideAnElementYieldsInvalidFile) {
    std::string xml = ScanXmlWithPackages("");
    xml[xml.find("9XQ1")] = '\0';
    EXPECT_EQ(Load(xml), INVALID_FILE);
    EXPECT_NE(log_.Texts(1).front().find("unexpected end of data"), std::string::npos);
}

TEST_F(ScanXmlReaderTest, MillionOpenTagsYieldInvalidFile) {
    std::string xml;
    for (int i = 0; i < 1000000; ++i) xml += "<a>";
    EXPECT_EQ(Load(xml), INVALID_FILE);
    EXPECT_EQ(log_.Texts(1),
              (Lines{folder_.Path("scan.xml") + "(1): elements are nested too deeply"}));
    EXPECT_EQ(console_, "");
}

TEST_F(ScanXmlReaderTest, DeepNestingIsLoggedWithItsLine) {
    std::string xml;
    for (int i = 0; i < 300; ++i) xml += "<a>\n";
    EXPECT_EQ(Load(xml), INVALID_FILE);
    EXPECT_EQ(log_.Texts(1),
              (Lines{folder_.Path("scan.xml") + "(257): elements are nested too deeply"}));
}

TEST_F(ScanXmlReaderTest, DeepButBearableNestingLoads) {
    std::string open;
    std::string close;
    for (int i = 0; i < 250; ++i) {
        open += "<a>";
        close += "</a>";
    }
    EXPECT_EQ(Load(ScanXml(open + close + kHeader + "<PACKAGES/>")), SUCCEED);
}

TEST_F(ScanXmlReaderTest, TagsInsideCommentsAndCdataDoNotNest) {
    std::string tags;
    for (int i = 0; i < 1000; ++i) tags += "<a>";
    EXPECT_EQ(
        Load("<!--" + tags + "-->" +
             ScanXml(kHeader + "<ODD x='" + tags + "'><![CDATA[" + tags + "]]></ODD><PACKAGES/>")),
        SUCCEED);
}

}  // namespace
}  // namespace scan_xml_reader
