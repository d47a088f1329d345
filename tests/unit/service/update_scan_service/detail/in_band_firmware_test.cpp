#include "service/update_scan_service/detail/in_band_firmware.h"

#include <string>
#include <vector>

#include "service/update_scan_service/detail/device_list_file.h"
#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::HasUser;
using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

class InBandFirmwareTest : public support::BmcScanTestBase {
  protected:
    TarselResult Read(const std::string& bmc_type) {
        InBandFirmware firmware(option_, os_, report_);
        const TarselResult result = firmware.Read(bmc_type, identities_);
        redfish_found_something_ = firmware.RedfishFoundSomething();
        return result;
    }

    void RestGives(const TarselResult& result, const ConnectionInfo& connection) {
        EXPECT_CALL(platform_, GetRESTConnection(HasUser("someone"), _))
            .WillOnce(DoAll(SetArgReferee<1>(connection), Return(result)));
        SystemCheckIsMade();
    }
    /// Redfish works; its inventory gives `identities`.
    void RedfishGives(int code, const Identities& identities) {
        RestGives(ok_, rest_);
        RedfishIsSupported(true);
        ReleaseNameIs("winter");
        InventoryGives(rest_, code, identities);
    }
    void MemoryOverRedfishGives(const Identities& modules) {
        EXPECT_CALL(platform_, PmemGetSoftwareIdentity(IsConnection(rest_), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(modules), Return(0)));
    }
    void LocalMemoryGives(const Identities& modules) {
        EXPECT_CALL(platform_, PmemGetSoftwareIdentity(testing::A<Identities&>()))
            .WillOnce(DoAll(SetArgReferee<0>(modules), Return(0)));
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& identity : identities_) names.push_back(identity.Name);
        return names;
    }

    const Identities uefi_ = {AnIdentity().Name("UEFI")};
    const Identities nic_ = {AnIdentity().Name("NIC")};
    const Identities memory_ = {AnIdentity().Name("memory")};
    const TarselResult closed_{CONNECTION_FAILED, "nobody there"};
    std::string os_ = "rhel9";
    Identities identities_;
    bool redfish_found_something_ = false;
};

// ---- Tavro over Redfish

TEST_F(InBandFirmwareTest, IdentitiesOverRedfishAreEnough) {
    const testing::InSequence in_sequence;
    RedfishGives(0, uefi_);
    const TarselResult result = Read("Tavro");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "Succeed.");
    EXPECT_THAT(Names(), ElementsAre("UEFI"));
    EXPECT_TRUE(redfish_found_something_);
    EXPECT_EQ(report_.GetBmcReleaseName(), "winter");
}

TEST_F(InBandFirmwareTest, RedfishReadIsLoggedStepByStep) {
    RedfishGives(60, uefi_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("Rest conn ret:0 fetched", "Redfish scan ret:60"));
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Whitley Redfish valid:1",
                            "Rest connection is available, try to get softwareidentity from "
                            "redfish first."));
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

class TavroSpellingTest : public InBandFirmwareTest,
                          public testing::WithParamInterface<const char*> {};

TEST_P(TavroSpellingTest, CaseOfTheTypeDoesNotMatter) {
    RedfishGives(0, uefi_);
    EXPECT_EQ(Read(GetParam()).code, 0);
}

INSTANTIATE_TEST_SUITE_P(Spellings, TavroSpellingTest, testing::Values("Tavro", "TAVRO", "tavro"));

TEST_F(InBandFirmwareTest, OtherKindOfRedfishConnectionHasNoReleaseName) {
    report_.SetBmcReleaseName("before");
    const ConnectionInfo newer = support::AConnection(10, 4430);
    RestGives(ok_, newer);
    EXPECT_CALL(platform_, IsRedfishSupported(IsConnection(newer))).WillOnce(Return(true));
    InventoryGives(newer, 0, uefi_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_EQ(report_.GetBmcReleaseName(), "before");
}

TEST_F(InBandFirmwareTest, MaintenanceSystemGetsTheDeviceListAsAFile) {
    os_ = "PLATFORM";
    RedfishGives(0, uefi_);
    EXPECT_CALL(platform_, GetInventoryList(IsConnection(rest_)))
        .WillOnce(Return("invented device list\n"));
    EXPECT_CALL(platform_, ReplaceFile("/tmp/devsw.list", "invented device list\n"))
        .WillOnce(Return(true));
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(log_.Texts(4), ElementsAre("devsw.list:invented device list\n"));
}

TEST_F(InBandFirmwareTest, MaintenanceSystemWithoutRedfishGetsNoDeviceList) {
    os_ = "PLATFORM";
    RestGives(ok_, rest_);
    RedfishIsSupported(false);
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, nic_);
    MemoryOverRedfishGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(log_.Texts(4), IsEmpty());
}

TEST_F(InBandFirmwareTest, OtherCaseOfTheMaintenanceSystemIsAnotherSystem) {
    os_ = "Platform";
    RedfishGives(0, uefi_);
    EXPECT_EQ(Read("Tavro").code, 0);
}

// ---- Tavro over CIM

TEST_F(InBandFirmwareTest, EmptyRedfishInventoryGoesOnWithCimButNotWithPersistentMemory) {
    const testing::InSequence in_sequence;
    RedfishGives(0, {});
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, nic_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(Names(), ElementsAre("NIC"));
    EXPECT_FALSE(redfish_found_something_);
}

TEST_F(InBandFirmwareTest, OnlyTheFirstCimConnectionOfATavroIsRead) {
    const testing::InSequence in_sequence;
    RestGives(ok_, rest_);
    RedfishIsSupported(false);
    IsTavroV3(false);
    CimFetchGives(ok_, {cim_, support::AConnection(2, 5990)});
    InventoryGives(cim_, 30, nic_);
    MemoryOverRedfishGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(Names(), ElementsAre("NIC", "memory"));
    EXPECT_THAT(log_.Texts(2), ElementsAre("Rest conn ret:0 fetched", "Cim conn ret:0 fetched",
                                           "Cim scan ret:30"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Whitley Redfish valid:0", "Is Tavro_V3 system:0"));
}

TEST_F(InBandFirmwareTest, FailedRedfishConnectionIsAskedNothing) {
    const testing::InSequence in_sequence;
    RestGives(closed_, rest_);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, nic_);
    LocalMemoryGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(Names(), ElementsAre("NIC", "memory"));
    EXPECT_THAT(log_.Texts(3), ElementsAre("Whitley Redfish valid:0", "Is Tavro_V3 system:0"));
    EXPECT_TRUE(log_.Has(2, "Rest conn ret:13 nobody there"));
}

TEST_F(InBandFirmwareTest, ThirdGenerationIsNeverReadOverCim) {
    RestGives(ok_, rest_);
    RedfishIsSupported(false);
    IsTavroV3(true);
    MemoryOverRedfishGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_TRUE(log_.Has(3, "Is Tavro_V3 system:1"));
    EXPECT_FALSE(log_.Has(2, "Cim conn ret:"));
}

// ---- persistent memory

TEST_F(InBandFirmwareTest, HostIsAskedForMemoryThatRedfishDoesNotTell) {
    const testing::InSequence in_sequence;
    RestGives(ok_, rest_);
    RedfishIsSupported(false);
    IsTavroV3(true);
    MemoryOverRedfishGives({});
    LocalMemoryGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_THAT(Names(), ElementsAre("memory"));
}

TEST_F(InBandFirmwareTest, MissingPersistentMemoryIsLoggedOnly) {
    RestGives(closed_, rest_);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, nic_);
    LocalMemoryGives({});
    EXPECT_EQ(Read("Tavro").code, 0);
    EXPECT_EQ(log_.Texts(2).back(), "There is no AEP fw info");
}

// ---- Tavro that tells nothing

TEST_F(InBandFirmwareTest, FailedCimConnectionIsTheResultWhenNothingWasFound) {
    RestGives(TarselResult(TIMEOUT, "slow"), rest_);
    CimFetchGives(closed_, {cim_});
    LocalMemoryGives({});
    const TarselResult result = Read("Tavro");
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_EQ(result.message, "nobody there");
    EXPECT_TRUE(log_.Has(2, "Cim conn ret:13 nobody there"));
}

TEST_F(InBandFirmwareTest, FailedRedfishConnectionIsTheResultWhenCimWorkedInVain) {
    RestGives(TarselResult(TIMEOUT, "slow"), rest_);
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, {});
    LocalMemoryGives({});
    const TarselResult result = Read("Tavro");
    EXPECT_EQ(result.code, TIMEOUT);
    EXPECT_EQ(result.message, "slow");
}

TEST_F(InBandFirmwareTest, MissingFirmwareIsTheResultWhenBothConnectionsWorked) {
    RedfishGives(0, {});
    IsTavroV3(false);
    CimFetchGives(ok_, {});
    const TarselResult result = Read("Tavro");
    EXPECT_EQ(result.code, 1747);
    EXPECT_EQ(result.message, "Failed to get firmware information.");
}

TEST_F(InBandFirmwareTest, MissingFirmwareIsTheResultOfAThirdGenerationToo) {
    RedfishGives(60, {});
    IsTavroV3(true);
    EXPECT_EQ(Read("Tavro").code, 1747);
}

TEST_F(InBandFirmwareTest, PersistentMemoryAloneIsASuccess) {
    RestGives(closed_, rest_);
    CimFetchGives(closed_, {});
    LocalMemoryGives(memory_);
    EXPECT_EQ(Read("Tavro").code, 0);
}

// ---- other controllers

TEST_F(InBandFirmwareTest, EveryCimConnectionOfAnotherControllerIsRead) {
    const testing::InSequence in_sequence;
    const ConnectionInfo second = support::AConnection(2, 5990);
    CimFetchGives(ok_, {cim_, second});
    InventoryGives(cim_, 0, uefi_);
    InventoryGives(second, 30, nic_);
    const TarselResult result = Read("Ossa2");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "Succeed.");
    EXPECT_THAT(Names(), ElementsAre("UEFI", "NIC"));
    EXPECT_THAT(log_.Texts(2), ElementsAre("Cim scan ret:0", "Cim scan ret:30"));
    EXPECT_FALSE(redfish_found_something_);
}

TEST_F(InBandFirmwareTest, FailedCimConnectionOfAnotherControllerMeansMissingFirmware) {
    CimFetchGives(closed_, {cim_});
    const TarselResult result = Read("Ossa");
    EXPECT_EQ(result.code, 1747);
    EXPECT_EQ(result.message, "Failed to get firmware information.");
    EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(InBandFirmwareTest, EmptyCimInventoryOfAnotherControllerMeansMissingFirmware) {
    CimFetchGives(ok_, {cim_});
    InventoryGives(cim_, 0, {});
    EXPECT_EQ(Read("Ossa").code, 1747);
}

}  // namespace
}  // namespace service::detail
