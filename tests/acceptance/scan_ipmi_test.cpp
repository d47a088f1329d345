// The built command against an enclosure management module that speaks IPMI only.
#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "acceptance/tarsel_command_test_base.h"
#include "support/golden_file.h"
#include "support/ipmi_simulator_posix.h"
#include "support/script_file.h"

namespace acceptance {
namespace {

using test_support::IpmiSimulator;
using test_support::MatchesGoldenFile;
using test_support::SilentUdpPort;
using testing::HasSubstr;
using testing::Not;

// Discard: nobody listens there.
constexpr const char* kNoHttps = "operator@127.0.0.1:9";

class ScanIpmiTest : public TarselCommandTestBase {
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

TEST_F(ScanIpmiTest, ModuleThatSpeaksIpmiOnlyGivesTheExpectedTablesAndScanFile) {
    const IpmiSimulator module;
    const Ended ended = Run(IpmiScan(module.Port(), test_support::kIpmiPassword));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    const std::string expected = TARSEL_ACCEPTANCE_GOLDEN;
    EXPECT_TRUE(MatchesGoldenFile(ended.output, expected + "/ipmi-module-tables.txt"));
    EXPECT_TRUE(
        MatchesGoldenFile(Output("Tarsel-update-scan.xml"), expected + "/ipmi-module-scan.xml"));
}

TEST_F(ScanIpmiTest, CipherSuiteMayBeNamed) {
    const IpmiSimulator module;
    auto setup = IpmiScan(module.Port(), test_support::kIpmiPassword);
    setup.arguments.insert(setup.arguments.end(), {"--ipmi-cipher", "3"});
    EXPECT_EQ(Run(setup).exit_code, 0);
}

TEST_F(ScanIpmiTest, WrongPasswordOverIpmiHasItsExitCodeAndSentence) {
    const IpmiSimulator module;
    const Ended ended = Run(IpmiScan(module.Port(), "wrong-invented"));
    EXPECT_EQ(ended.exit_code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("User name or password was refused over IPMI by"));
}

TEST_F(ScanIpmiTest, OverlongPasswordIsSaidBeforeAnythingIsSent) {
    const Ended ended = Run(IpmiScan(9, "a-password-of-21-char"));
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_THAT(Output("common_result.xml"), HasSubstr("<CODE>51</CODE>"));
    EXPECT_THAT(ended.errors, HasSubstr("a password over 20 characters"));
    EXPECT_THAT(ended.errors, Not(HasSubstr("a-password-of-21-char")));
}

TEST_F(ScanIpmiTest, DeadHostHasItsExitCodeAndSentence) {
    const SilentUdpPort silence;
    const Ended ended = Run(IpmiScan(silence.Port(), "Invented-Pass-1"));
    EXPECT_EQ(ended.exit_code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("Nobody answered over IPMI at"));
}

TEST_F(ScanIpmiTest, SecretStandsInNoOutputAndNoFile) {
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

TEST_F(ScanIpmiTest, SecretStandsInNoProcessWhileTheCommandRuns) {
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

TEST_F(ScanIpmiTest, EndedScanLeavesNoToolBehind) {
    test_support::WriteScript(folder_, "ipmitool",
                              "echo $$ >\"$0.process.new\"\n"
                              "mv \"$0.process.new\" \"$0.process\"\n"
                              "exec sleep 60\n");
    auto setup = IpmiScan(9, "Invented-Pass-1");
    setup.environment["PATH"] = folder_.Path("") + ":/usr/bin:/bin";
    test_support::ChildProcess scan(setup);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (folder_.Read("ipmitool.process").empty() && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    const std::string tool = folder_.Read("ipmitool.process");
    ASSERT_FALSE(tool.empty()) << scan.Errors();
    scan.Signal(SIGTERM);
    EXPECT_EQ(scan.Wait(), 128 + SIGTERM) << scan.Errors();
    EXPECT_FALSE(std::filesystem::exists("/proc/" + tool.substr(0, tool.find('\n'))));
}

}  // namespace
}  // namespace acceptance
