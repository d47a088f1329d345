// Loading what can be loaded: values, defaults, older keys, the wrapped form.
#include <gtest/gtest.h>

#include <string>

#include "support/grouping_locale.h"
#include "support/item_builder.h"
#include "unit/service/update_scan_service/scan_xml_reader_fixture.h"

namespace scan_xml_reader {
namespace {

using service::UpdateScanItem;
using test_support::AnItem;

void ExpectEqual(const UpdateScanItem& a, const UpdateScanItem& b) {
    EXPECT_EQ(a.softwareId, b.softwareId);
    EXPECT_EQ(a.version, b.version);
    EXPECT_EQ(a.classification, b.classification);
    EXPECT_EQ(a.description, b.description);
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.pldm, b.pldm);
    EXPECT_EQ(a.instanceId, b.instanceId);
    EXPECT_EQ(a.slotNum, b.slotNum);
    EXPECT_EQ(a.slotType, b.slotType);
    EXPECT_EQ(a.hasDevice, b.hasDevice);
}

TEST_F(ScanXmlReaderTest, SavedReportLoadsBackEqual) {
    UpdateScanReport saved;
    saved.SetXmlVersion("1.0");
    saved.SetMT("9XQ1");
    saved.SetScope("EXAMPLE0001");
    saved.SetBmcType("Tavro");
    saved.SetBmcReleaseName("whimbrel_gp_24-1");
    saved.SetOS("rhel9");
    saved.SetOSMinorVersion("4");
    saved.SetArch("x86_64");
    saved.SetIsPartition(-1);
    saved.SetScanCount(1234567);
    saved.SetSwitchDownstreamDevices("1");
    saved.PushScanItem(AnItem().Slot("3", "7").InstanceId("Adapter.1").Pldm("0"));
    saved.PushScanItem(AnItem().Description("two\nlines").Pldm("other text").HasDevice(-4));
    ASSERT_EQ(SerializeScanReport::SaveToXml(saved, folder_.Path("scan.xml")), SUCCEED);

    ASSERT_EQ(LoadPath(folder_.Path("scan.xml")), SUCCEED);
    EXPECT_EQ(report_.GetXmlVersion(), "1.0");
    EXPECT_EQ(report_.GetMT(), "9XQ1");
    EXPECT_EQ(report_.GetScope(), "EXAMPLE0001");
    EXPECT_EQ(report_.GetBmcType(), "Tavro");
    EXPECT_EQ(report_.GetBmcReleaseName(), "whimbrel_gp_24-1");
    EXPECT_EQ(report_.GetOS(), "rhel9");
    EXPECT_EQ(report_.GetOSMinorVersion(), "4");
    EXPECT_EQ(report_.GetArch(), "x86_64");
    EXPECT_EQ(report_.GetIsPartition(), -1);
    EXPECT_EQ(report_.GetScanCount(), 1234567);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "1");
    ASSERT_EQ(report_.GetScanResults().size(), 2U);
    ExpectEqual(report_.GetScanResults()[0], saved.GetScanResults()[0]);
    ExpectEqual(report_.GetScanResults()[1], saved.GetScanResults()[1]);
}

TEST_F(ScanXmlReaderTest, EmptyAgentlessFlagIsFilledByTheRoundTrip) {
    UpdateScanReport saved;
    saved.PushScanItem(AnItem().SoftwareId("BMC").Pldm(""));
    saved.PushScanItem(AnItem().SoftwareId("VENDORCARD").Pldm(""));
    ASSERT_EQ(SerializeScanReport::SaveToXml(saved, folder_.Path("scan.xml")), SUCCEED);
    ASSERT_EQ(LoadPath(folder_.Path("scan.xml")), SUCCEED);
    EXPECT_EQ(report_.GetScanResults()[0].pldm, "1");
    EXPECT_EQ(report_.GetScanResults()[1].pldm, "0");
}

TEST_F(ScanXmlReaderTest, MarkupCharactersSurviveTheRoundTrip) {
    UpdateScanReport saved;
    saved.SetOS("a & b < c > d \"e\" 'f'");
    saved.PushScanItem(AnItem().Name("<R&D>").Version("1&amp;2"));
    ASSERT_EQ(SerializeScanReport::SaveToXml(saved, folder_.Path("scan.xml")), SUCCEED);
    ASSERT_EQ(LoadPath(folder_.Path("scan.xml")), SUCCEED);
    EXPECT_EQ(report_.GetOS(), "a & b < c > d \"e\" 'f'");
    EXPECT_EQ(report_.GetScanResults().front().name, "<R&D>");
    EXPECT_EQ(report_.GetScanResults().front().version, "1&amp;2");
}

TEST_F(ScanXmlReaderTest, BlankTextSurvivesTheRoundTrip) {
    UpdateScanReport saved;
    saved.SetOS("   ");
    saved.PushScanItem(AnItem().Description(" x "));
    ASSERT_EQ(SerializeScanReport::SaveToXml(saved, folder_.Path("scan.xml")), SUCCEED);
    ASSERT_EQ(LoadPath(folder_.Path("scan.xml")), SUCCEED);
    EXPECT_EQ(report_.GetOS(), "   ");
    EXPECT_EQ(report_.GetScanResults().front().description, " x ");
}

TEST_F(ScanXmlReaderTest, CheckDeviceIsNeverRead) {
    report_.SetCheckDevice(true);
    ASSERT_EQ(Load(ScanXmlWithPackages("")), SUCCEED);
    EXPECT_TRUE(report_.IsCheckDevice());
}

TEST_F(ScanXmlReaderTest, ItemsAreAppendedAfterExistingOnes) {
    report_.PushScanItem(AnItem().Name("already there"));
    ASSERT_EQ(Load(ScanXmlWithPackages(Package("LOADED"))), SUCCEED);
    ASSERT_EQ(report_.GetScanResults().size(), 2U);
    EXPECT_EQ(report_.GetScanResults()[0].name, "already there");
    EXPECT_EQ(report_.GetScanResults()[1].softwareId, "LOADED");
}

TEST_F(ScanXmlReaderTest, EmptyPackageListLoadsWithoutItems) {
    EXPECT_EQ(Load(ScanXml(kHeader + "<PACKAGES/>")), SUCCEED);
    EXPECT_TRUE(report_.GetScanResults().empty());
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(ScanXmlReaderTest, PackageListOfWhiteSpaceLoadsWithoutItems) {
    EXPECT_EQ(Load(ScanXmlWithPackages("\r\n\t ")), SUCCEED);
    EXPECT_TRUE(report_.GetScanResults().empty());
}

TEST_F(ScanXmlReaderTest, ContentInsideTheWrapperLoadsIdentically) {
    const std::string xml = ScanXmlWithPackages(Package("BMC"));
    ASSERT_EQ(Load("<tarsel><OTHER/>" + xml + "</tarsel>"), SUCCEED);
    EXPECT_EQ(report_.GetMT(), "9XQ1");
    EXPECT_EQ(report_.GetBmcType(), "Tavro");
    ASSERT_EQ(report_.GetScanResults().size(), 1U);
    EXPECT_EQ(report_.GetScanResults().front().softwareId, "BMC");
}

TEST_F(ScanXmlReaderTest, WrapperIsLoggedAsInventory) {
    ASSERT_EQ(Load("<tarsel>" + ScanXmlWithPackages("") + "</tarsel>"), SUCCEED);
    EXPECT_EQ(log_.Texts(4), (Lines{"Tarsel tag has found, it is inventory xml."}));
}

TEST_F(ScanXmlReaderTest, MissingWrapperIsLoggedAsScanFile) {
    ASSERT_EQ(Load(ScanXmlWithPackages("")), SUCCEED);
    ASSERT_EQ(log_.Records().size(), 1U);
    EXPECT_EQ(log_.Records().front().text, "No tarsel tag has found, it is tarsel scan xml.");
    EXPECT_EQ(log_.Records().front().level, 4);
    EXPECT_EQ(log_.Records().front().source, kLogSource);
}

TEST_F(ScanXmlReaderTest, WrapperInCapitalsIsNoWrapper) {
    EXPECT_EQ(Load("<TARSEL>" + ScanXmlWithPackages("") + "</TARSEL>"), INVALID_FILE);
    EXPECT_EQ(console_, "No such node (SCAN.XMLVERSION)\n");
}

TEST_F(ScanXmlReaderTest, OlderKeyWinsOverTheCurrentOne) {
    EXPECT_EQ(LoadedPldm("VENDORCARD",
                         "<PLDMUPDATE>Supported</PLDMUPDATE>"
                         "<AGENTLESSSUPPORT>0</AGENTLESSSUPPORT>"),
              "1");
}

TEST_F(ScanXmlReaderTest, EmptyOlderKeyStillHidesTheCurrentOne) {
    EXPECT_EQ(LoadedPldm("VENDORCARD", "<PLDMUPDATE/><AGENTLESSSUPPORT>1</AGENTLESSSUPPORT>"), "0");
}

TEST_F(ScanXmlReaderTest, SupportWordsBecomeDigits) {
    EXPECT_EQ(LoadedPldm("VENDORCARD", Element("AGENTLESSSUPPORT", "Supported")), "1");
    EXPECT_EQ(LoadedPldm("UEFI", Element("AGENTLESSSUPPORT", "Not Supported")), "0");
}

TEST_F(ScanXmlReaderTest, OtherSupportTextsStay) {
    EXPECT_EQ(LoadedPldm("UEFI", Element("AGENTLESSSUPPORT", "supported")), "supported");
    EXPECT_EQ(LoadedPldm("UEFI", Element("AGENTLESSSUPPORT", " Supported")), " Supported");
    EXPECT_EQ(LoadedPldm("UEFI", Element("AGENTLESSSUPPORT", "0")), "0");
    EXPECT_EQ(LoadedPldm("UEFI", Element("PLDMUPDATE", "2")), "2");
}

TEST_F(ScanXmlReaderTest, MissingSupportIsInferredFromAgentlessIds) {
    EXPECT_EQ(LoadedPldm("uefi", ""), "1");
    EXPECT_EQ(LoadedPldm("anything_CPLD", ""), "1");
    EXPECT_EQ(LoadedPldm("fpga-ihfg-7", ""), "1");
    EXPECT_EQ(LoadedPldm("UEFI", "<AGENTLESSSUPPORT/>"), "1");
}

TEST_F(ScanXmlReaderTest, MissingSupportOfAnAdapterIsZero) {
    EXPECT_EQ(LoadedPldm("exampledrv_0a1B2c3D", ""), "0");
}

TEST_F(ScanXmlReaderTest, OptionalPackageElementsDefaultToEmpty) {
    ASSERT_EQ(Load(ScanXmlWithPackages(Package("BMC"))), SUCCEED);
    const UpdateScanItem& item = report_.GetScanResults().front();
    EXPECT_EQ(item.instanceId, "");
    EXPECT_EQ(item.slotNum, "");
    EXPECT_EQ(item.slotType, "");
    EXPECT_EQ(item.hasDevice, 0);
}

TEST_F(ScanXmlReaderTest, OptionalPackageElementsAreRead) {
    ASSERT_EQ(
        Load(ScanXmlWithPackages(Package("BMC",
                                         "<HASDEVICE> 12 </HASDEVICE><INSTANCEID>i</INSTANCEID>"
                                         "<SLOTNUM>3</SLOTNUM><SLOTTYPE>7</SLOTTYPE>"))),
        SUCCEED);
    const UpdateScanItem& item = report_.GetScanResults().front();
    EXPECT_EQ(item.hasDevice, 12);
    EXPECT_EQ(item.instanceId, "i");
    EXPECT_EQ(item.slotNum, "3");
    EXPECT_EQ(item.slotType, "7");
}

TEST_F(ScanXmlReaderTest, AnyChildOfThePackageListIsAPackage) {
    const std::string renamed =
        Replaced(Replaced(Package("UNIT"), "<PACKAGE>", "<UNIT>"), "</PACKAGE>", "</UNIT>");
    ASSERT_EQ(Load(ScanXmlWithPackages(renamed + Package("BMC"))), SUCCEED);
    ASSERT_EQ(report_.GetScanResults().size(), 2U);
    EXPECT_EQ(report_.GetScanResults()[0].softwareId, "UNIT");
}

TEST_F(ScanXmlReaderTest, UnknownElementsAreIgnored) {
    const std::string odd = "<ODD x=\"1\"><DEEPER>text</DEEPER></ODD>";
    ASSERT_EQ(Load(ScanXml(odd + kHeader + odd + Element("PACKAGES", Package("BMC", odd)) + odd)),
              SUCCEED);
    EXPECT_EQ(report_.GetScanResults().size(), 1U);
}

TEST_F(ScanXmlReaderTest, TextsAreTakenVerbatim) {
    ASSERT_EQ(Load(Replaced(ScanXmlWithPackages(Package(" BMC ")), "<MT>9XQ1</MT>",
                            "<MT>  9XQ1\t\n</MT>")),
              SUCCEED);
    EXPECT_EQ(report_.GetMT(), "  9XQ1\t\n");
    EXPECT_EQ(report_.GetScanResults().front().softwareId, " BMC ");
}

TEST_F(ScanXmlReaderTest, NumbersMayHaveWhiteSpaceAround) {
    ASSERT_EQ(
        Load(Replaced(ScanXmlWithPackages(""), "<TOTAL>3</TOTAL>", "<TOTAL>\n  42 \t</TOTAL>")),
        SUCCEED);
    EXPECT_EQ(report_.GetScanCount(), 42);
}

TEST_F(ScanXmlReaderTest, NumbersFollowNoLocale) {
    const test_support::GlobalGroupingLocale grouping;
    ASSERT_EQ(Load(Replaced(ScanXmlWithPackages(Package("BMC", Element("HASDEVICE", " 1000 "))),
                            "<TOTAL>3</TOTAL>", "<TOTAL>1234567</TOTAL>")),
              SUCCEED);
    EXPECT_EQ(report_.GetScanCount(), 1234567);
    EXPECT_EQ(report_.GetScanResults().front().hasDevice, 1000);
}

TEST_F(ScanXmlReaderTest, MissingBmcTypeIsLoggedAndEmptiesTheMember) {
    report_.SetBmcType("Ossa");
    ASSERT_EQ(Load(Replaced(ScanXmlWithPackages(""), "<BMCTYPE>Tavro</BMCTYPE>", "")), SUCCEED);
    EXPECT_EQ(report_.GetBmcType(), "");
    EXPECT_EQ(log_.Texts(1),
              (Lines{"Failed to get BMC Type from scanxml, please use tarsel to do scan again."}));
    EXPECT_EQ(console_, "");
}

TEST_F(ScanXmlReaderTest, MissingSwitchFlagAndReleaseNameLeaveTheMembers) {
    report_.SetSwitchDownstreamDevices("1");
    report_.SetBmcReleaseName("kept");
    ASSERT_EQ(Load(ScanXmlWithPackages("")), SUCCEED);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "1");
    EXPECT_EQ(report_.GetBmcReleaseName(), "kept");
}

TEST_F(ScanXmlReaderTest, EmptySwitchFlagAndReleaseNameEmptyTheMembers) {
    report_.SetSwitchDownstreamDevices("1");
    report_.SetBmcReleaseName("gone");
    ASSERT_EQ(Load(ScanXml(kHeader + "<HASSWITCHDOWNSTREAM/><BMCRELEASENAME/><PACKAGES/>")),
              SUCCEED);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "");
    EXPECT_EQ(report_.GetBmcReleaseName(), "");
}

TEST_F(ScanXmlReaderTest, CommentsElsewhereAreHarmless) {
    const std::string note = "<!-- <SCAN> -->";
    ASSERT_EQ(Load(note +
                   ScanXml(note + kHeader + note +
                           Element("PACKAGES", Package("B" + note + "MC", note))) +
                   note),
              SUCCEED);
    EXPECT_EQ(report_.GetScanResults().front().softwareId, "BMC");
}

TEST_F(ScanXmlReaderTest, AttributesOnPackagesAndTextsAreHarmless) {
    ASSERT_EQ(Load(Replaced(
                  Replaced(ScanXmlWithPackages(Package("BMC")), "<PACKAGE>", "<PACKAGE x=\"1\">"),
                  "<MT>", "<MT y='2'>")),
              SUCCEED);
    EXPECT_EQ(report_.GetMT(), "9XQ1");
}

TEST_F(ScanXmlReaderTest, CdataIsText) {
    ASSERT_EQ(Load(Replaced(ScanXmlWithPackages(""), "9XQ1", "<![CDATA[<9XQ1>]]>")), SUCCEED);
    EXPECT_EQ(report_.GetMT(), "<9XQ1>");
}

}  // namespace
}  // namespace scan_xml_reader
