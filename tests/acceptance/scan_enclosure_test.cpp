// The built command over the interfaces of an enclosure management module.
#include <gmock/gmock.h>

#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"
#include "support/ipmi_simulator_posix.h"
#include "support/script_file.h"

namespace acceptance {
namespace {

using test_support::IpmiSimulator;
using test_support::SilentUdpPort;
using testing::HasSubstr;
using testing::Not;

// Discard: nobody listens there.
constexpr const char* kNoHttps = "operator@127.0.0.1:9";

class ScanEnclosureTest : public TarselCommandTestBase {
  protected:
    void SetUp() override {
        const std::string missing = IpmiSimulator::Missing();
        if (!missing.empty()) GTEST_SKIP() << missing;
    }

    test_support::ChildSetup IpmiScan(int ipmi_port, const std::string& password) const {
        test_support::ChildSetup setup =
            Command({"scan", "--vesk", kNoHttps, "--output", folder_.Path("out"), "--ipmi-port",
                     std::to_string(ipmi_port), "--ipmi-interval", "0"});
        setup.environment["TARSEL_PASSWORD"] = password;
        return setup;
    }
};

class ScanModuleTest : public TarselCommandTestBase {
  protected:
    test_support::ChildSetup ModuleScan() const {
        test_support::ChildSetup setup =
            Command({"scan", "--vesk", Target(), "--output", folder_.Path("out"), "--pin",
                     bmc_->Fingerprint()});
        setup.environment["TARSEL_PASSWORD"] = kPassword;
        return setup;
    }
};

TEST_F(ScanEnclosureTest, ModuleThatSpeaksIpmiOnlyIsScanned) {
    const IpmiSimulator module;
    const Ended ended = Run(IpmiScan(module.Port(), test_support::kIpmiPassword));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("Example DE200"));
    EXPECT_THAT(ended.output, HasSubstr("Vesk Firmware"));
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), HasSubstr("<VERSION>2.06</VERSION>"));
}

TEST_F(ScanModuleTest, NewerInterfaceIsScannedOverTls) {
    StartBmc(Bmc("enclosure-module"));
    const Ended ended = Run(ModuleScan());
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("Example DE400"));
    EXPECT_THAT(ended.output, HasSubstr("Power Supply Bay 1"));
    EXPECT_THAT(ended.output, Not(HasSubstr("Vesk Firmware")));
    EXPECT_EQ(bmc_->Counts().sessions_made, bmc_->Counts().sessions_ended);
}

// Neither root nor manager says what they belong to, and the login goes with each request.
TEST_F(ScanModuleTest, OlderHttpsInterfaceIsScannedWithBasicLogin) {
    simulators::BmcOptions options = Bmc("enclosure-module");
    options.allow_session = false;
    options.replaced_bodies["/redfish/v1"] = R"({"Id":"RootService","RedfishVersion":"1.2.0",)"
                                             R"("Chassis":{"@odata.id":"/redfish/v1/Chassis"},)"
                                             R"("Managers":{"@odata.id":"/redfish/v1/Managers"}})";
    options.replaced_bodies["/redfish/v1/Managers/Module1"] =
        R"({"Id":"Module1","Name":"Module","FirmwareVersion":"3.21"})";
    StartBmc(options);
    const Ended ended = Run(ModuleScan());
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("Vesk Firmware"));
    EXPECT_THAT(ended.output, HasSubstr("3.21"));
    EXPECT_EQ(bmc_->Counts().sessions_made, 0);
}

TEST_F(ScanEnclosureTest, WrongPasswordOverIpmiHasItsExitCodeAndSentence) {
    const IpmiSimulator module;
    const Ended ended = Run(IpmiScan(module.Port(), "wrong-invented"));
    EXPECT_EQ(ended.exit_code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("User name or password was refused over IPMI by"));
}

TEST_F(ScanEnclosureTest, OverlongPasswordIsSaidBeforeAnythingIsSent) {
    const Ended ended = Run(IpmiScan(9, "a-password-of-21-char"));
    EXPECT_NE(ended.exit_code, 0);
    EXPECT_THAT(ended.errors, HasSubstr("a password over 20 characters"));
    EXPECT_THAT(ended.errors, Not(HasSubstr("a-password-of-21-char")));
}

TEST_F(ScanEnclosureTest, DeadHostHasItsExitCodeAndSentence) {
    const SilentUdpPort silence;
    const Ended ended = Run(IpmiScan(silence.Port(), "Invented-Pass-1"));
    EXPECT_EQ(ended.exit_code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("Nobody answered over IPMI at"));
}

TEST_F(ScanEnclosureTest, SecretStandsInNoOutputAndNoFile) {
    const IpmiSimulator module;
    test_support::ChildSetup setup = IpmiScan(module.Port(), test_support::kIpmiPassword);
    setup.arguments.insert(setup.arguments.end(), {"-v", "-v", "-v"});
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    std::string all = ended.output + ended.errors;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.Path(""))) {
        if (entry.is_regular_file()) {
            all += test_support::TemporaryFolder::ReadFile(entry.path().string());
        }
    }
    EXPECT_THAT(all, HasSubstr("IPMI session"));
    EXPECT_THAT(all, Not(HasSubstr(test_support::kIpmiPassword)));
}

TEST_F(ScanEnclosureTest, SecretStandsInNoProcessWhileTheCommandRuns) {
    test_support::WriteScript(folder_, "ipmitool",
                              "while [ \"$1\" != -f ]; do shift; done\n"
                              "for file in /proc/[0-9]*/cmdline /proc/[0-9]*/environ; do\n"
                              "  grep -l -a -F -f \"$2\" \"$file\" 2>/dev/null >>\"$0.found\"\n"
                              "done\n"
                              "wc -c <\"$2\" >\"$0.searched\"\n"
                              "echo 'Get Auth Capabilities error' >&2; exit 1\n");
    test_support::ChildSetup setup = IpmiScan(9, "Watched-Pass-4711");
    setup.environment["PATH"] = folder_.Path("") + ":/usr/bin:/bin";
    EXPECT_EQ(Run(setup).exit_code, 5);
    EXPECT_EQ(folder_.Read("ipmitool.searched"), "17\n");
    EXPECT_EQ(folder_.Read("ipmitool.found"), "");
}

}  // namespace
}  // namespace acceptance
