// What the library exports: records, constants, registered texts, files and tables.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "common/files/file_path.h"
#include "common/result/result_codes.h"
#include "common/result/tarsel_result.h"
#include "common/version/version.h"
#include "platform/connection/run_context.h"
#include "platform/log/log_settings.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "service/update_scan_service/service_update_scan.h"
#include "support/temporary_folder.h"

namespace {

using service::SerializeScanReport;
using service::UpdateScanItem;
using service::UpdateScanReport;
using testing::HasSubstr;

UpdateScanReport SmallReport() {
    UpdateScanReport report;
    report.SetMT("Example Rack 100");
    report.SetScope("EXSN0001");
    report.SetScanCount(1);
    UpdateScanItem item;
    item.softwareId = "UEFI";
    item.name = "UEFI \xC3\xBC";
    item.version = "1.20";
    item.classification = "3";
    item.pldm = "1";
    item.hasDevice = 1;
    report.PushScanItem(item);
    return report;
}

TEST(ExportedClassesTest, KeysOfTheScanFileEqualTheirTexts) {
    const std::map<const std::string*, std::string> texts = {
        {&SerializeScanReport::TAG_SCAN, "SCAN"},
        {&SerializeScanReport::TAG_XMLVERSION, "SCAN.XMLVERSION"},
        {&SerializeScanReport::TAG_MT, "SCAN.CONTENT.MT"},
        {&SerializeScanReport::TAG_SN, "SCAN.CONTENT.SN"},
        {&SerializeScanReport::TAG_BMC_TYPE, "SCAN.CONTENT.BMCTYPE"},
        {&SerializeScanReport::TAG_BMCRELEASENAME, "SCAN.CONTENT.BMCRELEASENAME"},
        {&SerializeScanReport::TAG_OS, "SCAN.CONTENT.OS"},
        {&SerializeScanReport::TAG_OS_MINVERSION, "SCAN.CONTENT.OSMINVERSION"},
        {&SerializeScanReport::TAG_ARCH, "SCAN.CONTENT.ARCH"},
        {&SerializeScanReport::TAG_ISPARTITION, "SCAN.CONTENT.ISPARTITION"},
        {&SerializeScanReport::TAG_TOTAL, "SCAN.CONTENT.TOTAL"},
        {&SerializeScanReport::TAG_SWITCHDOWNSTREAM, "SCAN.CONTENT.HASSWITCHDOWNSTREAM"},
        {&SerializeScanReport::TAG_PACKAGES, "SCAN.CONTENT.PACKAGES"},
        {&SerializeScanReport::TAG_PACKAGE, "SCAN.CONTENT.PACKAGES.PACKAGE"},
        {&SerializeScanReport::TAG_NAME, "NAME"},
        {&SerializeScanReport::TAG_SOFTWAREID, "SOFTWAREID"},
        {&SerializeScanReport::TAG_VERSION, "VERSION"},
        {&SerializeScanReport::TAG_CLASSIFICATION, "CLASSIFICATION"},
        {&SerializeScanReport::TAG_DESCRIPTION, "DESCRIPTION"},
        {&SerializeScanReport::TAG_INSTANCEID, "INSTANCEID"},
        {&SerializeScanReport::TAG_SLOTNUM, "SLOTNUM"},
        {&SerializeScanReport::TAG_SLOTTYPE, "SLOTTYPE"},
        {&SerializeScanReport::TAG_PLDM, "AGENTLESSSUPPORT"},
        {&SerializeScanReport::TAG_PLDM_OLD, "PLDMUPDATE"},
        {&SerializeScanReport::TAG_HASDEVICE, "HASDEVICE"},
        {&SerializeScanReport::TAG_PUREVERSION, "XMLVERSION"},
        {&SerializeScanReport::TAG_TARSEL, "tarsel"},
    };
    EXPECT_EQ(texts.size(), 27U);
    for (const auto& [key, text] : texts) EXPECT_EQ(*key, text);
}

TEST(ExportedClassesTest, VersionIsThatOfTheBuild) {
    EXPECT_STREQ(TarselVersion(), TARSEL_VERSION);
}

TEST(ExportedClassesTest, ActionHasItsName) {
    EXPECT_EQ(service::ServiceUpdateScan::ActionName(), "Scan");
}

TEST(ExportedClassesTest, CodesHaveTheTextsThatTheLibraryKeeps) {
    EXPECT_EQ(GetResultMessage(FILE_NOT_EXIST), "File doesn't exist.");
    EXPECT_EQ(GetResultMessage(UPDATE_INVALID_FIXID), "The specified fixid(s) is invalid.");
    EXPECT_EQ(GetResultMessage(200), "Unknow error");
    EXPECT_EQ(ResultCodeRegistry::GetRegisteredMessage(PING_FAILED, 0), "Ping failed.");
}

TEST(ExportedClassesTest, CodeRegisteredByAFrontEndIsKnownToTheLibrary) {
    const int code = ResultCodeRegistry::Register(77, 12, "Invented.");
    EXPECT_EQ(TarselResult(code).message, "Invented.");
}

TEST(ExportedClassesTest, ResultIsWrittenIntoAStreamOfTheFrontEnd) {
    std::ostringstream out;
    out << TarselResult(CONNECTION_FAILED, "");
    EXPECT_EQ(out.str(), "13 Connection failed.");
}

TEST(ExportedClassesTest, ReportComesBackFromAFileOfAnyName) {
    const test_support::TemporaryFolder folder;
    const std::string file = Vantix::FileName(Vantix::FilePath(folder.Path("")) /
                                              Vantix::FilePath("scan \xC3\xBC\xE4\xB8\xAD.xml"));
    ASSERT_EQ(SerializeScanReport::SaveToXml(SmallReport(), file), SUCCEED);
    EXPECT_TRUE(std::filesystem::is_regular_file(Vantix::FilePath(file)));
    UpdateScanReport report;
    ASSERT_EQ(SerializeScanReport::LoadFromXml(file, report), SUCCEED);
    EXPECT_EQ(report.GetMT(), "Example Rack 100");
    ASSERT_EQ(report.GetScanResults().size(), 1U);
    EXPECT_EQ(report.GetScanResults().front().name, "UEFI \xC3\xBC");
}

TEST(ExportedClassesTest, TablesGoIntoAStreamOfTheFrontEnd) {
    std::ostringstream out;
    SerializeScanReport::PrintResult(SmallReport(), out, "fw");
    EXPECT_THAT(out.str(), HasSubstr("Example Rack 100"));
    EXPECT_THAT(out.str(), HasSubstr("UEFI \xC3\xBC"));
}

TEST(ExportedClassesTest, TablesGoToTheStandardOutput) {
    testing::internal::CaptureStdout();
    SerializeScanReport::PrintResult(SmallReport(), "fw");
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Example Rack 100"));
}

TEST(ExportedClassesTest, RunContextIsSharedWithTheLibrary) {
    Vantix::VantixConnection::RunContext run;
    run.AddNotice("invented");
    EXPECT_EQ(run.Notices(), std::vector<std::string>{"invented"});
    EXPECT_FALSE(run.IsCancelled());
    run.Cancel();
    EXPECT_TRUE(run.IsCancelled());
    EXPECT_STREQ(SourceStateText(Vantix::VantixConnection::SourceState::kPartial), "partial");
}

TEST(ExportedClassesTest, SecretsAreMaskedAcrossTheBorder) {
    Vantix::AddLogSecret("Fake-Pass-1");
    EXPECT_EQ(Vantix::MaskSecrets("it is Fake-Pass-1"), "it is ******");
    Vantix::ShutdownLog();
}

}  // namespace
