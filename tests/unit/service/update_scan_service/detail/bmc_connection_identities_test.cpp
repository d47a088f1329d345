// What a scan over one connection does with the identities that it reads.
#include "service/update_scan_service/update_scan_report.h"
#include "support/bmc_connection_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::IsConnection;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

class BmcConnectionIdentitiesTest : public support::BmcConnectionScanTestBase {
  protected:
    /// Scripts all up to the inventory.
    void ReachInventory(const ConnectionInfo& connection, const std::string& bmc_type) {
        MachineTypeIs(connection, 0, "MT-1", "SN-1");
        LegacyListAnswers("MT-1", 0);
        BmcTypeIs(connection, bmc_type);
        EstimateIs("MT-1", 60);
    }

    void PersistentMemoryGives(const Identities& modules) {
        EXPECT_CALL(platform_, PmemGetSoftwareIdentity(IsConnection(rest_), IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<1>(modules), Return(0)));
    }
};

TEST_F(BmcConnectionIdentitiesTest, ReturnCodeOfTheInventoryIsOnlyLogged) {
    ReleaseNameIs("");
    ReachInventory(rest_, "Tavro");
    InventoryGives(rest_, 60, one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_TRUE(log_.Has(3, "Agentless SoftwareIdentity ret:60 with connect case:5"));
    EXPECT_THAT(log_.TraceSteps(), testing::Contains("[E]21:0"));
}

TEST_F(BmcConnectionIdentitiesTest, NoIdentityFailsWithoutAMessage) {
    ReleaseNameIs("");
    ReachInventory(rest_, "Tavro");
    InventoryGives(rest_, 0, {});
    const TarselResult result = Scan(rest_);
    EXPECT_EQ(result.code, 1747);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get GetPLDMSoftwareIdentities",
                                           "Failed to get scan with connect case:5"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]15:0", "[E]15:0", "[B]21:0", "[E]21:1747"));
}

TEST_F(BmcConnectionIdentitiesTest, NoIdentityLeavesThePlatformFactsAlone) {
    report_.SetScanCount(9);
    ReleaseNameIs("");
    ReachInventory(rest_, "Tavro");
    InventoryGives(rest_, 0, {});
    EXPECT_EQ(Scan(rest_).code, 1747);
    EXPECT_EQ(report_.GetBmcType(), "");
    EXPECT_EQ(report_.GetMT(), "");
    EXPECT_EQ(report_.GetScanCount(), 9);
}

TEST_F(BmcConnectionIdentitiesTest, OrdinarySystemKeepsVersionsAsReported) {
    ReleaseNameIs("");
    ReachInventory(rest_, "Tavro");
    InventoryGives(rest_, 0, {AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1.0")});
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "BMC-BMCImage1-1.0");
}

TEST_F(BmcConnectionIdentitiesTest, CfcSystemHasEveryVersionNormalised) {
    option_.is_cfc_system = true;
    ReleaseNameIs("");
    ReachInventory(rest_, "AMI");
    InventoryGives(rest_, 0,
                   {AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1.0"),
                    AnIdentity().SoftwareId("FPGA").Version("CPLD-2")});
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "BMCImage1-1.0");
    EXPECT_EQ(report_.GetScanResults().at(1).version, "2");
}

TEST_F(BmcConnectionIdentitiesTest, CspSystemHasEveryVersionNormalised) {
    option_.is_csp_system = true;
    ReleaseNameIs("");
    ReachInventory(rest_, "AMI");
    InventoryGives(rest_, 0,
                   {AnIdentity().SoftwareId("BMC").Version("BMCImage1-1.0"),
                    AnIdentity().SoftwareId("UEFI").Name("UEFI").Version("BIOSImage1-2")});
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "1.0");
    EXPECT_EQ(report_.GetScanResults().at(1).name, "BIOSImage1");
}

TEST_F(BmcConnectionIdentitiesTest, CfcNormalisationComesBeforeThatOfCsp) {
    option_.is_cfc_system = true;
    option_.is_csp_system = true;
    ReleaseNameIs("");
    ReachInventory(rest_, "AMI");
    InventoryGives(rest_, 0, {AnIdentity().SoftwareId("BMC").Version("BMC-BMCImage1-1.0")});
    EXPECT_EQ(Scan(rest_).code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "1.0");
}

// ---- persistent memory
// -----------------------------------------------------------------------------------

TEST_F(BmcConnectionIdentitiesTest, CimScanOfTavroAsksForPersistentMemory) {
    const testing::InSequence in_sequence;
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, one_identity_);
    RestFetchGives(ok_, {rest_, support::AConnection(5, 4431)});
    PersistentMemoryGives({AnIdentity().Name("pmem")});
    EXPECT_EQ(Scan(cim_).code, 0);
    ASSERT_EQ(report_.GetScanResults().size(), 2u);
    EXPECT_EQ(report_.GetScanResults()[1].name, "pmem");
    EXPECT_EQ(report_.GetScanCount(), 2);
}

TEST_F(BmcConnectionIdentitiesTest, PersistentMemoryLiesInsideTheTraceBracket) {
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, one_identity_);
    RestFetchGives(ok_, {rest_});
    EXPECT_CALL(platform_, PmemGetSoftwareIdentity(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_EQ(log_.TraceSteps().back(), "[B]21:0");
        return 0;
    });
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_EQ(log_.TraceSteps().back(), "[E]21:0");
}

TEST_F(BmcConnectionIdentitiesTest, PersistentMemoryRescuesAnEmptyInventory) {
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 60, {});
    RestFetchGives(ok_, {rest_});
    PersistentMemoryGives({AnIdentity().Name("pmem")});
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_EQ(report_.GetScanCount(), 1);
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get GetPLDMSoftwareIdentities"));
}

TEST_F(BmcConnectionIdentitiesTest, MissingPersistentMemoryIsLoggedOnly) {
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, one_identity_);
    RestFetchGives(ok_, {rest_});
    PersistentMemoryGives({});
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_THAT(log_.Texts(1), ElementsAre("Failed to get Ossa AEP driver."));
}

TEST_F(BmcConnectionIdentitiesTest, MissingRedfishForPersistentMemoryIsSilent) {
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, one_identity_);
    RestFetchGives(TarselResult(CONNECTION_FAILED, "nobody answers"), {rest_});
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_THAT(log_.Texts(1), IsEmpty());
    EXPECT_THAT(log_.Texts(2), IsEmpty());
}

TEST_F(BmcConnectionIdentitiesTest, EmptyRedfishListForPersistentMemoryIsSilent) {
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, one_identity_);
    RestFetchGives(ok_, {});
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(BmcConnectionIdentitiesTest, OtherSpellingOfTavroHasNoPersistentMemory) {
    ReachInventory(cim_, "TAVRO");
    InventoryGives(cim_, 0, one_identity_);
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_EQ(report_.GetBmcType(), "TAVRO");
}

TEST_F(BmcConnectionIdentitiesTest, RedfishScanOfTavroAsksForNoPersistentMemory) {
    ReleaseNameIs("");
    ReachInventory(rest_, "Tavro");
    InventoryGives(rest_, 0, one_identity_);
    EXPECT_EQ(Scan(rest_).code, 0);
}

TEST_F(BmcConnectionIdentitiesTest, PersistentMemoryIsNeverNormalised) {
    option_.is_cfc_system = true;
    ReachInventory(cim_, "Tavro");
    InventoryGives(cim_, 0, {AnIdentity().SoftwareId("BMC").Version("BMC-1")});
    RestFetchGives(ok_, {rest_});
    PersistentMemoryGives({AnIdentity().SoftwareId("BMC").Version("BMC-1")});
    EXPECT_EQ(Scan(cim_).code, 0);
    EXPECT_EQ(report_.GetScanResults().at(0).version, "1");
    EXPECT_EQ(report_.GetScanResults().at(1).version, "BMC-1");
}

}  // namespace
}  // namespace service::detail
