#include "service/update_scan_service/detail/target_system_info.h"

#include <utility>

#include "support/target_system_info_test_base.h"

namespace service::detail {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::Return;

using TargetSystemInfoTest = support::TargetSystemInfoTestBase;

// ---- operating system

TEST_F(TargetSystemInfoTest, FailedOsInfoEndsEverything) {
    info_.redfish_supported = true;
    OsInfoGives(0x1006F);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0x1006F);
    EXPECT_EQ(result.message, "Failed to get OS type.");
    EXPECT_THAT(log_.Texts(2),
                ElementsAre("Failed to get OS info with error is 111 Failed to get OS type."));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:111"));
    EXPECT_FALSE(info_.redfish_supported);
}

TEST_F(TargetSystemInfoTest, TraceEnclosesOsInfo) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "Ossa";
    EXPECT_CALL(platform_, GetOSInfo(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0"));
        return 0;
    });
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0"));
}

TEST_F(TargetSystemInfoTest, OsInfoIsReadEvenWhenAllElseIsKnown) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "Ossa";
    OsInfoGives(0);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.os_arch.first, "rhel9");
    EXPECT_EQ(info_.os_arch.second, "x86_64");
    EXPECT_EQ(info_.os_minor_version, "4");
}

// ---- known beforehand

class KnownTypesTest : public TargetSystemInfoTest,
                       public testing::WithParamInterface<std::pair<const char*, bool>> {};

TEST_P(KnownTypesTest, NothingIsProbedAndRedfishFollowsFromTheTypeAlone) {
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = GetParam().first;
    info_.redfish_supported = !GetParam().second;
    OsInfoGives(0);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(info_.redfish_supported, GetParam().second);
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
}

INSTANTIATE_TEST_SUITE_P(Types, KnownTypesTest,
                         testing::Values(std::make_pair("Tavro", true),
                                         std::make_pair("TAVRO", false),
                                         std::make_pair("Ossa2", false)));

TEST_F(TargetSystemInfoTest, KnownTypesAreNotProbedForDriversEither) {
    option_.scan_type = "dd";
    info_.mt_sn.first = "MT-1";
    info_.bmc_type = "AMI";
    OsInfoGives(0);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(TargetSystemInfoTest, KnownMachineTypeAloneIsKept) {
    info_.mt_sn.first = "MT-0";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    BmcTypeIs(rest_, "Tavro");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.mt_sn.first, "MT-0");
    EXPECT_FALSE(log_.Has(3, "Finished to get machine type"));
}

TEST_F(TargetSystemInfoTest, KnownBmcTypeAloneIsKept) {
    info_.bmc_type = "Ossa";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    MachineTypeIs(rest_, 0, "MT-1", "SN-1");
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "Ossa");
    EXPECT_TRUE(info_.redfish_supported);
}

// ---- drivers only

class DriversOnlyInfoTest : public TargetSystemInfoTest {
  protected:
    DriversOnlyInfoTest() { option_.scan_type = "dd"; }

    void MachineTypeAndListsAre(bool cfc, bool amd, bool grantly) {
        OsInfoGives(0);
        MachineTypeIs(local_, 0, "MT-1", "SN-1");
        SystemCheckIsMade();
        EXPECT_CALL(platform_, IsCFCSystem("MT-1")).WillOnce(Return(cfc));
        if (cfc) return;
        EXPECT_CALL(platform_, IsAMDSystem("MT-1")).WillOnce(Return(amd));
        if (amd) return;
        EXPECT_CALL(platform_, IsGrantlySystem("MT-1")).WillOnce(Return(grantly));
    }
};

TEST_F(DriversOnlyInfoTest, ListsAreAskedInAFixedOrderAndNoConnectionIsOpened) {
    const testing::InSequence in_sequence;
    MachineTypeAndListsAre(false, false, false);
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(info_.mt_sn.first, "MT-1");
    EXPECT_EQ(info_.mt_sn.second, "SN-1");
    EXPECT_EQ(info_.bmc_type, "Tavro");
    EXPECT_FALSE(info_.redfish_supported);
}

TEST_F(DriversOnlyInfoTest, CfcListedMachineIsAmiWhateverElseListsIt) {
    MachineTypeAndListsAre(true, true, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(DriversOnlyInfoTest, AmdListedMachineIsAmi) {
    MachineTypeAndListsAre(false, true, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "AMI");
}

TEST_F(DriversOnlyInfoTest, GrantlyListedMachineIsOssa2) {
    MachineTypeAndListsAre(false, false, true);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_EQ(info_.bmc_type, "Ossa2");
}

TEST_F(DriversOnlyInfoTest, LogAndTraceTellBothOutcomes) {
    MachineTypeAndListsAre(true, false, false);
    EXPECT_EQ(Acquire().code, 0);
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Finished to get machine type with bool:1Machine type:MT-1",
                            "Finished to get bmc type with bool:1"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:0"));
}

TEST_F(DriversOnlyInfoTest, FailedMachineTypeIsAnInternalErrorNotItsOwnCode) {
    OsInfoGives(0);
    MachineTypeIs(local_, TIMEOUT, "MT-left-behind", "");
    SystemCheckIsMade();
    EXPECT_CALL(platform_, IsCFCSystem("")).WillOnce(Return(false));
    EXPECT_CALL(platform_, IsAMDSystem("")).WillOnce(Return(false));
    EXPECT_CALL(platform_, IsGrantlySystem("")).WillOnce(Return(false));
    const TarselResult result = Acquire();
    EXPECT_EQ(result.code, INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Failed to get system info");
    EXPECT_TRUE(log_.Has(3, "Finished to get machine type with bool:0Machine type:"));
    EXPECT_TRUE(log_.Has(3, "Finished to get bmc type with bool:1"));
    EXPECT_THAT(log_.TraceSteps(), ElementsAre("[B]14:0", "[E]14:0", "[B]15:0", "[E]15:18"));
}

TEST_F(DriversOnlyInfoTest, OtherSpellingWalksTheConnections) {
    option_.scan_type = "DD";
    WalkBegins();
    RestFetchGives(ok_, {rest_});
    RedfishIsSupported(true);
    TypesAre(rest_, "MT-1", "Tavro");
    EXPECT_EQ(Acquire().code, 0);
}

}  // namespace
}  // namespace service::detail
