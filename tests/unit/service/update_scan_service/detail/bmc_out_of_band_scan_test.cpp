#include "service/update_scan_service/detail/bmc_out_of_band_scan.h"

#include <memory>
#include <string>
#include <vector>

#include "service/update_scan_service/update_scan_report.h"
#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::IsConnection;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

class BmcOutOfBandScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return BmcOutOfBandScan(option_, report_, nullptr); }

    void ExpectListFailure(const TarselResult& result) {
        EXPECT_EQ(result.code, GENERIC_FAILURE);
        EXPECT_EQ(result.message, "Get connections list fail.");
        EXPECT_THAT(log_.Texts(1), testing::Contains("Get connections list fail."));
    }

    const Identities one_identity_ = {AnIdentity().Name("UEFI").Version("1")};
    const TarselResult refused_{AUTHENTICATION_FAILED, "refused"};
};

// ---- Redfish
// --------------------------------------------------------------------------------------------

TEST_F(BmcOutOfBandScanTest, RedfishScanNeedsNoCim) {
    const testing::InSequence in_sequence;
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    ReleaseNameIs("winter");
    LegacyListAnswers("MT-1", 0);
    BmcTypeIs(rest_, "Tavro");
    EstimateIs("MT-1", 60);
    InventoryGives(rest_, 0, one_identity_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetScanCount(), 1);
    EXPECT_EQ(report_.GetBmcReleaseName(), "winter");
}

TEST_F(BmcOutOfBandScanTest, LogBeginsWithTheStartAndTheRedfishAttempt) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    const std::vector<std::string> texts = log_.Texts(3);
    ASSERT_GE(texts.size(), 3u);
    EXPECT_EQ(texts[0], "Start BMC inventorying...");
    EXPECT_EQ(texts[1], "Try scan via redfish.");
    EXPECT_EQ(texts[2], "Run Ossa Scan with connect case:5");
}

TEST_F(BmcOutOfBandScanTest, RecordsBearTheSourceNameOfTheScan) {
    RestFetchGives(refused_, {});
    SystemCheckIsMade();
    CimFetchGives(refused_, {});
    EXPECT_EQ(Scan().code, AUTHENTICATION_FAILED);
    ASSERT_FALSE(log_.Records().empty());
    EXPECT_EQ(log_.Records()[0].source,
              R"(..\..\Src\service\update_scan_service\detail\service_update_scan_impl)");
    EXPECT_GT(log_.Records()[0].line, 0);
}

TEST_F(BmcOutOfBandScanTest, OnlyTheFirstConnectionIsUsed) {
    RestFetchGives(ok_, {rest_, support::AConnection(5, 4499)});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(BmcOutOfBandScanTest, SwitchesWithoutDevicesLeaveTheFieldAsItWas) {
    report_.SetSwitchDownstreamDevices("0");
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "0");
}

TEST_F(BmcOutOfBandScanTest, SwitchesWithDevicesAreReportedAndLogged) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(true);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "1");
    EXPECT_TRUE(log_.Has(4, "exist downstream devices behind broadcom switches."));
}

TEST_F(BmcOutOfBandScanTest, SwitchesAreReportedEvenWhenTheScanThenFails) {
    option_.is_cfc_system = true;
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    SwitchProbeAnswers(true);
    ReleaseNameIs("");
    ScanFailsOver(rest_);
    EXPECT_EQ(Scan().code, TIMEOUT);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "1");
}

TEST_F(BmcOutOfBandScanTest, SwitchesAreNotProbedWithoutRedfishSupport) {
    report_.SetSwitchDownstreamDevices("before");
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(false);
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    ScanFinds(cim_, "Ossa", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetSwitchDownstreamDevices(), "before");
}

// ---- CFC and CSP systems
// -----------------------------------------------------------------------------------

class RedfishOnlySystemTest : public BmcOutOfBandScanTest,
                              public testing::WithParamInterface<bool> {
  protected:
    RedfishOnlySystemTest() { (GetParam() ? option_.is_cfc_system : option_.is_csp_system) = true; }
};

TEST_P(RedfishOnlySystemTest, IsScannedWithoutAskingForRedfishSupport) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "AMI", one_identity_);
    EXPECT_EQ(Scan().code, 0);
}

TEST_P(RedfishOnlySystemTest, NeverFallsBackToCim) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFailsOver(rest_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
}

TEST_P(RedfishOnlySystemTest, FailedFetchBecomesAListFailure) {
    RestFetchGives(refused_, {rest_});
    SystemCheckIsMade();
    ExpectListFailure(Scan());
}

TEST_P(RedfishOnlySystemTest, EmptyListIsAListFailure) {
    RestFetchGives(ok_, {});
    SystemCheckIsMade();
    ExpectListFailure(Scan());
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
}

INSTANTIATE_TEST_SUITE_P(CfcOrCsp, RedfishOnlySystemTest, testing::Bool(),
                         [](const auto& cfc) { return cfc.param ? "Cfc" : "Csp"; });

// ---- CIM
// ------------------------------------------------------------------------------------------------

TEST_F(BmcOutOfBandScanTest, FailedRedfishFetchFallsBackToCim) {
    const testing::InSequence in_sequence;
    RestFetchGives(refused_, {});
    SystemCheckIsMade();
    CimFetchGives(ok_, {cim_});
    ScanFinds(cim_, "Ossa", one_identity_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_TRUE(log_.Has(3, "Try cim scan."));
    EXPECT_FALSE(log_.Has(3, "Try scan via redfish."));
}

TEST_F(BmcOutOfBandScanTest, FailedRedfishScanFallsBackToCim) {
    const testing::InSequence in_sequence;
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    MachineTypeIs(rest_, TIMEOUT, "", "");
    ReleaseNameIs("winter");
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    ScanFinds(cim_, "Ossa", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetBmcReleaseName(), "");
}

TEST_F(BmcOutOfBandScanTest, LegacyRefusalOverRedfishFallsBackToCimToo) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    MachineTypeIs(rest_, 0, "OLD-1", "");
    LegacyListAnswers("OLD-1", 1);
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    ScanFinds(cim_, "Ossa", one_identity_);
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(BmcOutOfBandScanTest, InfoOnlyFallsBackToCimToo) {
    option_.info_only = true;
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFailsOver(rest_);
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    MachineTypeIs(cim_, 0, "MT-1", "SN-1");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScanCount(), 0);
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(BmcOutOfBandScanTest, EmptyRedfishListCountsAsNotSupported) {
    RestFetchGives(ok_, {});
    SystemCheckIsMade();
    CimFetchGives(ok_, {cim_});
    ScanFinds(cim_, "Ossa", one_identity_);
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(BmcOutOfBandScanTest, FailedCimFetchIsReturnedAsItIs) {
    RestFetchGives(refused_, {});
    SystemCheckIsMade();
    CimFetchGives(TarselResult(CONNECTION_FAILED, "no CIM service"), {cim_});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "no CIM service");
    EXPECT_FALSE(log_.Has(3, "Try cim scan."));
}

TEST_F(BmcOutOfBandScanTest, EmptyCimListIsAListFailure) {
    RestFetchGives(refused_, {});
    SystemCheckIsMade();
    CimFetchGives(ok_, {});
    ExpectListFailure(Scan());
}

TEST_F(BmcOutOfBandScanTest, FailedCimScanIsReturnedAsItIs) {
    RestFetchGives(refused_, {});
    SystemCheckIsMade();
    CimFetchGives(ok_, {cim_, support::AConnection(2, 5990)});
    ScanFailsOver(cim_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
}

TEST_F(BmcOutOfBandScanTest, RedfishConnectionsAreGivenUpBeforeCimIsAsked) {
    ConnectionInfo held = rest_;
    held.channel = std::make_shared<int>(1);
    const std::weak_ptr<void> channel = held.channel;
    RestFetchGives(ok_, {held});
    SystemCheckIsMade();
    RedfishIsSupported(false);
    IsTavroV3(false);
    // The scripted list above keeps a copy of its own.
    const long scripted_copies = channel.use_count();
    EXPECT_CALL(platform_, FetchCIMConnectionList(_, IsEmpty())).WillOnce([&](const auto&, auto&) {
        EXPECT_LE(channel.use_count(), scripted_copies);
        return refused_;
    });
    EXPECT_EQ(Scan().code, AUTHENTICATION_FAILED);
}

// ---- third-generation Tavro
// ---------------------------------------------------------------------------------

TEST_F(BmcOutOfBandScanTest, ThirdGenerationTavroReturnsTheRedfishFailure) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFailsOver(rest_);
    IsTavroV3(true);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "Timeout.");
}

TEST_F(BmcOutOfBandScanTest, ThirdGenerationTavroWithoutRedfishSucceedsWithNothingScanned) {
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(false);
    IsTavroV3(true);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "fetched");
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(BmcOutOfBandScanTest, FailedFetchWithAConnectionIsStillTestedForTavro) {
    RestFetchGives(refused_, {rest_});
    SystemCheckIsMade();
    IsTavroV3(true);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
}

// ---- operating system and architecture
// ------------------------------------------------------------------------

TEST_F(BmcOutOfBandScanTest, OperatingSystemIsNoneAfterSuccess) {
    report_.SetOS("before");
    report_.SetArch("before");
    RestFetchGives(ok_, {rest_});
    SystemCheckIsMade();
    RedfishIsSupported(true);
    SwitchProbeAnswers(false);
    ReleaseNameIs("");
    ScanFinds(rest_, "Tavro", one_identity_);
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
}

TEST_F(BmcOutOfBandScanTest, OperatingSystemIsNoneBeforeAnythingIsFetched) {
    SystemCheckIsMade();
    EXPECT_CALL(platform_, GetRESTConnectionList(_, _)).WillOnce([&](const auto&, auto&) {
        EXPECT_EQ(report_.GetOS(), "None");
        EXPECT_EQ(report_.GetArch(), "None");
        EXPECT_TRUE(log_.Has(3, "Start BMC inventorying..."));
        return refused_;
    });
    CimFetchGives(refused_, {});
    EXPECT_EQ(Scan().code, AUTHENTICATION_FAILED);
    EXPECT_EQ(report_.GetOS(), "None");
}

}  // namespace
}  // namespace service::detail
