// Hypervisor hosts over CIM, and what is said of those whose CIM service is off.
#include <gtest/gtest.h>

#include "cim_machine.h"
#include "common/result/result_codes.h"
#include "platform/bmc_type/bmc_type.h"
#include "platform/esxi/esxi.h"
#include "platform/identities/identities.h"
#include "platform/system_info/system_info.h"

namespace Vantix::VantixConnection {
namespace {

using simulators::Fault;
using TextPair = std::pair<std::string, std::string>;

class CimHypervisorTest : public ::testing::Test {
  protected:
    ConnectOption Option() const { return OptionFor(host_, kConnectModeEsxi); }
    ConnectionInfo Connection() const { return Connect(Option()); }
    TarselResult FetchWithCimOff(const simulators::BmcSimulator& host) {
        ConnectOption option = OptionFor(host, kConnectModeEsxi);
        option.cim_port = ClosedPort();
        std::vector<ConnectionInfo> list;
        return FetchCIMConnectionList(option, list);
    }
    // The host as it is, but of that product version.
    simulators::FaultRule HostOfVersion(const std::string& version) {
        simulators::FaultRule rule;
        rule.target = "/sdk";
        rule.fault.kind = Fault::Kind::kBody;
        rule.fault.content_type = "text/xml";
        rule.fault.body = "<e><about><version>" + version + "</version></about></e>";
        return rule;
    }

    simulators::BmcSimulator host_{Machine("esxi-host")};
};

TEST_F(CimHypervisorTest, OsAndArchitectureAreTheHostsNotAGuests) {
    TextPair os;

    EXPECT_EQ(SystemInfoScan::GetEsxiOSInfo(Connection(), os), SUCCEED);
    EXPECT_EQ(os, (TextPair{"VMware ESXi 8.0.2", "x86_64"}));
}

TEST_F(CimHypervisorTest, MachineTypeComesFromTheChassis) {
    TextPair machine;

    EXPECT_EQ(SystemInfoScan::GetMachineType(Connection(), machine), SUCCEED);
    EXPECT_EQ(machine, (TextPair{"EXRS-2000", "EXRS00042"}));
}

TEST_F(CimHypervisorTest, SupportedVersionIsNotUnsupported) {
    EXPECT_FALSE(Agentless::EXSIInventory(Connection()).IsUnSpportedEXSIVersion());
}

TEST_F(CimHypervisorTest, PreconfigurationOnlyReads) {
    EXPECT_EQ(CIMServerConfig(Connection()).PrevConfig(), SUCCEED);

    for (const auto& request : host_.Counts().log) {
        EXPECT_NE(request.body.find("EnumerateInstances"), std::string::npos);
    }
}

TEST_F(CimHypervisorTest, RoleWithoutTheRightToReadFailsPreconfiguration) {
    simulators::FaultRule rule = FaultOn("CIM_SoftwareIdentity", Fault::Kind::kStatus);
    rule.fault.status = 403;
    host_.SetFaults({rule});

    EXPECT_EQ(CIMServerConfig(Connection()).PrevConfig(), FUNCTION_NOT_SUPPORTED);
}

TEST_F(CimHypervisorTest, FailedOsQuestionIsAskedAgain) {
    simulators::FaultRule rule = FaultOn("CIM_OperatingSystem", Fault::Kind::kStatus);
    rule.fault.status = 500;
    rule.times = 1;
    host_.SetFaults({rule});
    const ConnectionInfo connection = Connection();
    TextPair os;

    EXPECT_EQ(SystemInfoScan::GetEsxiOSInfo(connection, os), ESXI_INTERNAL_ERROR);
    EXPECT_EQ(SystemInfoScan::GetEsxiOSInfo(connection, os), SUCCEED);
    EXPECT_EQ(os.first, "VMware ESXi 8.0.2");
}

TEST_F(CimHypervisorTest, WholeScanHasAFixedNumberOfRequests) {
    const ConnectionInfo connection = Connection();
    TextPair pair;
    std::vector<VantixOptions::SoftwareIdentity_> list;
    int type = 0;
    static_cast<void>(Agentless::EXSIInventory(connection).IsUnSpportedEXSIVersion());
    static_cast<void>(CIMServerConfig(connection).PrevConfig());
    static_cast<void>(SystemInfoScan::GetEsxiOSInfo(connection, pair));
    static_cast<void>(SystemInfoScan::GetMachineType(connection, pair));
    static_cast<void>(
        Agentless::AgentlessSoftwareIdentity(connection).GetPLDMSoftwareIdentities(list));
    static_cast<void>(Agentless::OssaTypeAcquire(connection).GetOssaType(type));

    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(Agentless::OssaTypeAcquire::OssaTypeToString(type), "Tavro");
    EXPECT_EQ(host_.Counts().requests, 7);
    EXPECT_EQ(host_.Counts().connections, 1);
}

TEST_F(CimHypervisorTest, HostWithoutControllerHasNoBmcType) {
    simulators::FaultRule rule;
    rule.body_contains = "CIM_ComputerSystem";
    rule.fault.kind = Fault::Kind::kBody;
    rule.fault.body =
        "<CIM><MESSAGE ID=\"1001\"><SIMPLERSP><IMETHODRESPONSE/></SIMPLERSP></MESSAGE></CIM>";
    host_.SetFaults({rule});
    int type = 7;

    EXPECT_NE(Agentless::OssaTypeAcquire(Connection()).GetOssaType(type), SUCCEED);
    EXPECT_EQ(type, 0);
}

TEST_F(CimHypervisorTest, ClosedCimOnALivingHostNamesTheService) {
    const TarselResult result = FetchWithCimOff(host_);

    EXPECT_TRUE(result == NO_CIM_SERVICE) << result;
    EXPECT_NE(result.message.find("sfcbd-watchdog status"), std::string::npos);
    EXPECT_NE(result.message.find("esxcli system wbem set --enable true"), std::string::npos);
    EXPECT_NE(result.message.find("(version 8.0.2)"), std::string::npos);
    EXPECT_NE(result.message.find("releases after 8 have none"), std::string::npos);
}

TEST_F(CimHypervisorTest, AskingTheLivingHostSendsNoLogin) {
    static_cast<void>(FetchWithCimOff(host_));

    EXPECT_EQ(host_.Counts().RequestsTo("/sdk"), 1);
    EXPECT_EQ(host_.Counts().authorization_headers_seen, 0);
}

TEST_F(CimHypervisorTest, NewerReleaseWithoutCimIsUnsupported) {
    host_.SetFaults({HostOfVersion("9.0.0")});

    const TarselResult result = FetchWithCimOff(host_);

    EXPECT_TRUE(result == ESXI_INTERNAL_ERROR) << result;
    EXPECT_EQ(result.message, "Tarsel do not support this installed VMWare ESXi Version.");
}

TEST_F(CimHypervisorTest, DeadHostIsNotReachable) {
    simulators::BmcSimulator gone(Machine("esxi-host"));
    gone.Stop();

    const TarselResult result = FetchWithCimOff(gone);

    EXPECT_TRUE(result == CONNECTION_FAILED) << result;
}

}  // namespace
}  // namespace Vantix::VantixConnection
