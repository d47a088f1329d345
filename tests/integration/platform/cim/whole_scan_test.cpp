// Whole scans of machines that speak CIM: service, scan path, platform, transport, TLS, login.
#include <gtest/gtest.h>

#include "cim_machine.h"
#include "service/update_scan_service/service_update_scan.h"

namespace Vantix::VantixConnection {
namespace {

using service::UpdateScanReport;
using simulators::Fault;

struct Scanned {
    TarselResult result = TarselResult(1);
    UpdateScanReport report;
    std::shared_ptr<RunContext> run;
};

Scanned Scan(const simulators::BmcSimulator& machine, int mode, int bay = 0) {
    service::UpdateScanOption option;
    option.connect_option = OptionFor(machine, mode);
    option.connect_option.timeout_seconds = 5;
    option.bay_id = bay;
    Scanned scanned;
    scanned.run = option.connect_option.run;
    service::ServiceUpdateScan scan(option);
    scanned.result = scan.Run(scanned.report);
    return scanned;
}

std::vector<std::string> ItemsOf(const UpdateScanReport& report) {
    std::vector<std::string> items;
    for (const auto& item : report.GetScanResults()) {
        items.push_back(item.softwareId + " " + item.version);
    }
    return items;
}

using TextList = std::vector<std::string>;

TEST(CimWholeScanTest, ChassisModule) {
    const simulators::BmcSimulator machine(Machine("chassis-module"));

    const Scanned scanned = Scan(machine, kConnectModeChassis);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(ItemsOf(scanned.report),
              (TextList{"TOLV 2.14", "TOLV-BACKUP 2.10", "EX-CPLD 1.7.3.0"}));
    EXPECT_EQ(scanned.report.GetBmcType(), "Tolv");
    EXPECT_EQ(scanned.report.GetMT(), "EXBC-8000");
    EXPECT_EQ(scanned.report.GetScope(), "EXBC00001");
}

TEST(CimWholeScanTest, SwitchInItsBay) {
    const simulators::BmcSimulator machine(Machine("chassis-switch"));

    const Scanned scanned = Scan(machine, kConnectModeIoSwitch, 2);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(ItemsOf(scanned.report), (TextList{"SWITCHES 1.02", "SWITCHES 8.4.1"}));
    EXPECT_EQ(scanned.report.GetBmcType(), "Tolv");
    EXPECT_EQ(scanned.report.GetScope(), "EXSW00002");
}

TEST(CimWholeScanTest, EmptyBay) {
    const simulators::BmcSimulator machine(Machine("chassis-switch"));

    const Scanned scanned = Scan(machine, kConnectModeIoSwitch, 3);

    EXPECT_FALSE(scanned.result.IsSucceed());
    EXPECT_TRUE(ItemsOf(scanned.report).empty());
    EXPECT_EQ(scanned.run->Notices(),
              (TextList{"The chassis shows no I/O switch in bay 3; check the bay number."}));
}

TEST(CimWholeScanTest, HypervisorHost) {
    const simulators::BmcSimulator machine(Machine("esxi-host"));

    const Scanned scanned = Scan(machine, kConnectModeEsxi);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(ItemsOf(scanned.report), (TextList{"UEFI 3.40", "BMC 5.21", "EX-NIC-25G 22.31.6"}));
    EXPECT_EQ(scanned.report.GetOS(), "VMware ESXi 8.0.2");
    EXPECT_EQ(scanned.report.GetArch(), "x86_64");
    EXPECT_EQ(scanned.report.GetBmcType(), "Tavro");
    EXPECT_EQ(machine.Counts().connections, 1);
    EXPECT_EQ(machine.Counts().requests, 7);
}

TEST(CimWholeScanTest, BmcThatSpeaksCimOnlyIsReachedByTheFallBack) {
    const simulators::BmcSimulator machine(Machine("cim-only-bmc"));

    const Scanned scanned = Scan(machine, kConnectModeOobBmc);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(ItemsOf(scanned.report).size(), 5U);
    EXPECT_EQ(scanned.report.GetBmcType(), "Ossa");
    EXPECT_EQ(scanned.report.GetMT(), "EXRS-1000");
    EXPECT_FALSE(scanned.run->IsPartial());
}

TEST(CimWholeScanTest, ThirdGenerationBmcWhoseRedfishIsOffIsScannedOverCim) {
    const simulators::BmcSimulator machine(Machine("tavro-v3-no-redfish"));

    const Scanned scanned = Scan(machine, kConnectModeOobBmc);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(scanned.report.GetBmcType(), "Tavro");
    EXPECT_EQ(ItemsOf(scanned.report).size(), 5U);
}

TEST(CimWholeScanTest, WrongPasswordOfAChassisIsOneRefusedLogin) {
    simulators::BmcOptions options = Machine("chassis-module");
    options.password = "other";
    const simulators::BmcSimulator machine(options);

    const Scanned scanned = Scan(machine, kConnectModeChassis);

    EXPECT_EQ(scanned.result.code & 0xFFFF, 12) << scanned.result;
    EXPECT_EQ(machine.Counts().logins_refused, 1);
}

TEST(CimWholeScanTest, BadInstanceCostsOnlyItselfAndMakesTheScanPartial) {
    simulators::BmcSimulator machine(Machine("cim-only-bmc"));
    simulators::FaultRule rule = FaultOn("CIM_SoftwareIdentity", Fault::Kind::kBody);
    rule.fault.content_type = "application/xml";
    // Its number: two namespaces for the systems, the chassis, then the software.
    rule.fault.body =
        "<CIM><MESSAGE ID=\"1004\"><SIMPLERSP><IMETHODRESPONSE><IRETURNVALUE><INSTANCE/>"
        "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"InstanceID\"><VALUE>EX:INSTALLED:BMC</VALUE>"
        "</PROPERTY></INSTANCE></IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
    machine.SetFaults({rule});

    const Scanned scanned = Scan(machine, kConnectModeOobBmc);

    EXPECT_TRUE(scanned.result.IsSucceed()) << scanned.result;
    EXPECT_EQ(ItemsOf(scanned.report).size(), 1U);
    EXPECT_TRUE(scanned.run->IsPartial());
}

}  // namespace
}  // namespace Vantix::VantixConnection
