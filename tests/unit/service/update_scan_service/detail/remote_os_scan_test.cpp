#include "service/update_scan_service/detail/remote_os_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "doubles/platform_double.h"
#include "service/update_scan_service/serialize_update_scan.h"
#include "support/builders.h"
#include "support/cout_capture.h"
#include "support/temporary_folder.h"

namespace service::detail {
namespace {

using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;
using testing::Throw;

class RemoteOsScanTest : public testing::Test {
  protected:
    RemoteOsScanTest() {
        option_.connect_option.target_address = "127.0.0.1";
        option_.output_dir = "out";
        option_.package_dir = "packages";
        option_.remote_command = "./tool scan";
    }

    TarselResult Scan() { return RemoteOsScan(option_, report_, nullptr); }

    void ChannelIsMade() {
        EXPECT_CALL(platform_, UriConstructor("ssh://127.0.0.1", false));
        EXPECT_CALL(platform_, CreateRemoteCommand(_, "out", "packages", false))
            .WillOnce(Return(remote_));
    }
    void StepsGive(const TarselResult& setup, const TarselResult& run, const TarselResult& logs) {
        ChannelIsMade();
        EXPECT_CALL(*remote_, Setup()).WillOnce(Return(setup));
        if (setup != SUCCEED) return;
        EXPECT_CALL(*remote_, Run("./tool scan")).WillOnce(Return(run));
        if (run != SUCCEED) return;
        EXPECT_CALL(*remote_, DownloadLogs()).WillOnce(Return(logs));
    }
    void ScanFileLiesAt(const std::string& path) {
        EXPECT_CALL(*remote_, GetLocalPath("Tarsel-update-scan.xml")).WillOnce(Return(path));
    }
    void CommonResultIs(bool read, int code, const std::string& message) {
        EXPECT_CALL(*remote_, GetLocalPath("common_result.xml"))
            .WillOnce(Return("out/common_result.xml"));
        EXPECT_CALL(platform_,
                    ExtractSummaryResult("out/common_result.xml", testing::Eq(0), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(code), SetArgReferee<2>(message), Return(read)));
    }
    /// A scan file with one item, as the remote run leaves it.
    std::string AScanFile() const {
        UpdateScanReport report;
        report.SetMT("MT-1");
        report.SetBmcType("None");
        report.SetScanCount(1);
        report.PushScanItem(support::AnItem().Name("UEFI").SoftwareId("UEFI").Version("1"));
        const std::string path = folder_.Path("Tarsel-update-scan.xml");
        EXPECT_EQ(SerializeScanReport::SaveToXml(report, path), 0);
        return path;
    }

    // Everything is scripted in the order in which it must happen.
    const testing::InSequence in_sequence_;
    const TarselResult ok_{0, ""};
    const test_support::TemporaryFolder folder_;
    const std::string missing_ = folder_.Path("missing.xml");
    doubles::LogCapture log_;
    doubles::StrictPlatform platform_;
    std::shared_ptr<testing::StrictMock<doubles::RemoteCommandMock>> remote_ =
        std::make_shared<testing::StrictMock<doubles::RemoteCommandMock>>();
    UpdateScanOption option_;
    UpdateScanReport report_;
};

// ---- the way to the remote machine

TEST_F(RemoteOsScanTest, AddressThatIsNoUriEndsTheScanWithoutRemoteContact) {
    option_.connect_option.target_address = "no host";
    EXPECT_CALL(platform_, UriConstructor("ssh://no host", false))
        .WillOnce(Throw(std::invalid_argument("blank in the host")));
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "Failed to parse uri");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to parse uri ssh://no hostwith error is blank "
                                           "in the host"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start remote OS inventorying..."));
}

TEST_F(RemoteOsScanTest, MissingChannelTellsItsReason) {
    EXPECT_CALL(platform_, UriConstructor(_, _));
    EXPECT_CALL(platform_, CreateRemoteCommand(_, _, _, _))
        .WillOnce(Throw(std::runtime_error("no channel to that system")));
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, REMOTE_MACHINE_NOT_SUPPORTED);
    EXPECT_EQ(result.message, "no channel to that system");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to create remote controller with error info is "
                                           "no channel to that system"));
}

TEST_F(RemoteOsScanTest, OptionsReachTheChannelUnchanged) {
    option_.connect_option.target_address = "fe80::1";
    option_.output_dir = "";
    option_.package_dir = "p q";
    option_.remote_flag = true;
    option_.remote_command = "";
    EXPECT_CALL(platform_, UriConstructor("ssh://fe80::1", false));
    EXPECT_CALL(platform_, CreateRemoteCommand(_, "", "p q", true)).WillOnce(Return(remote_));
    EXPECT_CALL(*remote_, Setup()).WillOnce(Return(ok_));
    EXPECT_CALL(*remote_, Run("")).WillOnce(Return(TarselResult(TIMEOUT, "")));
    EXPECT_EQ(Scan().code, TIMEOUT);
}

TEST_F(RemoteOsScanTest, ChannelIsReleasedOnEveryWayOut) {
    StepsGive(TarselResult(TIMEOUT, "slow"), ok_, ok_);
    EXPECT_EQ(Scan().code, TIMEOUT);
    testing::Mock::VerifyAndClearExpectations(&platform_);  // drops the script's own copy
    EXPECT_EQ(remote_.use_count(), 1);
}

// ---- steps

TEST_F(RemoteOsScanTest, FailedSetupIsReturnedAsItIs) {
    StepsGive(TarselResult(AUTHENTICATION_FAILED, "refused"), ok_, ok_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    EXPECT_THAT(log_.Texts(1),
                ElementsAre("Failed to setup remote environment with error is 12 refused"));
}

TEST_F(RemoteOsScanTest, FailedCommandIsReturnedAndLoggedWithTheCommand) {
    StepsGive(ok_, TarselResult(0x10012, ""), ok_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x10012);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1),
                ElementsAre("Failed to run remote scan command with ./tool scan, error is 18 " +
                            GetResultMessage(0x10012)));
}

TEST_F(RemoteOsScanTest, FailedDownloadIsReturnedButLoggedAsIgnorable) {
    StepsGive(ok_, ok_, TarselResult(DOWNLOAD_FAILED, "cut off"));
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, DOWNLOAD_FAILED);
    EXPECT_EQ(result.message, "cut off");
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to download remote scan logs with error is 16 cut off"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(RemoteOsScanTest, ModuleNumberAloneIsNoFailedStep) {
    const TarselResult module_only(0x10000, "");
    StepsGive(module_only, module_only, module_only);
    ScanFileLiesAt(missing_);
    CommonResultIs(true, 0, "");
    EXPECT_EQ(Scan().code, 0);
}

// ---- results

TEST_F(RemoteOsScanTest, ScanFileFillsTheReportAndTheRemoteVerdictIsReturned) {
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(AScanFile());
    CommonResultIs(true, 0, "all well there");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "all well there");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    ASSERT_EQ(report_.GetScanResults().size(), 1u);
    EXPECT_EQ(report_.GetScanResults()[0].name, "UEFI");
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(RemoteOsScanTest, FailedRemoteVerdictOutranksALoadedScanFile) {
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(AScanFile());
    CommonResultIs(true, 0x6D3, "");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0x6D3);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetScanResults().size(), 1u);
}

TEST_F(RemoteOsScanTest, MissingScanFileIsSilentAndTheRemoteVerdictDecides) {
    const test_support::CoutCapture console;
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(missing_);
    CommonResultIs(true, 0, "");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    EXPECT_EQ(console.Text(), "");  // the reader, which would complain, was not even asked
}

TEST_F(RemoteOsScanTest, FolderInPlaceOfTheScanFileIsLikeAMissingFile) {
    StepsGive(ok_, ok_, ok_);
    std::filesystem::create_directory(missing_);
    ScanFileLiesAt(missing_);
    CommonResultIs(true, 0, "");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(RemoteOsScanTest, PathThatCannotBeLookedAtIsLikeAMissingFile) {
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(folder_.Write("file", "x") + "/below");
    CommonResultIs(true, 0, "");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(RemoteOsScanTest, BrokenScanFileEndsTheScanBeforeTheVerdict) {
    const test_support::CoutCapture console;
    const std::string path = folder_.Write("broken.xml", "<SCAN>");
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(path);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, INVALID_FILE);
    EXPECT_EQ(result.message, "Invalid file.");
    EXPECT_EQ(log_.Texts(1).back(), "Failed to load scan xml " + path);
}

TEST_F(RemoteOsScanTest, MissingCommonResultIsAFailureWithTheReportFilled) {
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(AScanFile());
    CommonResultIs(false, 7, "half read");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Failed to extract remote common result");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to extract result from out/common_result.xml"));
    EXPECT_EQ(report_.GetScanResults().size(), 1u);
}

// ---- exceptions

TEST_F(RemoteOsScanTest, ExceptionOfAStepBecomesAFailureWithItsText) {
    ChannelIsMade();
    EXPECT_CALL(*remote_, Setup()).WillOnce(Throw(std::runtime_error("out of luck")));
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "out of luck");
    EXPECT_TRUE(log_.Has(1, "out of luck"));
}

TEST_F(RemoteOsScanTest, ExceptionAfterTheLoadLeavesTheReportFilled) {
    StepsGive(ok_, ok_, ok_);
    ScanFileLiesAt(AScanFile());
    EXPECT_CALL(*remote_, GetLocalPath("common_result.xml"))
        .WillOnce(Throw(std::runtime_error("out of luck")));
    EXPECT_EQ(Scan().code, GENERIC_FAILURE);
    EXPECT_EQ(report_.GetScanResults().size(), 1u);
}

TEST_F(RemoteOsScanTest, NothingElseThatIsThrownLeavesTheScanEither) {
    ChannelIsMade();
    EXPECT_CALL(*remote_, Setup()).WillOnce(Throw(7));
    EXPECT_EQ(Scan().code, GENERIC_FAILURE);
}

}  // namespace
}  // namespace service::detail
