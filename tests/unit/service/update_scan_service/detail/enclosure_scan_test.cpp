#include "service/update_scan_service/detail/enclosure_scan.h"

#include <string>
#include <vector>

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::AnIdentity;
using support::AnItem;
using support::HasUser;
using support::IsConnection;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

constexpr auto kFine = Vantix::VESK_INVENTORY_SUCCESS;
constexpr auto kBroken = Vantix::VESK_INVENTORY_FAILED;

class EnclosureScanTest : public support::BmcScanTestBase {
  protected:
    TarselResult Scan() { return EnclosureScan(option_, report_, nullptr); }

    void RestGives(const TarselResult& result, const ConnectionInfo& connection) {
        EXPECT_CALL(platform_, GetRESTConnection(HasUser("someone"), IsConnection(nowhere_)))
            .WillOnce(DoAll(SetArgReferee<1>(connection), Return(result)));
    }
    void HttpsGives(const TarselResult& result, const ConnectionInfo& connection) {
        EXPECT_CALL(platform_, FetchVeskHttpsConnection(HasUser("someone"), _))
            .WillOnce(DoAll(SetArgReferee<1>(connection), Return(result)));
    }
    void IpmiGives(const TarselResult& result, const ConnectionInfo& connection) {
        EXPECT_CALL(platform_, FetchIPMIConnection(HasUser("someone"), _))
            .WillOnce(DoAll(SetArgReferee<1>(connection), Return(result)));
    }

    void MachineTypeGives(const ConnectionInfo& connection, Vantix::VeskInventoryErrorCode code) {
        EXPECT_CALL(platform_, VeskInventoryConstructor(IsConnection(connection)));
        EXPECT_CALL(platform_, VeskGetMachineType(IsConnection(connection), IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>("MT-1"), Return(code)));
    }
    void SerialNumberGives(Vantix::VeskInventoryErrorCode code, const std::string& text) {
        EXPECT_CALL(platform_, VeskGetSerialNumber(_, IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(text), Return(code)));
    }
    void SuppliesGive(Vantix::VeskInventoryErrorCode code, const std::vector<PSUFwInfo>& list) {
        EXPECT_CALL(platform_, VeskGetPSUFwInfo(_, IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(list), Return(code)));
    }
    void VersionGives(Vantix::VeskInventoryErrorCode code, const std::string& text) {
        EXPECT_CALL(platform_, VeskGetFirmwareVersion(_, IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<1>(text), Return(code)));
    }
    void IdentitiesGive(int code, const Identities& identities) {
        EXPECT_CALL(platform_, AgentlessSoftwareIdentityConstructor(IsConnection(newer_)));
        EXPECT_CALL(platform_, GetSoftwareIdentities(IsConnection(newer_), IsEmpty(), true))
            .WillOnce(DoAll(SetArgReferee<1>(identities), Return(code)));
    }

    /// All up to the power supplies works, over the classic Redfish connection.
    void ReachFirmware(const std::vector<PSUFwInfo>& supplies) {
        RestGives(ok_, rest_);
        MachineTypeGives(rest_, kFine);
        SerialNumberGives(kFine, "SN-1");
        SuppliesGive(kFine, supplies);
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const UpdateScanItem& item : report_.GetScanResults()) names.push_back(item.name);
        return names;
    }

    const ConnectionInfo nowhere_;
    const ConnectionInfo newer_ = support::AConnection(10, 4431);
    const ConnectionInfo ipmi_ = support::AConnection(1, 623);
    const TarselResult refused_{AUTHENTICATION_FAILED, "refused"};
    const PSUFwInfo supply_{"maker", "PSU-ID", "7.1", "3", "Supply 3"};
};

// ---- connection

TEST_F(EnclosureScanTest, RedfishIsTheOnlyAttemptWhenItSucceeds) {
    ReachFirmware({});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(EnclosureScanTest, OwnHttpsServiceFollowsAFailedRedfish) {
    const testing::InSequence in_sequence;
    const ConnectionInfo https = support::AConnection(0, 8443);
    RestGives(refused_, nowhere_);
    HttpsGives(ok_, https);
    MachineTypeGives(https, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kFine, {});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(EnclosureScanTest, ModuleReachedThroughIpmiAloneIsScanned) {
    const testing::InSequence in_sequence;
    RestGives(refused_, nowhere_);
    HttpsGives(refused_, nowhere_);
    IpmiGives(ok_, ipmi_);
    MachineTypeGives(ipmi_, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kFine, {supply_});
    VersionGives(kBroken, "");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_THAT(Names(), ElementsAre("Supply 3"));
}

TEST_F(EnclosureScanTest, LastConnectionResultIsReturnedAndTheReportStays) {
    report_.SetOS("before");
    report_.SetScanCount(9);
    RestGives(refused_, rest_);
    HttpsGives(TarselResult(TIMEOUT, "slow"), rest_);
    IpmiGives(TarselResult(IPMI_SESSION_FAILED, "no session"), ipmi_);
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, IPMI_SESSION_FAILED);
    EXPECT_EQ(result.message, "no session");
    EXPECT_EQ(report_.GetOS(), "before");
    EXPECT_EQ(report_.GetScanCount(), 9);
}

TEST_F(EnclosureScanTest, ModuleNumberAloneIsNoFailedConnection) {
    RestGives(TarselResult(0x10000, ""), rest_);
    MachineTypeGives(rest_, kFine);
    SerialNumberGives(kFine, "");
    SuppliesGive(kFine, {});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
}

// ---- facts

TEST_F(EnclosureScanTest, ModuleIsAskedInAFixedOrder) {
    const testing::InSequence in_sequence;
    ReachFirmware({});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
}

TEST_F(EnclosureScanTest, SuccessFillsTheFactsAndHasNoMessage) {
    ReachFirmware({supply_});
    VersionGives(kFine, "1.0");
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.message, "");
    EXPECT_EQ(report_.GetOS(), "None");
    EXPECT_EQ(report_.GetArch(), "None");
    EXPECT_EQ(report_.GetBmcType(), "Vesk");
    EXPECT_EQ(report_.GetMT(), "MT-1");
    EXPECT_EQ(report_.GetScope(), "SN-1");
    EXPECT_EQ(report_.GetScanCount(), 2);
}

TEST_F(EnclosureScanTest, UnreadableMachineTypeEndsTheScanWithoutAMessage) {
    report_.SetOS("before");
    RestGives(ok_, rest_);
    MachineTypeGives(rest_, static_cast<Vantix::VeskInventoryErrorCode>(7));
    const TarselResult result = Scan();
    EXPECT_EQ(result.code, GENERIC_FAILURE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get Vesk MT failed with error code:7"));
    EXPECT_EQ(report_.GetOS(), "before");
    EXPECT_EQ(report_.GetMT(), "");
}

TEST_F(EnclosureScanTest, UnreadableSerialNumberIsNoFailure) {
    RestGives(ok_, rest_);
    MachineTypeGives(rest_, kFine);
    SerialNumberGives(kBroken, "");
    SuppliesGive(kFine, {});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScope(), "");
}

TEST_F(EnclosureScanTest, FactsAreWrittenAfterTheInventory) {
    RestGives(ok_, rest_);
    MachineTypeGives(rest_, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kFine, {supply_});
    EXPECT_CALL(platform_, VeskGetFirmwareVersion(_, _)).WillOnce([&](auto&, auto&) {
        EXPECT_EQ(report_.GetMT(), "");
        EXPECT_EQ(report_.GetOS(), "");
        EXPECT_THAT(Names(), ElementsAre("Supply 3"));  // items come while the scan goes on
        return kBroken;
    });
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetMT(), "MT-1");
}

TEST_F(EnclosureScanTest, CountIsTheLengthOfTheWholeList) {
    report_.PushScanItem(AnItem().Name("earlier"));
    ReachFirmware({supply_});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(EnclosureScanTest, NeitherTraceNorProgressBarIsUsed) {
    ReachFirmware({});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Traces(), IsEmpty());
    EXPECT_THAT(log_.Texts(3), ElementsAre("Start Vesk inventorying..."));
}

// ---- power supplies

TEST_F(EnclosureScanTest, PowerSupplyItemHasItsOwnSlotTypeAndFlag) {
    ReachFirmware({supply_});
    VersionGives(kBroken, "");
    EXPECT_EQ(Scan().code, 0);
    ASSERT_EQ(report_.GetScanResults().size(), 1u);
    const UpdateScanItem& item = report_.GetScanResults()[0];
    EXPECT_EQ(item.name, "Supply 3");
    EXPECT_EQ(item.softwareId, "PSU-ID");
    EXPECT_EQ(item.version, "7.1");
    EXPECT_EQ(item.classification, "");
    EXPECT_EQ(item.description, "Supply 3");
    EXPECT_EQ(item.instanceId, "");
    EXPECT_EQ(item.slotNum, "3");
    EXPECT_EQ(item.slotType, "2");
    EXPECT_EQ(item.pldm, "1");
    EXPECT_EQ(item.hasDevice, 1);
}

TEST_F(EnclosureScanTest, PowerSuppliesComeInTheirOrderBeforeTheModule) {
    const PSUFwInfo second{"", "PSU-ID", "7.2", "4", "Supply 4"};
    ReachFirmware({supply_, second});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(Names(), ElementsAre("Supply 3", "Supply 4", "Vesk Firmware"));
    EXPECT_EQ(report_.GetScanResults()[1].slotType, "2");
    EXPECT_EQ(report_.GetScanResults()[1].pldm, "1");
}

TEST_F(EnclosureScanTest, FailedPowerSupplyReadIsLoggedAndItsListStillUsed) {
    RestGives(ok_, rest_);
    MachineTypeGives(rest_, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kBroken, {supply_});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("veskInventory.GetPSUInfo return code:1"));
    EXPECT_THAT(Names(), ElementsAre("Supply 3", "Vesk Firmware"));
}

TEST_F(EnclosureScanTest, GoodPowerSupplyReadIsLoggedToo) {
    ReachFirmware({});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(2), ElementsAre("veskInventory.GetPSUInfo return code:0"));
}

// ---- firmware of the module

TEST_F(EnclosureScanTest, GoodVersionIsLoggedAsFailedAndYieldsOneModuleItem) {
    ReachFirmware({});
    VersionGives(kFine, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get Vesk version failed with error code:0"));
    ASSERT_THAT(Names(), ElementsAre("Vesk Firmware"));
    const UpdateScanItem& item = report_.GetScanResults()[0];
    EXPECT_EQ(item.softwareId, "Vesk");
    EXPECT_EQ(item.version, "1.0");
    EXPECT_EQ(item.description, "Vesk Firmware");
    EXPECT_EQ(item.classification, "");
    EXPECT_EQ(item.pldm, "");
    EXPECT_EQ(item.slotType, "");
    EXPECT_EQ(item.hasDevice, 1);
}

TEST_F(EnclosureScanTest, UnreadableVersionYieldsNoModuleItem) {
    ReachFirmware({});
    VersionGives(kBroken, "1.0");
    EXPECT_EQ(Scan().code, 0);
    EXPECT_THAT(log_.Texts(1), ElementsAre("Get Vesk version failed with error code:1"));
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_EQ(report_.GetScanCount(), 0);
}

TEST_F(EnclosureScanTest, NewerInterfaceReportsIdentitiesInsteadOfTheModuleItem) {
    const testing::InSequence in_sequence;
    RestGives(ok_, newer_);
    MachineTypeGives(newer_, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kFine, {supply_});
    IdentitiesGive(60, {AnIdentity().Name("Vesk3").SoftwareId("VESK3").SlotType(4)});
    EXPECT_EQ(Scan().code, 0);
    ASSERT_THAT(Names(), ElementsAre("Supply 3", "Vesk3"));
    EXPECT_EQ(report_.GetScanResults()[1].slotType, "4");
    EXPECT_EQ(report_.GetScanResults()[1].pldm, "1");
    EXPECT_EQ(report_.GetScanCount(), 2);
    EXPECT_THAT(log_.Texts(1), IsEmpty());
}

TEST_F(EnclosureScanTest, NewerInterfaceWithoutIdentitiesStillSucceeds) {
    RestGives(ok_, newer_);
    MachineTypeGives(newer_, kFine);
    SerialNumberGives(kFine, "SN-1");
    SuppliesGive(kFine, {});
    IdentitiesGive(0, {});
    EXPECT_EQ(Scan().code, 0);
    EXPECT_EQ(report_.GetBmcType(), "Vesk");
    EXPECT_THAT(Names(), IsEmpty());
}

}  // namespace
}  // namespace service::detail
