#include "service/update_scan_service/detail/chassis_scan.h"

#include <string>
#include <vector>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnItem;
using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

TolvInfo AComponent(const std::string& name) {
    return {"MT-" + name, "SN-" + name, "ID-" + name, "1.0", "10", "about " + name, name};
}

class ChassisScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return ChassisScan(option_, report_, nullptr); }

    void InventoryGivesComponents(int code, const std::vector<TolvInfo>& components) {
        EXPECT_CALL(platform_, GetTolvSoftwareIdentity(IsConnection(cim_), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(components), Return(code)));
    }

    void ExpectUntouchedReport() const {
        EXPECT_EQ(report_.GetOS(), "");
        EXPECT_EQ(report_.GetBmcType(), "");
        EXPECT_EQ(report_.GetMT(), "");
        EXPECT_THAT(report_.GetScanResults(), IsEmpty());
    }
};

TEST_F(ChassisScanTest, ThreeComponentsYieldThreeItemsInTheirOrder) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0, {AComponent("a"), AComponent("b"), AComponent("c")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetScanCount(), 3);
    ASSERT_EQ(report_.GetScanResults().size(), 3u);
    EXPECT_EQ(report_.GetScanResults()[0].name, "a");
    EXPECT_EQ(report_.GetScanResults()[1].softwareId, "ID-b");
    EXPECT_EQ(report_.GetScanResults()[2].description, "about c");
}

TEST_F(ChassisScanTest, FactsComeFromTheFirstComponentOnly) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0, {AComponent("a"), AComponent("b")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
    EXPECT_EQ(report_.GetBmcType(), "Tolv");
    EXPECT_EQ(report_.GetMT(), "MT-a");
    EXPECT_EQ(report_.GetScope(), "SN-a");
}

TEST_F(ChassisScanTest, DescriptionLosesLineEndAndTab) {
    TolvInfo component = AComponent("a");
    component.Description = "line\r\tend";
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0, {component});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).description, "lineend");
}

TEST_F(ChassisScanTest, CountLeavesOutWhatTheReportHeldBefore) {
    report_.PushScanItem(AnItem().Name("earlier"));
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0, {AComponent("a")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 1);
    EXPECT_EQ(report_.GetScanResults().size(), 2u);
}

TEST_F(ChassisScanTest, FirstOfSeveralConnectionsIsUsed) {
    CimFetchGives(ok_, {cim_, support::AConnection(2, 5990)});
    InventoryGivesComponents(0, {AComponent("a")});
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(ChassisScanTest, EmptyInventoryIsASuccessWithEmptyFacts) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetBmcType(), "Tolv");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_EQ(report_.GetScope(), "");
    EXPECT_EQ(report_.GetScanCount(), 0);
    EXPECT_THAT(report_.GetScanResults(), IsEmpty());
}

TEST_F(ChassisScanTest, FailedConnectionIsReturnedAsItIs) {
    CimFetchGives(TarselResult(CONNECTION_FAILED, "nobody there"), {cim_});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "nobody there");
    EXPECT_THAT(log_.Traces(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(ChassisScanTest, EmptyConnectionListFailsBeforeTheTrace) {
    CimFetchGives(ok_, {});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get connections list fail."));
    EXPECT_THAT(log_.Traces(), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(ChassisScanTest, FailedInventoryHidesItsCodeFromAllButTheTrace) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0x10012, {AComponent("a")});
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]22:0", "[E]22:18"));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    EXPECT_THAT(log_.Texts(2), IsEmpty());
    ExpectUntouchedReport();
}

TEST_F(ChassisScanTest, ModuleNumberAloneIsNoFailedInventory) {
    CimFetchGives(ok_, {cim_});
    InventoryGivesComponents(0x10000, {AComponent("a")});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 1);
}

TEST_F(ChassisScanTest, TraceEnclosesTheInventory) {
    CimFetchGives(ok_, {cim_});
    EXPECT_CALL(platform_, GetTolvSoftwareIdentity(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]22:0"));
        return 0;
    });
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]22:0", "[E]22:0"));
}

TEST_F(ChassisScanTest, StartIsLoggedBeforeTheConnection) {
    EXPECT_CALL(platform_, FetchCIMConnectionList(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_THAT(log_.Texts(3), ElementsAre("Start Tolv inventorying..."));
        return TarselResult(TIMEOUT, "");
    });
    EXPECT_EQ(Scan().code, TIMEOUT);
}

}  // namespace
}  // namespace service::detail
