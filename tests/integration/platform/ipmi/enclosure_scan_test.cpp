// The scan of an enclosure module as a whole: over its newer interface, over the older HTTPS
// service, and over IPMI alone.
#include <algorithm>

#include "bmc_simulator/bmc_simulator.h"
#include "integration/platform/ipmi/ipmi_test_base.h"
#include "service/update_scan_service/detail/enclosure_scan.h"
#include "service/update_scan_service/update_scan_option.h"
#include "service/update_scan_service/update_scan_report.h"

namespace ipmi_tests {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using test_support::SilentUdpPort;
using testing::HasSubstr;

constexpr const char* kModuleFirmware = "Vesk Firmware";

BmcOptions NewerModule() {
    BmcOptions options;
    options.scenario_dir = std::string(TARSEL_SCENARIOS) + "/enclosure-module";
    return options;
}

/// The same resources, but neither root nor manager says what they belong to, and the login goes
/// with each request.
BmcOptions OlderModule() {
    BmcOptions options = NewerModule();
    options.allow_session = false;
    options.replaced_bodies["/redfish/v1"] =
        R"({"@odata.id":"/redfish/v1/","Id":"RootService","RedfishVersion":"1.2.0",)"
        R"("Chassis":{"@odata.id":"/redfish/v1/Chassis"},)"
        R"("Managers":{"@odata.id":"/redfish/v1/Managers"}})";
    options.replaced_bodies["/redfish/v1/Managers/Module1"] =
        R"({"@odata.id":"/redfish/v1/Managers/Module1","Id":"Module1","Name":"Module",)"
        R"("FirmwareVersion":"3.21"})";
    return options;
}

ConnectOption HttpsOption(const BmcSimulator& module) {
    ConnectOption option;
    option.target_address = "127.0.0.1";
    option.port = module.Port();
    option.ipmi_port = 9;
    option.ca_file = module.CaFile();
    option.user = module.Options().user;
    option.password = module.Options().password;
    return option;
}

class EnclosureScanTest : public testing::Test {
  protected:
    TarselResult Scan(const ConnectOption& connect_option) {
        service::UpdateScanOption option;
        option.connect_option = connect_option;
        return service::detail::EnclosureScan(option, report_, nullptr);
    }

    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (const auto& item : report_.GetScanResults()) names.push_back(item.name);
        return names;
    }
    auto ModuleFirmwareItems() {
        const auto names = Names();
        return std::count(names.begin(), names.end(), kModuleFirmware);
    }

    service::UpdateScanReport report_;
};

TEST_F(EnclosureScanTest, NewerInterfaceGivesPowerSuppliesAndTheInventory) {
    const BmcSimulator module(NewerModule());
    const TarselResult result = Scan(HttpsOption(module));
    ASSERT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(report_.GetMT(), "Example DE400");
    EXPECT_EQ(report_.GetScope(), "EXDE0001");
    const auto items = report_.GetScanResults();
    ASSERT_GT(items.size(), 3U);
    EXPECT_EQ(items[0].slotType, "2");
    EXPECT_EQ(items[0].version, "7.01");
    EXPECT_EQ(items[0].slotNum, "1");
    EXPECT_EQ(ModuleFirmwareItems(), 0);
    EXPECT_EQ(module.Counts().sessions_open, 0);
}

TEST_F(EnclosureScanTest, OlderServiceGivesPowerSuppliesAndThenTheModulesFirmware) {
    const BmcSimulator module(OlderModule());
    const TarselResult result = Scan(HttpsOption(module));
    ASSERT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(report_.GetMT(), "Example DE400");
    const auto items = report_.GetScanResults();
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0].pldm, "1");
    EXPECT_EQ(items[2].slotType, "2");
    EXPECT_EQ(items[3].name, kModuleFirmware);
    EXPECT_EQ(items[3].version, "3.21");
}

TEST_F(EnclosureScanTest, EmptyBayIsLeftOutAndAVersionThatIsNoneStaysEmpty) {
    BmcOptions options = OlderModule();
    const std::string supplies = "/redfish/v1/Chassis/Enclosure/PowerSubsystem/PowerSupplies/";
    options.replaced_bodies[supplies + "1"] =
        R"({"Id":"1","Name":"Bay 1","Status":{"State":"Absent"}})";
    options.replaced_bodies[supplies + "2"] =
        R"({"Id":"2","Name":"Bay 2","Model":"EX-PSU","FirmwareVersion":"N/A"})";
    const BmcSimulator module(options);
    ASSERT_TRUE(Scan(HttpsOption(module)).IsSucceed());
    const auto items = report_.GetScanResults();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].softwareId, "EX-PSU");
    EXPECT_EQ(items[0].version, "");
    EXPECT_EQ(items[1].version, "7.03");
}

TEST_F(EnclosureScanTest, HttpsServiceIsReadWithTheLoginInEachRequest) {
    BmcSimulator module(OlderModule());
    ConnectionInfo connection;
    const TarselResult result = FetchVeskHttpsConnection(HttpsOption(module), connection);
    ASSERT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(connection.connect_case, Vantix::VantixConnection::kConnectCaseRest);
    EXPECT_EQ(module.Counts().sessions_made, 0);
}

TEST_F(EnclosureScanTest, ModuleThatSaysWhatItIsHasTheNewerInterface) {
    const BmcSimulator module(NewerModule());
    ConnectionInfo connection;
    ASSERT_TRUE(FetchVeskHttpsConnection(HttpsOption(module), connection).IsSucceed());
    EXPECT_EQ(connection.connect_case, Vantix::VantixConnection::kConnectCaseVeskRest);
}

TEST_F(EnclosureScanTest, ModuleReachedOnlyThroughIpmiGivesItsFacts) {
    const std::string missing = test_support::IpmiSimulator::Missing();
    if (!missing.empty()) GTEST_SKIP() << missing;
    const test_support::IpmiSimulator module;
    const TarselResult result = Scan(OptionFor(module.Port()));
    ASSERT_TRUE(result.IsSucceed()) << result;
    EXPECT_EQ(report_.GetMT(), "Example DE200");
    EXPECT_EQ(report_.GetScope(), "EX DE 0001");
    EXPECT_EQ(report_.GetBmcType(), "Vesk");
    EXPECT_THAT(Names(), testing::ElementsAre("PSU1", "PSU2", kModuleFirmware));
    EXPECT_EQ(report_.GetScanResults()[2].version, "9.08");
    EXPECT_EQ(report_.GetScanCount(), 3);
}

TEST_F(EnclosureScanTest, PasswordRefusedOverHttpsIsNotTriedOverIpmi) {
    const BmcSimulator module(NewerModule());
    const StandInTool tool("touch \"$0.used\"");
    ConnectOption option = HttpsOption(module);
    option.password = "wrong-invented";
    const TarselResult result = Scan(option);
    EXPECT_EQ(result.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(module.Counts().logins_refused, 1);
    EXPECT_FALSE(std::filesystem::exists(tool.Path("ipmitool.used")));
    EXPECT_TRUE(report_.GetScanResults().empty());
}

TEST_F(EnclosureScanTest, UntrustedModuleGetsNoLoginOverIpmiEither) {
    const BmcSimulator module(NewerModule());
    const StandInTool tool("touch \"$0.used\"");
    ConnectOption option = HttpsOption(module);
    option.ca_file.clear();
    option.fingerprint = std::string(64, 'a');
    EXPECT_EQ(Scan(option).code, VERIFY_CERTIFICATE_FAILED);
    EXPECT_FALSE(std::filesystem::exists(tool.Path("ipmitool.used")));
}

TEST_F(EnclosureScanTest, OverlongPasswordEndsWithItsOwnSentence) {
    ConnectOption option = OptionFor(9);
    option.password = std::string(21, 'x');
    const TarselResult result = Scan(option);
    EXPECT_EQ(result.code, IPMI_PASSWORD_TOO_LONG);
    EXPECT_THAT(result.message, HasSubstr("a password over 20 characters"));
}

TEST_F(EnclosureScanTest, DeadHostEndsWithTheWordsOfTheLastLeg) {
    const std::string missing = test_support::IpmiSimulator::Missing();
    if (!missing.empty()) GTEST_SKIP() << missing;
    const SilentUdpPort silence;
    const TarselResult result = Scan(OptionFor(silence.Port()));
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message, HasSubstr("Nobody answered over IPMI"));
}

}  // namespace
}  // namespace ipmi_tests
