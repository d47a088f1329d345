#include "guest/guest_machine_posix.h"

#include <gtest/gtest.h>

#include <memory>
#include <pugixml.hpp>

#include "support/golden_file.h"

namespace guest {
namespace {

/// What tarsel ends with when a source could not be read.
constexpr int kPartial = 3;
/// And when the BMC could not be talked to.
constexpr int kNotReachable = 5;

// One boot for all cases; each looks at what the machine told about one thing.
class GuestMachineTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (GuestMachine::Missing().empty()) machine_ = std::make_unique<GuestMachine>();
    }
    static void TearDownTestSuite() { machine_.reset(); }

    void SetUp() override {
        if (!machine_) GTEST_SKIP() << GuestMachine::Missing();
        ASSERT_TRUE(machine_->HasToldAll()) << machine_->Console();
    }

    static std::string Fact(const std::string& key) { return machine_->Fact(key); }

    /// The part's text; a failure of the test when its command failed.
    static std::string TextOf(const std::string& part) {
        const ConsolePart told = machine_->Told(part);
        EXPECT_EQ(told.status, 0) << part << ": " << told.text;
        return told.text;
    }

    static void ExpectEnd(const std::string& scan, int exit_code) {
        EXPECT_EQ(machine_->Told(scan).status, exit_code)
            << machine_->Told(scan).text << machine_->Told(scan + ".log").text;
    }

    /// The scan's file is the one that is kept, but for what the versions of QEMU decide.
    static void ExpectScan(const std::string& scan) {
        const std::string xml = WithMarks(TextOf(scan + ".xml"), machine_->AllFacts(),
                                          {"nvme0.model", "nvme0.firmware_rev"});
        EXPECT_TRUE(
            test_support::MatchesGoldenFile(xml, TARSEL_GUEST_SOURCES "/expected/" + scan + ".xml"))
            << machine_->Told(scan).text;
    }

    /// "VERSION, N devices" of the driver in the scan of drivers.
    static std::string DriverOf(const std::string& name) {
        pugi::xml_document document;
        document.load_string(TextOf("drivers.xml").c_str());
        const pugi::xml_node packages = document.select_node("//PACKAGES").node();
        const pugi::xml_node driver = packages.find_child(
            [&](pugi::xml_node package) { return package.child_value("SOFTWAREID") == name; });
        return std::string(driver.child_value("VERSION")) + ", " + driver.child_value("HASDEVICE") +
               " devices";
    }

    static std::unique_ptr<GuestMachine> machine_;
};

std::unique_ptr<GuestMachine> GuestMachineTest::machine_;

TEST_F(GuestMachineTest, KernelFindsAllDevicesOfTheMachine) {
    TextOf("devices");
    EXPECT_EQ(Fact("nvme0.serial"), "NVSER0001");
    EXPECT_EQ(Fact("nvme1.serial"), "NVSER0002");
    EXPECT_EQ(Fact("sda.model"), "DISK01");
    EXPECT_EQ(Fact("dmi.product_serial"), "SER12345");
}

TEST_F(GuestMachineTest, SlotsHaveTheirNumbers) {
    EXPECT_EQ(Fact("slot.11") + ".0", Fact("nvme0.address"));
    EXPECT_EQ(Fact("slot.12") + ".0", Fact("nvme1.address"));
    EXPECT_FALSE(Fact("slot.13").empty());
}

TEST_F(GuestMachineTest, ControllerAnswersAtTheSystemInterface) {
    EXPECT_NE(TextOf("system-interface").find("Firmware Revision         : 9.08"),
              std::string::npos);
}

TEST_F(GuestMachineTest, LocalScanTellsFirmwareDisksAndPciDevicesInOrder) {
    ExpectEnd("local", kPartial);
    ExpectScan("local");
}

TEST_F(GuestMachineTest, LocalScanNamesTheRaidAdapterWhoseDisksNoToolReads) {
    EXPECT_NE(TextOf("local.result").find("<NAME>RAID disks</NAME>"), std::string::npos);
    EXPECT_NE(TextOf("local.log").find("RAID controller 1000:0079 at 0000:00:05.0"),
              std::string::npos);
}

TEST_F(GuestMachineTest, LocalScanWithoutRightsListsWhatOnlyRootReads) {
    ExpectEnd("visitor", kPartial);
    const std::string log = TextOf("visitor.log");
    EXPECT_NE(log.find("attributes for root only  denied"), std::string::npos) << log;
    EXPECT_NE(log.find("- /dev/nvme1\n"), std::string::npos) << log;
    EXPECT_NE(log.find("- /sys/class/dmi/id/product_serial\n"), std::string::npos) << log;
}

TEST_F(GuestMachineTest, LocalScanWithTheToolTellsControllerAndDiskOnce) {
    ExpectEnd("raid", 0);
    ExpectScan("raid");
}

TEST_F(GuestMachineTest, InbandScanTellsTheFirmwareOfTheBmcAndNoDiskTwice) {
    ExpectEnd("inband", 0);
    ExpectScan("inband");
}

TEST_F(GuestMachineTest, InbandScanFindsTheBmcInTheTablesOfTheMachine) {
    ExpectEnd("inband-found", 0);
    EXPECT_EQ(TextOf("inband-found.xml"), TextOf("inband.xml"));
}

TEST_F(GuestMachineTest, InbandScanWithoutUserSaysThatTheControllerGaveNoAccount) {
    ExpectEnd("nouser", kNotReachable);
    const std::string said = machine_->Told("nouser").text;
    EXPECT_NE(said.find("No account for this machine's BMC could be got from the BMC itself: it "
                        "refuses (completion code 0xc1)"),
              std::string::npos)
        << said;
}

TEST_F(GuestMachineTest, InbandScanOverCimDropsTheDriveThatTheBmcTold) {
    ExpectEnd("inband-cim", 0);
    ExpectScan("inband-cim");
}

TEST_F(GuestMachineTest, InbandScanTellsDriversWithVersionsAndTheirDevices) {
    ExpectEnd("drivers", 0);
    const std::string kernel = Fact("kernel");
    EXPECT_EQ(DriverOf("nvme_1b360010"), Fact("module.nvme") + ", 2 devices");
    EXPECT_EQ(DriverOf("megaraid_sas_10000079"), Fact("module.megaraid_sas") + ", 1 devices");
    EXPECT_EQ(DriverOf("e1000e_808610d3"), kernel + ", 1 devices");
    EXPECT_EQ(DriverOf("NoDriver#PCI_80862922"), "N/A, 1 devices");
}

TEST_F(GuestMachineTest, AmdScanMergesPciDevicesAndDisksWithTheBmcsFirmware) {
    ExpectEnd("amd", 0);
    ExpectScan("amd");
}

TEST_F(GuestMachineTest, AmdScanWithoutAddressAsksTheSystemInterface) {
    ExpectEnd("amd-ipmi", 0);
    ExpectScan("amd-ipmi");
}

}  // namespace
}  // namespace guest
