#include "service/update_scan_service/detail/io_switch_scan.h"

#include <string>
#include <vector>

#include "support/bmc_scan_test_base.h"
#include "support/grouping_locale.h"

namespace service::detail {
namespace {

using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

SwitchInfo ASwitch(const std::string& name) {
    return {"MT-" + name, "SN-" + name, "ID-" + name, "1.0", "10", "about\t" + name, name};
}

class IoSwitchScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return IoSwitchScan(option_, report_, nullptr); }

    void InventoryGivesComponents(const std::string& bay, int code,
                                  const std::vector<SwitchInfo>& components) {
        EXPECT_CALL(platform_, GetSwitchSoftwareIdentity(IsConnection(cim_), bay, IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<2>(components), Return(code)));
    }

    void ExpectUntouchedReport() const {
        EXPECT_EQ(report_.GetOS(), "");
        EXPECT_EQ(report_.GetBmcType(), "");
        EXPECT_EQ(report_.GetMT(), "");
        EXPECT_THAT(report_.GetScanResults(), IsEmpty());
    }
};

TEST_F(IoSwitchScanTest, BayZeroIsPassedAsItsDigit) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("0", 0, {ASwitch("a")});
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(IoSwitchScanTest, BayTwelveIsPassedAsItsDigits) {
    option_.bay_id = 12;
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("12", 0, {ASwitch("a")});
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(IoSwitchScanTest, BayIsNeverGrouped) {
    const test_support::GlobalGroupingLocale grouping;
    option_.bay_id = 1234;
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("1234", 0, {ASwitch("a")});
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(IoSwitchScanTest, TwoComponentsYieldTwoItemsUnderTheChassisType) {
    CimFetchGives(ok_, {cim_, support::AConnection(2, 5990)});
    InventoryGivesComponents("0", 0, {ASwitch("a"), ASwitch("b")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetBmcType(), "Tolv");
    EXPECT_EQ(report_.GetScanCount(), 2);
    ASSERT_EQ(report_.GetScanResults().size(), 2u);
    EXPECT_EQ(report_.GetScanResults()[0].name, "a");
    EXPECT_EQ(report_.GetScanResults()[1].description, "aboutb");
}

TEST_F(IoSwitchScanTest, FactsComeFromTheFirstComponentOnly) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("0", 0, {ASwitch("a"), ASwitch("b")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
    EXPECT_EQ(report_.GetMT(), "MT-a");
    EXPECT_EQ(report_.GetScope(), "SN-a");
}

TEST_F(IoSwitchScanTest, EmptyInventoryIsASuccessWithEmptyFacts) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("0", 0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetBmcType(), "Tolv");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_EQ(report_.GetScanCount(), 0);
}

TEST_F(IoSwitchScanTest, FailedConnectionIsReturnedAsItIs) {
    CimFetchGives(TarselResult(AUTHENTICATION_FAILED, "refused"), {cim_});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(result.message, "refused");
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start IOSwitch inventorying..."));
    EXPECT_THAT(log_.Traces(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(IoSwitchScanTest, EmptyConnectionListFailsBeforeTheTrace) {
    CimFetchGives(ok_, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get connections list fail."));
    EXPECT_THAT(log_.Traces(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(IoSwitchScanTest, FailedInventoryIsLoggedWithCodeAndText) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents("0", TIMEOUT, {ASwitch("a")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1),
                ElementsAre("Failed to GetSwitchSoftwareIdentity with error is 18 Timeout."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]23:0", "[E]23:18"));
    ExpectUntouchedReport();
}

TEST_F(IoSwitchScanTest, TraceEnclosesTheInventory) {
    CimFetchGives(ok_, {cim_});
    EXPECT_CALL(platform_, GetSwitchSoftwareIdentity(_, _, _)).WillOnce([&](auto&, auto&, auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]23:0"));
        return 0;
    });
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]23:0", "[E]23:0"));
}

}  // namespace
}  // namespace service::detail
