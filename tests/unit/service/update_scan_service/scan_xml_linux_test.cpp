// Saving and loading where the system decides: full disks, links, files that do not open.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "support/cout_capture.h"
#include "support/item_builder.h"
#include "support/temporary_folder.h"

namespace {

using service::SerializeScanReport;
using service::UpdateScanReport;
using test_support::TemporaryFolder;

// Not the administrator, who may open everything, while the object lives.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (geteuid() == 0) is_changed_ = seteuid(kNobody) == 0;
    }
    ~OrdinaryUser() {
        if (is_changed_ && seteuid(0) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    static constexpr uid_t kNobody = 65534;
    bool is_changed_ = false;
};

UpdateScanReport LargeReport() {
    UpdateScanReport report;
    for (int i = 0; i < 1000; ++i) report.PushScanItem(test_support::AnItem());
    return report;
}

TEST(SaveToXmlLinuxTest, FullDiskYieldsWriteFileFailedForASmallFile) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no full device";
    EXPECT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), "/dev/full"), WRITE_FILE_FAILED);
}

TEST(SaveToXmlLinuxTest, FullDiskYieldsWriteFileFailedForALargeFile) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no full device";
    EXPECT_EQ(SerializeScanReport::SaveToXml(LargeReport(), "/dev/full"), WRITE_FILE_FAILED);
}

TEST(SaveToXmlLinuxTest, LinkStaysALinkAndItsTargetIsWritten) {
    const TemporaryFolder folder;
    const std::string target = folder.Write("target.xml", "old");
    const std::string link = folder.Path("link.xml");
    std::filesystem::create_symlink(target, link);
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), link), SUCCEED);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_TRUE(folder.Read("target.xml").ends_with("</SCAN>\n"));
}

TEST(SaveToXmlLinuxTest, RightsOfAnExistingFileStay) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("scan.xml", "old");
    const auto rights = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(path, rights);
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), path), SUCCEED);
    EXPECT_EQ(std::filesystem::status(path).permissions(), rights);
}

TEST(ScanXmlReaderLinuxTest, FileThatDoesNotOpenYieldsReadFileFailed) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("scan.xml");
    ASSERT_EQ(SerializeScanReport::SaveToXml(UpdateScanReport(), path), SUCCEED);
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(folder.Path("."), static_cast<std::filesystem::perms>(0755));
    const doubles::LogCapture log;
    UpdateScanReport report;
    int code = 0;
    {
        const OrdinaryUser user;
        code = SerializeScanReport::LoadFromXml(path, report);
    }
    EXPECT_EQ(code, READ_FILE_FAILED);
    EXPECT_EQ(log.Texts(1), (std::vector<std::string>{path + ": cannot open file"}));
    EXPECT_EQ(report.GetMT(), "");
}

TEST(ScanXmlReaderLinuxTest, LinkToAScanFileLoads) {
    const TemporaryFolder folder;
    const std::string target = folder.Path("target.xml");
    ASSERT_EQ(SerializeScanReport::SaveToXml(LargeReport(), target), SUCCEED);
    std::filesystem::create_symlink(target, folder.Path("link.xml"));
    UpdateScanReport report;
    EXPECT_EQ(SerializeScanReport::LoadFromXml(folder.Path("link.xml"), report), SUCCEED);
    EXPECT_EQ(report.GetScanResults().size(), 1000U);
}

TEST(ScanXmlReaderLinuxTest, DanglingLinkYieldsFileNotExist) {
    const TemporaryFolder folder;
    const test_support::CoutCapture console;
    std::filesystem::create_symlink(folder.Path("nowhere"), folder.Path("link.xml"));
    UpdateScanReport report;
    EXPECT_EQ(SerializeScanReport::LoadFromXml(folder.Path("link.xml"), report), FILE_NOT_EXIST);
}

TEST(ScanXmlReaderLinuxTest, DeviceYieldsFileNotExist) {
    const test_support::CoutCapture console;
    UpdateScanReport report;
    EXPECT_EQ(SerializeScanReport::LoadFromXml("/dev/null", report), FILE_NOT_EXIST);
}

TEST(ScanXmlReaderLinuxTest, PathBelowAFileYieldsFileNotExist) {
    const TemporaryFolder folder;
    const test_support::CoutCapture console;
    const std::string file = folder.Write("file", "");
    UpdateScanReport report;
    EXPECT_EQ(SerializeScanReport::LoadFromXml(file + "/scan.xml", report), FILE_NOT_EXIST);
}

}  // namespace
