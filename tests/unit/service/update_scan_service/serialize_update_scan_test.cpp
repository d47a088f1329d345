#include "service/update_scan_service/serialize_update_scan.h"

#include <gtest/gtest.h>

#include <boost/property_tree/ptree.hpp>
#include <string>
#include <utility>
#include <vector>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "support/cout_capture.h"
#include "support/golden_file.h"
#include "support/grouping_locale.h"
#include "support/item_builder.h"
#include "support/temporary_folder.h"

namespace {

using boost::property_tree::ptree;
using service::SerializeScanReport;
using service::UpdateScanReport;
using test_support::AnItem;
using test_support::TemporaryFolder;

std::vector<std::string> ChildNames(const ptree& node) {
    std::vector<std::string> names;
    for (const auto& [name, child] : node) names.push_back(name);
    return names;
}

std::vector<std::string> ChildTexts(const ptree& node) {
    std::vector<std::string> texts;
    for (const auto& [name, child] : node) texts.push_back(child.data());
    return texts;
}

ptree TreeOf(const UpdateScanReport& report) {
    ptree tree;
    SerializeScanReport::AddToPtree(report, tree);
    return tree;
}

std::vector<std::string> PackageNames(const ptree& tree) {
    std::vector<std::string> names;
    for (const auto& [name, package] : tree.get_child("SCAN.CONTENT.PACKAGES")) {
        names.push_back(package.get<std::string>("NAME"));
    }
    return names;
}

UpdateScanReport ReportOfInventedServer() {
    UpdateScanReport report;
    report.SetMT("9XQ1");
    report.SetScope("EXAMPLE0001");
    report.SetBmcType("Tavro");
    report.SetBmcReleaseName("whimbrel_gp_24-1");
    report.SetOS("None");
    report.SetOSMinorVersion("");
    report.SetArch("None");
    report.SetIsPartition(0);
    report.SetScanCount(3);
    report.SetSwitchDownstreamDevices("1");
    report.PushScanItem(AnItem()
                            .Name("BMC (Primary)")
                            .SoftwareId("BMC")
                            .Version("2.10 (build EX21A)")
                            .Description("The active bank")
                            .InstanceId("BMC-Primary"));
    report.PushScanItem(AnItem()
                            .Name("Example \"Fast\" Adapter <A&B> caf\xC3\xA9")
                            .SoftwareId("example_0a1B2c3D")
                            .Version(" 14.2 ")
                            .InstanceId("Adapter.1")
                            .Slot("3", "7")
                            .Pldm("Not Supported"));
    report.PushScanItem(
        AnItem().Name("Example driver").Classification("22").Version("").Pldm("").HasDevice(-2));
    return report;
}

struct TagValue {
    const char* name;
    const std::string* tag;
    const char* value;
};

class ScanXmlTagTest : public testing::TestWithParam<TagValue> {};

TEST_P(ScanXmlTagTest, HasTheValueOfTheFileFormat) {
    EXPECT_EQ(*GetParam().tag, GetParam().value);
}

#define TAG_ROW(tag, value)                    \
    TagValue {                                 \
#tag, &SerializeScanReport::tag, value \
    }

INSTANTIATE_TEST_SUITE_P(
    AllTags, ScanXmlTagTest,
    testing::Values(TAG_ROW(TAG_SCAN, "SCAN"), TAG_ROW(TAG_XMLVERSION, "SCAN.XMLVERSION"),
                    TAG_ROW(TAG_MT, "SCAN.CONTENT.MT"), TAG_ROW(TAG_SN, "SCAN.CONTENT.SN"),
                    TAG_ROW(TAG_BMC_TYPE, "SCAN.CONTENT.BMCTYPE"),
                    TAG_ROW(TAG_BMCRELEASENAME, "SCAN.CONTENT.BMCRELEASENAME"),
                    TAG_ROW(TAG_OS, "SCAN.CONTENT.OS"),
                    TAG_ROW(TAG_OS_MINVERSION, "SCAN.CONTENT.OSMINVERSION"),
                    TAG_ROW(TAG_ARCH, "SCAN.CONTENT.ARCH"),
                    TAG_ROW(TAG_ISPARTITION, "SCAN.CONTENT.ISPARTITION"),
                    TAG_ROW(TAG_TOTAL, "SCAN.CONTENT.TOTAL"),
                    TAG_ROW(TAG_SWITCHDOWNSTREAM, "SCAN.CONTENT.HASSWITCHDOWNSTREAM"),
                    TAG_ROW(TAG_PACKAGES, "SCAN.CONTENT.PACKAGES"),
                    TAG_ROW(TAG_PACKAGE, "SCAN.CONTENT.PACKAGES.PACKAGE"),
                    TAG_ROW(TAG_NAME, "NAME"), TAG_ROW(TAG_SOFTWAREID, "SOFTWAREID"),
                    TAG_ROW(TAG_VERSION, "VERSION"), TAG_ROW(TAG_CLASSIFICATION, "CLASSIFICATION"),
                    TAG_ROW(TAG_DESCRIPTION, "DESCRIPTION"), TAG_ROW(TAG_INSTANCEID, "INSTANCEID"),
                    TAG_ROW(TAG_SLOTNUM, "SLOTNUM"), TAG_ROW(TAG_SLOTTYPE, "SLOTTYPE"),
                    TAG_ROW(TAG_PLDM, "AGENTLESSSUPPORT"), TAG_ROW(TAG_PLDM_OLD, "PLDMUPDATE"),
                    TAG_ROW(TAG_HASDEVICE, "HASDEVICE"), TAG_ROW(TAG_PUREVERSION, "XMLVERSION"),
                    TAG_ROW(TAG_TARSEL, "tarsel")),
    [](const auto& row) { return std::string(row.param.name); });

TEST(AddToPtreeTest, DefaultReportHasItsHeaderElementsInOrder) {
    const ptree tree = TreeOf(UpdateScanReport());
    EXPECT_EQ(ChildNames(tree), (std::vector<std::string>{"SCAN"}));
    EXPECT_EQ(ChildNames(tree.get_child("SCAN")),
              (std::vector<std::string>{"XMLVERSION", "CONTENT"}));
    EXPECT_EQ(ChildNames(tree.get_child("SCAN.CONTENT")),
              (std::vector<std::string>{"MT", "SN", "BMCTYPE", "BMCRELEASENAME", "OS",
                                        "OSMINVERSION", "ARCH", "ISPARTITION", "TOTAL",
                                        "HASSWITCHDOWNSTREAM", "PACKAGES"}));
}

TEST(AddToPtreeTest, DefaultReportHasEmptyTextsAndZeros) {
    const ptree tree = TreeOf(UpdateScanReport());
    EXPECT_EQ(tree.get<std::string>("SCAN.XMLVERSION"), "1.0");
    EXPECT_EQ(ChildTexts(tree.get_child("SCAN.CONTENT")),
              (std::vector<std::string>{"", "", "", "", "", "", "", "0", "0", "", ""}));
    EXPECT_TRUE(tree.get_child("SCAN.CONTENT.PACKAGES").empty());
}

TEST(AddToPtreeTest, EveryHeaderValueStandsUnderItsKey) {
    const ptree tree = TreeOf(ReportOfInventedServer());
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.MT"), "9XQ1");
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.SN"), "EXAMPLE0001");
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.BMCTYPE"), "Tavro");
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.BMCRELEASENAME"), "whimbrel_gp_24-1");
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.OS"), "None");
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.HASSWITCHDOWNSTREAM"), "1");
}

TEST(AddToPtreeTest, PackageHasItsTenElementsInOrder) {
    UpdateScanReport report;
    report.PushScanItem(service::UpdateScanItem{"id", "v", "c", "d", "n", "p", "i", "s", "t", 6});
    const ptree tree = TreeOf(report);
    const ptree& package = tree.get_child("SCAN.CONTENT.PACKAGES.PACKAGE");
    EXPECT_EQ(ChildNames(package),
              (std::vector<std::string>{"NAME", "SOFTWAREID", "VERSION", "CLASSIFICATION",
                                        "DESCRIPTION", "INSTANCEID", "SLOTNUM", "SLOTTYPE",
                                        "AGENTLESSSUPPORT", "HASDEVICE"}));
    EXPECT_EQ(ChildTexts(package),
              (std::vector<std::string>{"n", "id", "v", "c", "d", "i", "s", "t", "p", "6"}));
}

TEST(AddToPtreeTest, EmptyItemStillHasAllTenElements) {
    UpdateScanReport report;
    report.PushScanItem(service::UpdateScanItem());
    EXPECT_EQ(ChildTexts(TreeOf(report).get_child("SCAN.CONTENT.PACKAGES.PACKAGE")),
              (std::vector<std::string>{"", "", "", "", "", "", "", "", "", "0"}));
}

TEST(AddToPtreeTest, ScanCountAndItemsAreSavedAsTheyAre) {
    UpdateScanReport report;
    report.SetScanCount(7);
    report.PushScanItem(AnItem().Name("only"));
    const ptree tree = TreeOf(report);
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.TOTAL"), "7");
    EXPECT_EQ(PackageNames(tree), (std::vector<std::string>{"only"}));
}

TEST(AddToPtreeTest, EqualSoftwareIdsGiveTwoPackagesInListOrder) {
    UpdateScanReport report;
    report.PushScanItem(AnItem().SoftwareId("SAME").Name("second in the alphabet"));
    report.PushScanItem(AnItem().SoftwareId("SAME").Name("first in the alphabet"));
    EXPECT_EQ(PackageNames(TreeOf(report)),
              (std::vector<std::string>{"second in the alphabet", "first in the alphabet"}));
}

TEST(AddToPtreeTest, PackagesAreNamedPackage) {
    UpdateScanReport report;
    report.PushScanItem(AnItem());
    report.PushScanItem(AnItem());
    EXPECT_EQ(ChildNames(TreeOf(report).get_child("SCAN.CONTENT.PACKAGES")),
              (std::vector<std::string>{"PACKAGE", "PACKAGE"}));
}

TEST(AddToPtreeTest, SecondCallReplacesTheHeaderAndAppendsItsPackages) {
    UpdateScanReport first;
    first.SetMT("AAA1");
    first.PushScanItem(AnItem().Name("of the first"));
    UpdateScanReport second;
    second.SetMT("BBB2");
    second.PushScanItem(AnItem().Name("of the second"));
    ptree tree;
    SerializeScanReport::AddToPtree(first, tree);
    SerializeScanReport::AddToPtree(second, tree);
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.MT"), "BBB2");
    EXPECT_EQ(tree.get_child("SCAN.CONTENT").count("MT"), 1U);
    EXPECT_EQ(tree.get_child("SCAN.CONTENT").count("PACKAGES"), 1U);
    EXPECT_EQ(PackageNames(tree), (std::vector<std::string>{"of the first", "of the second"}));
}

TEST(AddToPtreeTest, ReportWithoutItemsKeepsPackagesThatAreThere) {
    UpdateScanReport first;
    first.PushScanItem(AnItem().Name("kept"));
    ptree tree;
    SerializeScanReport::AddToPtree(first, tree);
    SerializeScanReport::AddToPtree(UpdateScanReport(), tree);
    EXPECT_EQ(PackageNames(tree), (std::vector<std::string>{"kept"}));
}

TEST(AddToPtreeTest, ForeignNodesOfTheTreeStay) {
    ptree tree;
    tree.put("SCAN.CONTENT.FOREIGN", "kept");
    SerializeScanReport::AddToPtree(UpdateScanReport(), tree);
    EXPECT_EQ(tree.get<std::string>("SCAN.CONTENT.FOREIGN"), "kept");
}

TEST(AddToPtreeTest, NumbersFollowNoLocale) {
    UpdateScanReport report;
    report.SetScanCount(1234567);
    report.SetIsPartition(-7654321);
    report.PushScanItem(AnItem().HasDevice(1000000));
    const test_support::GlobalGroupingLocale grouping;
    const ptree tree = TreeOf(report);
    EXPECT_EQ(tree.get_child("SCAN.CONTENT.TOTAL").data(), "1234567");
    EXPECT_EQ(tree.get_child("SCAN.CONTENT.ISPARTITION").data(), "-7654321");
    EXPECT_EQ(tree.get_child("SCAN.CONTENT.PACKAGES.PACKAGE.HASDEVICE").data(), "1000000");
}

TEST(AddToPtreeTest, CheckDeviceChangesNothing) {
    UpdateScanReport report;
    const ptree without = TreeOf(report);
    report.SetCheckDevice(true);
    EXPECT_EQ(TreeOf(report), without);
}

TEST(SaveToXmlTest, FileIsExactlyAsTheFormatSays) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("scan.xml");
    ASSERT_EQ(SerializeScanReport::SaveToXml(ReportOfInventedServer(), path), SUCCEED);
    EXPECT_TRUE(test_support::MatchesGoldenFile(folder.Read("scan.xml"),
                                                TARSEL_GOLDEN_FOLDER "/invented_server.xml"));
}

TEST(SaveToXmlTest, DefaultReportIsExactlyAsTheFormatSays) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("scan.xml");
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), path), SUCCEED);
    EXPECT_TRUE(test_support::MatchesGoldenFile(folder.Read("scan.xml"),
                                                TARSEL_GOLDEN_FOLDER "/default_report.xml"));
}

TEST(SaveToXmlTest, GroupingLocaleDoesNotChangeTheFile) {
    const TemporaryFolder folder;
    UpdateScanReport report = ReportOfInventedServer();
    report.SetScanCount(1234567);
    ASSERT_EQ(SerializeScanReport::SaveToXml(report, folder.Path("plain.xml")), SUCCEED);
    {
        const test_support::GlobalGroupingLocale grouping;
        ASSERT_EQ(SerializeScanReport::SaveToXml(report, folder.Path("grouped.xml")), SUCCEED);
    }
    EXPECT_EQ(folder.Read("grouped.xml"), folder.Read("plain.xml"));
    EXPECT_NE(folder.Read("plain.xml").find("<TOTAL>1234567</TOTAL>"), std::string::npos);
}

TEST(SaveToXmlTest, LongerExistingFileIsReplacedWhole) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", std::string(100000, 'x'));
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), path), SUCCEED);
    EXPECT_EQ(folder.Read("scan.xml").find('x', 5), std::string::npos);
    EXPECT_TRUE(folder.Read("scan.xml").ends_with("</SCAN>\n"));
}

TEST(SaveToXmlTest, MissingFolderYieldsWriteFileFailed) {
    const TemporaryFolder folder;
    EXPECT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), folder.Path("none/scan.xml")),
              WRITE_FILE_FAILED);
}

TEST(SaveToXmlTest, FolderAsFileNameYieldsWriteFileFailed) {
    const TemporaryFolder folder;
    EXPECT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), folder.Path("")),
              WRITE_FILE_FAILED);
}

TEST(SaveToXmlTest, EmptyFileNameYieldsWriteFileFailed) {
    EXPECT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), ""), WRITE_FILE_FAILED);
}

TEST(SaveToXmlTest, NothingIsLoggedOrPrinted) {
    const TemporaryFolder folder;
    const doubles::LogCapture log;
    const test_support::CoutCapture console;
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), folder.Path("scan.xml")), SUCCEED);
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), folder.Path("none/scan.xml")),
              WRITE_FILE_FAILED);
    EXPECT_TRUE(log.Records().empty());
    EXPECT_EQ(console.Text(), "");
}

}  // namespace
