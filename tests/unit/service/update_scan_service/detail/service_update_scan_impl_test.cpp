#include "service/update_scan_service/detail/service_update_scan_impl.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/progress_bar_mock.h"
#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnItem;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

class ServiceUpdateScanImplTest : public support::BmcScanTestBase {
  protected:
    TarselResult Run(int connect_mode) {
        option_.connect_option.connect_mode = connect_mode;
        ServiceUpdateScanImpl scan(option_);
        scan.SetProgressBar(progress_bar_);
        return scan.Run(report_);
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const UpdateScanItem& item : report_.GetScanResults()) names.push_back(item.name);
        return names;
    }

    void FillReport() {
        report_.SetScanResults({AnItem().Name("NIC").SoftwareId("A"), AnItem().Name("oem_x"),
                                AnItem().Name("NIC").SoftwareId("B")});
        report_.SetScanCount(3);
    }

    /// The shortest failing scan: no connection at all, code 12 "refused".
    void NobodyLetsUsIn() {
        const TarselResult refused(AUTHENTICATION_FAILED, "refused");
        RestFetchGives(refused, {});
        SystemCheckIsMade();
        CimFetchGives(refused, {});
    }

    /// The shortest successful scan: a third-generation Tavro controller without Redfish.
    void NothingIsThereToScan() {
        RestFetchGives(ok_, {rest_});
        SystemCheckIsMade();
        RedfishIsSupported(false);
        IsTavroV3(true);
    }

    DynamicProgressBar* progress_bar_ = nullptr;
};

// ---- choice of the path
// -----------------------------------------------------------------------------

class OutOfBandModeTest : public ServiceUpdateScanImplTest,
                          public testing::WithParamInterface<int> {};

TEST_P(OutOfBandModeTest, RunsTheScanThroughTheController) {
    NobodyLetsUsIn();
    const TarselResult result = Run(GetParam());
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    EXPECT_TRUE(log_.Has(3, "Start BMC inventorying..."));
}

INSTANTIATE_TEST_SUITE_P(Modes, OutOfBandModeTest, testing::Values(2, 6, 7));

// The paths over CIM alone are told apart by what they say first; the hypervisor's says nothing
// before it is connected.
struct CimMode {
    int connect_mode;
    std::vector<std::string> start_log;
};

class CimModeTest : public ServiceUpdateScanImplTest,
                    public testing::WithParamInterface<CimMode> {};

TEST_P(CimModeTest, RunsTheScanOfItsTarget) {
    CimFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused"), {});
    const TarselResult result = Run(GetParam().connect_mode);
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    const std::vector<std::string> texts = log_.Texts(3);
    ASSERT_GE(texts.size(), 2u);
    EXPECT_EQ(std::vector<std::string>(texts.begin() + 2, texts.end()), GetParam().start_log);
}

INSTANTIATE_TEST_SUITE_P(Modes, CimModeTest,
                         testing::Values(CimMode{3, {"Start Tolv inventorying..."}}, CimMode{4, {}},
                                         CimMode{5, {"Start IOSwitch inventorying..."}}));

TEST_F(ServiceUpdateScanImplTest, EnclosureModeTriesTheThreeWaysToItsModule) {
    const testing::InSequence in_sequence;
    const TarselResult refused(AUTHENTICATION_FAILED, "refused");
    EXPECT_CALL(platform_, GetRESTConnection(_, _)).WillOnce(Return(refused));
    EXPECT_CALL(platform_, FetchVeskHttpsConnection(_, _)).WillOnce(Return(refused));
    EXPECT_CALL(platform_, FetchIPMIConnection(_, _)).WillOnce(Return(refused));
    EXPECT_EQ(Run(8).code, AUTHENTICATION_FAILED);
    EXPECT_TRUE(log_.Has(3, "Start Vesk inventorying..."));
}

TEST_F(ServiceUpdateScanImplTest, HypervisorModeAsksForTheHostsVersionOnceConnected) {
    CimFetchGives(ok_, {cim_});
    EXPECT_CALL(platform_, EXSIInventoryConstructor(support::IsConnection(cim_)));
    EXPECT_CALL(platform_, IsUnSpportedEXSIVersion(support::IsConnection(cim_)))
        .WillOnce(Return(true));
    EXPECT_EQ(Run(4).code, ESXI_INTERNAL_ERROR);
}

TEST_F(ServiceUpdateScanImplTest, RemoteModeParsesItsTargetFirst) {
    option_.connect_option.target_address = "no host";
    EXPECT_CALL(platform_, UriConstructor("ssh://no host", false))
        .WillOnce(testing::Throw(std::invalid_argument("no")));
    const TarselResult result = Run(11);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "Failed to parse uri");
    EXPECT_TRUE(log_.Has(3, "Start remote OS inventorying..."));
}

// The two scans of the machine itself say the same at first; only the one with a controller
// measures its time.
TEST_F(ServiceUpdateScanImplTest, InBandModeRunsTheScanWithTheController) {
    EXPECT_CALL(platform_, MonotonicSeconds()).WillOnce(Return(0));
    EXPECT_CALL(platform_, GetOSInfo(_, _)).WillOnce(Return(TIMEOUT));
    EXPECT_EQ(Run(1).code, TIMEOUT);
    EXPECT_TRUE(log_.Has(3, "Start inband inventorying..."));
    EXPECT_TRUE(log_.Has(1, "Failed to Get inband system info"));
}

TEST_F(ServiceUpdateScanImplTest, LocalModeRunsTheScanWithoutAController) {
    EXPECT_CALL(platform_, GetOSInfo(_, _)).WillOnce(Return(TIMEOUT));
    EXPECT_EQ(Run(16).code, TIMEOUT);
    EXPECT_TRUE(log_.Has(3, "Start inband inventorying..."));
    EXPECT_TRUE(log_.Has(1, "Failed to Get inband system info"));
}

class AmdModeTest : public ServiceUpdateScanImplTest, public testing::WithParamInterface<int> {};

TEST_P(AmdModeTest, RunsTheScanOfTheAmdPlatform) {
    EXPECT_CALL(platform_, GetOSInfo(_)).WillOnce(Return(TIMEOUT));
    const TarselResult result = Run(GetParam());
    EXPECT_EQ(result.code, GET_OS_TYPE_FAILED);
    EXPECT_EQ(result.message, "Failed to get AMD os info.");
    EXPECT_TRUE(log_.Has(3, "Start AMI inventorying..."));
}

INSTANTIATE_TEST_SUITE_P(Modes, AmdModeTest, testing::Values(9, 13, 15));

class UnsupportedModeTest : public ServiceUpdateScanImplTest,
                            public testing::WithParamInterface<int> {};

TEST_P(UnsupportedModeTest, IsAGenericFailureWithItsRegisteredText) {
    const TarselResult result = Run(GetParam());
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "Generic Failure.");
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_P(UnsupportedModeTest, StillCleansTheReportUp) {
    FillReport();
    EXPECT_EQ(Run(GetParam()).code, GENERIC_FAILURE);
    EXPECT_THAT(Names(), ElementsAre("NIC(A)", "NIC(B)"));
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_P(UnsupportedModeTest, StillLogsOptionsAndMode) {
    EXPECT_EQ(Run(GetParam()).code, GENERIC_FAILURE);
    ASSERT_EQ(log_.Texts(3).size(), 2u);
    EXPECT_EQ(log_.Texts(3)[0].rfind("scan options are", 0), 0u);
    EXPECT_EQ(log_.Texts(3)[1], "Try to call suitable scan interface by connection mode:" +
                                    std::to_string(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Modes, UnsupportedModeTest, testing::Values(0, 10, 12, 14, 17, 4096, -1));

// ---- result and clean-up
// ----------------------------------------------------------------------------

TEST_F(ServiceUpdateScanImplTest, SuccessPassesThrough) {
    NothingIsThereToScan();
    const TarselResult result = Run(2);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "fetched");
}

TEST_F(ServiceUpdateScanImplTest, CleanUpFollowsASuccess) {
    FillReport();
    NothingIsThereToScan();
    EXPECT_EQ(Run(2).code, 0);
    EXPECT_THAT(Names(), ElementsAre("NIC(A)", "NIC(B)"));
}

TEST_F(ServiceUpdateScanImplTest, CleanUpFollowsAFailure) {
    FillReport();
    NobodyLetsUsIn();
    EXPECT_EQ(Run(2).code, AUTHENTICATION_FAILED);
    EXPECT_THAT(Names(), ElementsAre("NIC(A)", "NIC(B)"));
}

TEST_F(ServiceUpdateScanImplTest, ExceptionOfAPathPassesWithoutCleanUp) {
    FillReport();
    EXPECT_CALL(platform_, GetRESTConnectionList(_, _))
        .WillOnce(testing::Throw(std::runtime_error("out of luck")));
    EXPECT_THROW((void)Run(2), std::runtime_error);
    EXPECT_THAT(Names(), ElementsAre("NIC", "oem_x", "NIC"));
}

// ---- progress
// -----------------------------------------------------------------------------------------

class ScanProgressTest : public ServiceUpdateScanImplTest {
  protected:
    ScanProgressTest() { progress_bar_ = &bar_; }

    doubles::StrictProgressBar bar_;
};

TEST_F(ScanProgressTest, SuccessEndsWithStageOne) {
    const testing::InSequence in_sequence;
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    NothingIsThereToScan();
    EXPECT_CALL(bar_, SetStage(1, "Scanning finished."));
    EXPECT_EQ(Run(2).code, 0);
}

TEST_F(ScanProgressTest, FailureMarksStageZero) {
    const testing::InSequence in_sequence;
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    NobodyLetsUsIn();
    EXPECT_CALL(bar_, ReportStageFailure(0, "Scan failed."));
    EXPECT_EQ(Run(2).code, AUTHENTICATION_FAILED);
}

TEST_F(ScanProgressTest, UnsupportedModeIsShownAsAFailure) {
    const testing::InSequence in_sequence;
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    EXPECT_CALL(bar_, ReportStageFailure(0, "Scan failed."));
    EXPECT_EQ(Run(10).code, GENERIC_FAILURE);
}

TEST_F(ScanProgressTest, ModuleNumberAloneIsShownAsASuccess) {
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    RestFetchGives(TarselResult(0x10000, ""), {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(false);
    IsTavroV3(true);
    EXPECT_CALL(bar_, SetStage(1, "Scanning finished."));
    EXPECT_EQ(Run(2).code, 0x10000);
}

TEST_F(ScanProgressTest, BarReachesTheScanPath) {
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(_, _)).Times(2);
    EXPECT_CALL(bar_, SetTimerInterval(600));
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", {support::AnIdentity().Name("UEFI")});
    EXPECT_EQ(Run(2).code, 0);
}

TEST_F(ScanProgressTest, LastCallComesBeforeTheCleanUp) {
    FillReport();
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    EXPECT_CALL(bar_, ReportStageFailure(0, "Scan failed.")).WillOnce([&] {
        EXPECT_THAT(Names(), ElementsAre("NIC", "oem_x", "NIC"));
    });
    EXPECT_EQ(Run(0).code, GENERIC_FAILURE);
}

TEST_F(ScanProgressTest, ExceptionOfAPathMakesNoFurtherCall) {
    EXPECT_CALL(bar_, SetStageCount(1));
    EXPECT_CALL(bar_, SetStage(0, "Scanning..."));
    EXPECT_CALL(platform_, GetRESTConnectionList(_, _))
        .WillOnce(testing::Throw(std::runtime_error("out of luck")));
    EXPECT_THROW((void)Run(2), std::runtime_error);
}

TEST_F(ScanProgressTest, OptionsAreLoggedBeforeTheFirstCallAndTheModeAfterIt) {
    EXPECT_CALL(bar_, SetStageCount(1)).WillOnce([&] { EXPECT_EQ(log_.Records().size(), 1u); });
    EXPECT_CALL(bar_, SetStage(0, "Scanning...")).WillOnce([&] {
        EXPECT_EQ(log_.Records().size(), 1u);
    });
    EXPECT_CALL(bar_, ReportStageFailure(_, _)).WillOnce([&] {
        EXPECT_EQ(log_.Records().size(), 2u);
    });
    EXPECT_EQ(Run(0).code, GENERIC_FAILURE);
}

// ---- options log
// ------------------------------------------------------------------------------------------

TEST_F(ServiceUpdateScanImplTest, OptionsAreOneRecordOfEightLines) {
    option_.bay_id = 12;
    option_.is_zelvar = true;
    option_.is_csp_system = true;
    option_.output_dir = "out dir";
    option_.package_dir = "packages";
    EXPECT_EQ(Run(10).code, GENERIC_FAILURE);
    ASSERT_FALSE(log_.Records().empty());
    EXPECT_EQ(log_.Records()[0].level, 3);
    EXPECT_EQ(log_.Records()[0].text,
              "scan options are"
              "\n        : connect_mode       = 10"
              "\n        : bay_id             = 12"
              "\n        : is_zelvar          = true"
              "\n        : is_check_device    = false"
              "\n        : is_cfc_system      = false"
              "\n        : is_csp_system      = true"
              "\n        : output_dir         = out dir"
              "\n        : package_dir        = packages");
}

TEST_F(ServiceUpdateScanImplTest, OptionsLogShowsTheRequestedDeviceCheckAlone) {
    option_.is_check_device = true;
    option_.is_cfc_system = true;
    option_.report_check_device = false;
    EXPECT_EQ(Run(0).code, GENERIC_FAILURE);
    EXPECT_TRUE(log_.Has(3, ": is_check_device    = true\n"));
    EXPECT_TRUE(log_.Has(3, ": is_cfc_system      = true\n"));
    EXPECT_FALSE(report_.IsCheckDevice());
}

TEST_F(ServiceUpdateScanImplTest, OptionsLogLeavesTheStreamAsItFoundIt) {
    option_.is_zelvar = true;
    EXPECT_EQ(Run(0).code, GENERIC_FAILURE);
    ASSERT_FALSE(log_.Records().empty());
    EXPECT_FALSE(log_.Records()[0].boolalpha_left_set);
}

TEST_F(ServiceUpdateScanImplTest, NoSecretAndNoCommandStandsInTheOptionsLog) {
    option_.connect_option.password = "fake-password";
    option_.remote_command = "fake-command";
    option_.inband_argument = "fake-argument";
    option_.scan_type = "fake-type";
    EXPECT_EQ(Run(0).code, GENERIC_FAILURE);
    for (const doubles::LogRecord& record : log_.Records()) {
        EXPECT_EQ(record.text.find("fake-"), std::string::npos) << record.text;
        EXPECT_EQ(record.text.find("someone"), std::string::npos) << record.text;
    }
}

}  // namespace
}  // namespace service::detail
