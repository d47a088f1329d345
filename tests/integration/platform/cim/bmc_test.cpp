// BMCs that speak CIM, scanned through the platform's public functions.
#include <gtest/gtest.h>

#include "cim_machine.h"
#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type.h"
#include "platform/identities/identities.h"
#include "platform/system_check/system_check.h"
#include "platform/system_info/system_info.h"

namespace Vantix::VantixConnection {
namespace {

using Agentless::AgentlessSoftwareIdentity;
using Agentless::OssaTypeAcquire;
using VantixOptions::SoftwareIdentity_;

std::vector<SoftwareIdentity_> IdentitiesOf(const ConnectionInfo& connection) {
    std::vector<SoftwareIdentity_> list;
    EXPECT_EQ(AgentlessSoftwareIdentity(connection).GetPLDMSoftwareIdentities(list), SUCCEED);
    return list;
}

std::string TypeOf(const ConnectionInfo& connection) {
    int type = 0;
    EXPECT_EQ(OssaTypeAcquire(connection).GetOssaType(type), SUCCEED);
    return OssaTypeAcquire::OssaTypeToString(type);
}

// The questions of a whole scan, in its order.
void AskAll(const ConnectionInfo& connection) {
    std::pair<std::string, std::string> machine;
    EXPECT_EQ(SystemInfoScan::GetMachineType(connection, machine), SUCCEED);
    static_cast<void>(TypeOf(connection));
    static_cast<void>(IdentitiesOf(connection));
}

int RequestsOfAWholeScan(const simulators::BmcOptions& options) {
    const simulators::BmcSimulator machine(options);
    AskAll(Connect(OptionFor(machine)));
    return machine.Counts().requests;
}

class CimBmcTest : public ::testing::Test {
  protected:
    simulators::BmcSimulator bmc_{Machine("cim-only-bmc")};
    ConnectionInfo connection_ = Connect(OptionFor(bmc_));
};

TEST_F(CimBmcTest, ConnectionIsOfTheCimKind) {
    EXPECT_EQ(connection_.connect_case, kConnectCaseCim);
    EXPECT_EQ(connection_.host, "127.0.0.1");
    EXPECT_EQ(connection_.port, bmc_.Port());
}

TEST_F(CimBmcTest, MachineTypeComesFromTheIdentifyingInformation) {
    std::pair<std::string, std::string> machine;

    EXPECT_EQ(SystemInfoScan::GetMachineType(connection_, machine), SUCCEED);
    EXPECT_EQ(machine, (std::pair<std::string, std::string>{"EXRS-1000", "EXRS00007"}));
}

TEST_F(CimBmcTest, BmcTypeComesFromTheController) {
    EXPECT_EQ(TypeOf(connection_), "Ossa");
}

TEST_F(CimBmcTest, EveryInstalledComponentComes) {
    const auto list = IdentitiesOf(connection_);

    ASSERT_EQ(list.size(), 5U);
    EXPECT_EQ(list[0].SoftwareID, "BMC");
    EXPECT_EQ(list[0].VersionString, "4.10");
    EXPECT_EQ(list[0].Classifications, "10");
    EXPECT_EQ(list[0].ReleaseDate, "2025-01-31");
    EXPECT_EQ(list[3].AssociatedAdapterSlot, "2");
}

TEST_F(CimBmcTest, SourceIsCompleteAndCounted) {
    const ConnectOption option = OptionFor(bmc_);
    static_cast<void>(IdentitiesOf(Connect(option)));

    const auto sources = option.run->Sources();
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].source, "firmware inventory");
    EXPECT_EQ(sources[0].state, SourceState::kComplete);
    EXPECT_EQ(sources[0].items_read, 5);
    EXPECT_FALSE(option.run->IsPartial());
}

TEST_F(CimBmcTest, ComponentWithoutVersionIsToldOnce) {
    const ConnectOption option = OptionFor(bmc_);
    static_cast<void>(IdentitiesOf(Connect(option)));

    EXPECT_EQ(
        option.run->Notices(),
        (std::vector<std::string>{"1 component(s) of the firmware inventory report no version."}));
}

TEST_F(CimBmcTest, WholeScanUsesOneConnection) {
    bmc_.ResetCounts();
    AskAll(Connect(OptionFor(bmc_)));

    EXPECT_EQ(bmc_.Counts().connections, 1);
    EXPECT_EQ(bmc_.Counts().most_in_flight, 1);
}

TEST_F(CimBmcTest, OnlyClassicEnumerationsAreAsked) {
    AskAll(connection_);

    for (const auto& request : bmc_.Counts().log) {
        EXPECT_EQ(request.target, "/cimom");
        EXPECT_EQ(*simulators::FindHeader(request.headers, "CIMMethod"), "EnumerateInstances");
        EXPECT_EQ(request.body.find("Open"), std::string::npos);
    }
}

TEST_F(CimBmcTest, AnsweredQuestionsCostNothingTheSecondTime) {
    AskAll(connection_);
    const int before = bmc_.Counts().requests;
    AskAll(connection_);

    EXPECT_EQ(bmc_.Counts().requests, before);
}

TEST_F(CimBmcTest, UnknownReleaseNameIsEmpty) {
    SystemCheck check("", "", "", "", "", "");

    EXPECT_EQ(check.GetReleaseName(connection_), "");
    EXPECT_FALSE(check.IsTavroV3(connection_));
    EXPECT_FALSE(check.IsRedfishSupported(connection_));
}

TEST(CimBmcRequestsTest, NumberOfRequestsDoesNotGrowWithTheComponents) {
    const int few = RequestsOfAWholeScan(Machine("tavro-v3-no-redfish"));
    const test_support::TemporaryFolder folder;
    std::filesystem::copy(Machine("tavro-v3-no-redfish").scenario_dir, folder.Path("many"),
                          std::filesystem::copy_options::recursive);
    std::string text = folder.Read("many/cim/CIM_SoftwareIdentity.xml");
    std::string more;
    for (int n = 0; n < 1000; ++n) {
        const std::string id = "EX:INSTALLED:MORE" + std::to_string(n);
        more +=
            "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"EX_SoftwareIdentity\"><KEYBINDING "
            "NAME=\"InstanceID\"><KEYVALUE>" +
            id +
            "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"EX_Software\">"
            "<PROPERTY NAME=\"InstanceID\"><VALUE>" +
            id + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
    }
    text.insert(text.find("</INSTANCES>"), more);
    static_cast<void>(folder.Write("many/cim/CIM_SoftwareIdentity.xml", text));
    simulators::BmcOptions options;
    options.scenario_dir = folder.Path("many");

    EXPECT_EQ(RequestsOfAWholeScan(options), few);
    EXPECT_EQ(few, 5);
}

TEST(CimTavroV3Test, GenerationAndReleaseAreToldOverCim) {
    const simulators::BmcSimulator bmc(Machine("tavro-v3-no-redfish"));
    const ConnectionInfo connection = Connect(OptionFor(bmc));
    SystemCheck check("", "", "", "", "", "");

    EXPECT_TRUE(check.IsTavroV3(connection));
    EXPECT_EQ(check.GetReleaseName(connection), "Example Spring");
    EXPECT_EQ(TypeOf(connection), "Tavro");
}

TEST(CimTavroV3Test, RedfishThatIsOffIsNoReasonToGiveUpCim) {
    const simulators::BmcSimulator bmc(Machine("tavro-v3-no-redfish"));
    const ConnectOption option = OptionFor(bmc);
    ConnectionInfo ignored;

    const TarselResult redfish = GetRESTConnection(option, ignored);

    EXPECT_TRUE(redfish == NO_RESTFUL_SERVICE) << redfish;
    EXPECT_EQ(IdentitiesOf(Connect(option)).size(), 5U);
}

}  // namespace
}  // namespace Vantix::VantixConnection
