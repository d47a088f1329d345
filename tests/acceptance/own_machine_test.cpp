// Scans of the machine itself, from the command line to the scan file, over a recorded machine
// tree.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"
#include "support/golden_file.h"

namespace acceptance {
namespace {

namespace fs = std::filesystem;
using test_support::MatchesGoldenFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kServer = TARSEL_SCENARIOS "/own-server/";

std::string Expected(const std::string& file) {
    return kServer + file;
}

class OwnMachineScanTest : public TarselCommandTestBase {
  protected:
    /// "scan TARGET --sysroot TREE --output FOLDER" and more, without any environment of a login.
    [[nodiscard]] test_support::ChildSetup OwnScan(Arguments target,
                                                   const Arguments& more = {}) const {
        Arguments arguments = {"scan", "--sysroot", tree_, "--output", folder_.Path("out")};
        arguments.insert(arguments.end(), target.begin(), target.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Command(arguments);
    }
    /// The same with the simulated BMC and a login there.
    [[nodiscard]] test_support::ChildSetup ScanWithBmc(const char* option,
                                                       const Arguments& more = {}) const {
        Arguments target = {option, Target(), "--pin", bmc_->Fingerprint()};
        target.insert(target.end(), more.begin(), more.end());
        test_support::ChildSetup setup = OwnScan(target);
        setup.environment["TARSEL_PASSWORD"] = kPassword;
        return setup;
    }
    void ExpectScan(const Ended& ended, const std::string& name) const {
        EXPECT_EQ(ended.exit_code, 0) << ended.errors;
        EXPECT_TRUE(MatchesGoldenFile(ended.output, Expected("expected-" + name + "-tables.txt")));
        EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"),
                                      Expected("expected-" + name + "-scan.xml")));
    }
    /// Lets scans read a copy of the tree, for the test to change, and returns its folder.
    std::string CopyTree() {
        tree_ = folder_.Path("tree");
        fs::copy(Expected("sysroot"), tree_,
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        return tree_;
    }

    /// Writes another port over that of the SMBIOS record, which stands behind the network mask.
    void PointHostInterfaceAt(int port) const {
        const std::string name = "tree/sys/firmware/dmi/tables/DMI";
        const std::string mask = std::string("\xFF", 1) + std::string(15, '\0');
        std::string table = folder_.Read(name);
        const std::size_t at = table.rfind(mask);
        ASSERT_NE(at, std::string::npos);
        table[at + mask.size()] = static_cast<char>(port % 256);
        table[at + mask.size() + 1] = static_cast<char>(port / 256);
        folder_.Write(name, table);
    }

    std::string tree_ = Expected("sysroot");
};

// ---- without any BMC --------------------------------------------------------------------------

TEST_F(OwnMachineScanTest, LocalScanGivesTheExpectedTablesAndScanFile) {
    ExpectScan(Run(OwnScan({"--local"})), "local");
}

TEST_F(OwnMachineScanTest, LocalScanKeepsItsOrder) {
    Run(OwnScan({"--local"}));
    const std::string xml = Output("Tarsel-update-scan.xml");
    std::size_t last = 0;
    for (const char* const name : {"<NAME>UEFI<", "EXRAID 8i", "EXSAS-1200", "EXSSD-480",
                                   "EXFLASH 960", "EXSATA 4000", "EXNIC 25G"}) {
        const std::size_t at = xml.find(name);
        ASSERT_NE(at, std::string::npos) << name;
        EXPECT_GT(at, last) << name;
        last = at;
    }
}

TEST_F(OwnMachineScanTest, DiskThatTheRaidToolListsIsListedOnce) {
    const std::string output = Run(OwnScan({"--local"})).output;
    const std::size_t first = output.find("EXSAS-1200");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(output.find("EXSAS-1200", first + 1), std::string::npos) << output;
    EXPECT_THAT(output, Not(HasSubstr("LOGICAL VOLUME")));
}

TEST_F(OwnMachineScanTest, FirmwareAloneAndEverythingAreTheSameForALocalScan) {
    ExpectScan(Run(OwnScan({"--local"}, {"--scantype", "fw"})), "local");
}

TEST_F(OwnMachineScanTest, LocalScanSaysThatItReadsNoDrivers) {
    const Ended ended = Run(OwnScan({"--local"}, {"--scantype", "dd"}));
    EXPECT_EQ(ended.exit_code, 0);
    EXPECT_THAT(ended.errors, HasSubstr("reads no device drivers; --inband does."));
}

TEST_F(OwnMachineScanTest, LocalScanNeedsNoTerminalAndNoPassword) {
    const Ended ended = Run(OwnScan({"--local"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.errors, Not(HasSubstr("assword")));
}

TEST_F(OwnMachineScanTest, SummaryNamesTheRecordedTree) {
    Run(OwnScan({"--local"}));
    EXPECT_THAT(Output("common_result.xml"),
                HasSubstr("<TARGET>the machine recorded in " + tree_ + "</TARGET>"));
}

TEST_F(OwnMachineScanTest, RaidControllerWithoutItsToolIsSaidToBeUnread) {
    fs::remove(CopyTree() + "/usr/sbin/arcconf");
    const Ended ended = Run(OwnScan({"--local"}));
    EXPECT_EQ(ended.exit_code, 3) << ended.errors;
    EXPECT_THAT(ended.errors, AllOf(HasSubstr("RAID disks"), HasSubstr("arcconf")));
}

TEST_F(OwnMachineScanTest, MachineWithoutSmbiosEndsWithASentenceThatSaysWhy) {
    const std::string tree = CopyTree();
    for (const char* const place : {"/sys/firmware", "/sys/class/dmi", "/sys/devices/virtual"}) {
        fs::remove_all(tree + place);
    }
    const Ended ended = Run(OwnScan({"--local"}, {"-q"}));
    EXPECT_EQ(ended.exit_code, 1) << ended.errors;
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(ended.errors,
                AllOf(HasSubstr("it has neither SMBIOS nor a device tree"),
                      HasSubstr("scan the physical machine instead"), HasSubstr("code 1746")));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>1746</CODE>"));
}

TEST_F(OwnMachineScanTest, FirmwareThatTellsNoVersionEndsTheLocalScan) {
    const std::string tree = CopyTree();
    fs::remove_all(tree + "/sys/firmware");
    fs::remove(tree + "/sys/devices/virtual/dmi/id/bios_version");
    const Ended ended = Run(OwnScan({"--local"}));
    EXPECT_EQ(ended.exit_code, 1) << ended.errors;
    EXPECT_THAT(ended.errors, AllOf(HasSubstr("The UEFI or BIOS version of this machine is not"),
                                    HasSubstr("Get uefi version fail (code 17)")));
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), IsEmpty());
}

// ---- with the BMC -----------------------------------------------------------------------------

TEST_F(OwnMachineScanTest, InBandScanDropsTheDiskThatTheBmcReported) {
    StartBmc(Bmc("own-server"));
    ExpectScan(Run(ScanWithBmc("--inband", {"--cim-port", Port()})), "inband");
    const std::string xml = Output("Tarsel-update-scan.xml");
    EXPECT_THAT(xml, HasSubstr("<VERSION>EX2.11<"));
    const std::size_t first = xml.find("<VERSION>EX2.10<");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(xml.find("<VERSION>EX2.10<", first + 1), std::string::npos);
}

TEST_F(OwnMachineScanTest, InBandScanOverRedfishLeavesTheDisksToTheBmc) {
    StartBmc(Bmc("tavro-v3"));
    ExpectScan(Run(ScanWithBmc("--inband")), "inband-redfish");
    EXPECT_EQ(bmc_->Counts().sessions_made, bmc_->Counts().sessions_ended);
}

TEST_F(OwnMachineScanTest, InBandScanFindsTheBmcWhereTheFirmwareSaysItIs) {
    StartBmc(Bmc("tavro-v3"));
    CopyTree();
    PointHostInterfaceAt(std::stoi(Port()));
    auto setup = OwnScan({"--inband", "--user", kUser, "--pin", bmc_->Fingerprint()});
    setup.environment["TARSEL_PASSWORD"] = kPassword;
    ExpectScan(Run(setup), "inband-redfish");
}

TEST_F(OwnMachineScanTest, BmcWithoutUserAndWithoutSystemInterfaceIsSaidToBeUnreachable) {
    for (const char* const option : {"--inband", "--amd"}) {
        const Ended ended = Run(OwnScan({option, "--insecure"}, {"-q"}));
        EXPECT_NE(ended.exit_code, 0);
        EXPECT_THAT(ended.errors, HasSubstr("No account for this machine's BMC")) << option;
        EXPECT_THAT(ended.errors, HasSubstr("--user")) << option;
    }
}

TEST_F(OwnMachineScanTest, InBandFirmwareScanListsNoDriver) {
    StartBmc(Bmc("tavro-v3"));
    const Ended ended = Run(ScanWithBmc("--inband", {"--scantype", "fw"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("Tarsel-update-scan.xml"),
                AllOf(HasSubstr("<PACKAGE>"), Not(HasSubstr("<CLASSIFICATION>22<"))));
}

TEST_F(OwnMachineScanTest, InBandDriverScanAsksNoBmc) {
    ExpectScan(Run(OwnScan({"--inband"}, {"--scantype", "dd"})), "inband-drivers");
}

TEST_F(OwnMachineScanTest, TablesOfAFullScanListTheDriversToo) {
    StartBmc(Bmc("tavro-v3"));
    const std::string all = Run(ScanWithBmc("--inband")).output;
    const std::string drivers = Run(OwnScan({"--inband"}, {"--scantype", "dd"})).output;
    EXPECT_THAT(all, HasSubstr("3.10.2"));
    EXPECT_THAT(drivers, HasSubstr("3.10.2"));
}

TEST_F(OwnMachineScanTest, FactsAloneNeedNoInventory) {
    StartBmc(Bmc("tavro-v3"));
    const Ended ended = Run(ScanWithBmc("--inband", {"--info-only"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("Tarsel-update-scan.xml"),
                AllOf(HasSubstr("<OS>exampleos9</OS>"), Not(HasSubstr("<PACKAGE>"))));
}

TEST_F(OwnMachineScanTest, RefusedLoginAtTheOwnBmcIsTriedOnce) {
    StartBmc(Bmc("tavro-v3"));
    auto setup = ScanWithBmc("--inband");
    setup.environment["TARSEL_PASSWORD"] = "wrong";
    EXPECT_EQ(Run(setup).exit_code, 4);
    EXPECT_EQ(bmc_->Counts().logins_refused, 1);
}

TEST_F(OwnMachineScanTest, DurationOfAnInBandScanIsRemembered) {
    StartBmc(Bmc("tavro-v3"));
    EXPECT_EQ(Run(ScanWithBmc("--inband")).exit_code, 0);
    EXPECT_THAT(folder_.Read("home/.local/state/tarsel/durations.txt"),
                HasSubstr("-x86_64/exampleos9"));
}

// ---- AMD platform -----------------------------------------------------------------------------

TEST_F(OwnMachineScanTest, AmdScanMergesTheBmcWithWhatTheMachineShows) {
    StartBmc(Bmc("amd-ami-bmc"));
    ExpectScan(Run(ScanWithBmc("--amd")), "amd");
}

TEST_F(OwnMachineScanTest, AmdScanNamesTheRaidControllerThatItDoesNotAsk) {
    StartBmc(Bmc("amd-ami-bmc"));
    const Ended ended = Run(ScanWithBmc("--amd"));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.errors, AllOf(HasSubstr("RAID disks"), HasSubstr("not tried"),
                                    HasSubstr("without its BMC asks the controllers")));
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<STATE>not tried</STATE>"));
}

TEST_F(OwnMachineScanTest, AmdDriverScanAsksNoBmc) {
    ExpectScan(Run(OwnScan({"--amd"}, {"--scantype", "dd"})), "amd-drivers");
}

TEST_F(OwnMachineScanTest, AmdFirmwareScanListsNoDriver) {
    StartBmc(Bmc("amd-ami-bmc"));
    const Ended ended = Run(ScanWithBmc("--amd", {"--scantype", "fw"}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), Not(HasSubstr("<CLASSIFICATION>22<")));
}

}  // namespace
}  // namespace acceptance
