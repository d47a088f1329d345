// What tests of scans through a management controller script again and again. Every call that a
// test does not script fails it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/result/result_codes.h"
#include "doubles/log_double.h"
#include "doubles/platform_double.h"
#include "service/update_scan_service/update_scan_option.h"
#include "support/builders.h"

namespace support {

MATCHER_P(IsConnection, expected, "") {
    return arg.connect_case == expected.connect_case && arg.port == expected.port;
}

MATCHER_P(HasUser, user, "") {
    return arg.user == user;
}

class BmcScanTestBase : public testing::Test {
  protected:
    using Connections = doubles::PlatformDouble::Connections;
    using Identities = doubles::PlatformDouble::Identities;
    using ConnectionInfo = Vantix::VantixConnection::ConnectionInfo;

    BmcScanTestBase() { option_.connect_option.user = "someone"; }

    // What each function scripts is said by its name; every one expects exactly one call.
    void RestFetchGives(const TarselResult& result, const Connections& connections) {
        EXPECT_CALL(platform_, GetRESTConnectionList(HasUser("someone"), testing::IsEmpty()))
            .WillOnce(
                testing::DoAll(testing::SetArgReferee<1>(connections), testing::Return(result)));
    }

    void CimFetchGives(const TarselResult& result, const Connections& connections) {
        EXPECT_CALL(platform_, FetchCIMConnectionList(HasUser("someone"), testing::IsEmpty()))
            .WillOnce(
                testing::DoAll(testing::SetArgReferee<1>(connections), testing::Return(result)));
    }

    void SystemCheckIsMade() {
        EXPECT_CALL(platform_, GetModuleDirectory()).WillOnce(testing::Return("lists/"));
        EXPECT_CALL(platform_,
                    SystemCheckConstructor(
                        "lists/Orvane_systems_list.txt", "lists/AMD_systems_list.txt",
                        "lists/CFC_systems_list.txt", "lists/CSP_systems_list.txt",
                        "lists/Grantly_systems_list.txt", "lists/NO_BMC_systems_list.txt"));
    }

    void RedfishIsSupported(bool supported) {
        EXPECT_CALL(platform_, IsRedfishSupported(IsConnection(rest_)))
            .WillOnce(testing::Return(supported));
    }

    void IsTavroV3(bool is_v3) {
        EXPECT_CALL(platform_, IsTavroV3(IsConnection(rest_))).WillOnce(testing::Return(is_v3));
    }

    void SwitchProbeAnswers(bool exists) {
        EXPECT_CALL(platform_, RedfishBroadComSwitchConstructor(IsConnection(rest_)));
        EXPECT_CALL(platform_, ExistUpdateableBroadcomSwitchDownStream(IsConnection(rest_)))
            .WillOnce(testing::Return(exists));
    }

    void MachineTypeIs(const ConnectionInfo& connection, int code, const std::string& machine_type,
                       const std::string& serial_number) {
        EXPECT_CALL(platform_, GetMachineType(IsConnection(connection), testing::_))
            .WillOnce(testing::DoAll(
                testing::SetArgReferee<1>(std::make_pair(machine_type, serial_number)),
                testing::Return(code)));
    }

    void ReleaseNameIs(const std::string& name) {
        EXPECT_CALL(platform_, GetReleaseName(IsConnection(rest_))).WillOnce(testing::Return(name));
    }

    void LegacyListAnswers(const std::string& machine_type, int answer) {
        EXPECT_CALL(platform_, IsBlueSystem(machine_type)).WillOnce(testing::Return(answer));
    }

    void BmcTypeIs(const ConnectionInfo& connection, const std::string& text) {
        BmcTypeCodeIs(connection, 0, 4);
        EXPECT_CALL(platform_, OssaTypeToString(4)).WillOnce(testing::Return(text));
    }

    void BmcTypeCodeIs(const ConnectionInfo& connection, int code, int type) {
        EXPECT_CALL(platform_, OssaTypeAcquireConstructor(IsConnection(connection)));
        EXPECT_CALL(platform_, GetOssaType(IsConnection(connection), testing::Eq(0)))
            .WillOnce(testing::DoAll(testing::SetArgReferee<1>(type), testing::Return(code)));
    }

    void EstimateIs(const std::string& machine_type, int seconds) {
        EXPECT_CALL(platform_, GetScanOOBTimeEstimation("None_None", machine_type))
            .WillOnce(testing::Return(seconds));
    }

    void InventoryGives(const ConnectionInfo& connection, int code, const Identities& identities) {
        EXPECT_CALL(platform_, AgentlessSoftwareIdentityConstructor(IsConnection(connection)));
        EXPECT_CALL(platform_,
                    GetPLDMSoftwareIdentities(IsConnection(connection), testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<1>(identities), testing::Return(code)));
    }

    /// A whole scan of machine type "MT-1", serial number "SN-1", over `connection`.
    void ScanFinds(const ConnectionInfo& connection, const std::string& bmc_type,
                   const Identities& identities) {
        MachineTypeIs(connection, 0, "MT-1", "SN-1");
        LegacyListAnswers("MT-1", 0);
        BmcTypeIs(connection, bmc_type);
        EstimateIs("MT-1", 60);
        InventoryGives(connection, 0, identities);
    }

    /// A scan over `connection` that ends at its first question, with code 18.
    void ScanFailsOver(const ConnectionInfo& connection) {
        MachineTypeIs(connection, TIMEOUT, "", "");
    }

    const ConnectionInfo rest_ = AConnection(Vantix::VantixConnection::kConnectCaseRest, 4430);
    const ConnectionInfo cim_ = AConnection(Vantix::VantixConnection::kConnectCaseCim, 5989);
    const TarselResult ok_{0, "fetched"};
    doubles::LogCapture log_;
    doubles::StrictPlatform platform_;
    service::UpdateScanOption option_;
    service::UpdateScanReport report_;
};

}  // namespace support
