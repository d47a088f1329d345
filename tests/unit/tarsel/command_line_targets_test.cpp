// The target options, and which others go with which of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scan_command_line.h"
#include "tarsel/mode_table.h"

namespace tarsel {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kTarget = "root@127.0.0.1";

struct KindCase {
    Arguments arguments;
    TargetKind kind;
};
class CommandLineKindTest : public testing::TestWithParam<KindCase> {};

TEST_P(CommandLineKindTest, FollowsFromTheTargetOption) {
    const CommandLine command = Scan(GetParam().arguments);
    ASSERT_EQ(command.action, CommandLine::Action::kScan) << command.text;
    EXPECT_EQ(command.scan.kind, GetParam().kind);
    EXPECT_EQ(command.scan.host, "127.0.0.1");
    EXPECT_EQ(command.scan.user, "root");
}

INSTANTIATE_TEST_SUITE_P(
    Options, CommandLineKindTest,
    testing::Values(KindCase{{"--bmc", kTarget}, TargetKind::kBmc},
                    KindCase{{"--tolv", kTarget}, TargetKind::kChassis},
                    KindCase{{"--tolv", kTarget, "--switch", "2"}, TargetKind::kIoSwitch},
                    KindCase{{"--switch=2", "--tolv", kTarget}, TargetKind::kIoSwitch},
                    KindCase{{"--esxi", kTarget}, TargetKind::kHypervisor},
                    KindCase{{"--vesk", kTarget}, TargetKind::kEnclosure}));

class CommandLineAddressTest : public testing::TestWithParam<const char*> {};

TEST_P(CommandLineAddressTest, IsTakenApart) {
    const CommandLine command = Scan({GetParam(), "admin@[::1]:8443"});
    ASSERT_EQ(command.action, CommandLine::Action::kScan) << command.text;
    EXPECT_EQ(command.scan.host, "::1");
    EXPECT_EQ(command.scan.port, 8443);
    EXPECT_EQ(command.scan.user, "admin");
}

TEST_P(CommandLineAddressTest, ErrorNamesTheOption) {
    ExpectUsageError(Scan({GetParam(), "root@[::1"}), GetParam());
    ExpectUsageError(Scan({GetParam(), "root@127.0.0.1:0x50"}), GetParam());
    ExpectUsageError(Scan({GetParam(), kTarget, "--user", "admin"}), GetParam());
}

TEST_P(CommandLineAddressTest, IsGivenOnce) {
    ExpectUsageError(Scan({GetParam(), kTarget, GetParam(), kTarget}), GetParam());
}

TEST_P(CommandLineAddressTest, PasswordInItIsRefusedAndNotRepeated) {
    const CommandLine command = Scan({GetParam(), "root:FakePass1@127.0.0.1"});
    EXPECT_EQ(command.action, CommandLine::Action::kUsageError);
    EXPECT_THAT(command.text, Not(HasSubstr("FakePass1")));
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineAddressTest,
                         testing::Values("--bmc", "--tolv", "--esxi", "--vesk", "--remoteos"));

class CommandLineTwoTargetsTest : public testing::TestWithParam<Arguments> {};

TEST_P(CommandLineTwoTargetsTest, AreOneTooMany) {
    ExpectUsageError(Scan(GetParam()), "exactly one target");
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, CommandLineTwoTargetsTest,
    testing::Values(Arguments{"--bmc", kTarget, "--tolv", kTarget},
                    Arguments{"--bmc", kTarget, "--esxi", kTarget},
                    Arguments{"--esxi", kTarget, "--vesk", kTarget},
                    Arguments{"--tolv", kTarget, "--switch", "1", "--vesk", kTarget},
                    Arguments{"--local", "--bmc", kTarget},
                    Arguments{"--local", "--remoteos", kTarget}, Arguments{"--inband", "--amd"},
                    Arguments{"--inband", "--local"}));

TEST(CommandLineTargetsTest, MissingTargetNamesAllOfThem) {
    ExpectUsageError(Scan({}),
                     "--bmc, --tolv, --esxi, --vesk, --remoteos, --inband, --amd or --local");
}

TEST(CommandLineTargetsTest, BayIsTaken) {
    EXPECT_EQ(Scan({"--tolv", kTarget, "--switch", "12"}).scan.bay, 12);
    EXPECT_EQ(Scan({"--tolv", kTarget}).scan.bay, 0);
}

class CommandLineBayTest : public testing::TestWithParam<const char*> {};

TEST_P(CommandLineBayTest, ThatIsNoPositiveNumberIsRefused) {
    ExpectUsageError(Scan({"--tolv", kTarget, "--switch", GetParam()}), "--switch");
}

INSTANTIATE_TEST_SUITE_P(Values, CommandLineBayTest,
                         testing::Values("0", "-1", "two", "1.5", "", "99999999999999999999"));

class CommandLineLonelyOptionTest : public testing::TestWithParam<Arguments> {};

TEST_P(CommandLineLonelyOptionTest, IsRefusedForOtherTargets) {
    ExpectUsageError(Scan(GetParam()), GetParam().back().substr(0, GetParam().back().find('=')));
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineLonelyOptionTest,
                         testing::Values(Arguments{"--bmc", kTarget, "--switch=1"},
                                         Arguments{"--esxi", kTarget, "--switch=1"},
                                         Arguments{"--tolv", kTarget, "--info-only"},
                                         Arguments{"--esxi", kTarget, "--system-id=1"},
                                         Arguments{"--vesk", kTarget, "--zelvar"},
                                         Arguments{"--tolv", kTarget, "--cfc"},
                                         Arguments{"--esxi", kTarget, "--csp"},
                                         Arguments{"--vesk", kTarget, "--cim-port=5989"},
                                         Arguments{"--vesk", kTarget, "--cim-http"},
                                         Arguments{"--vesk", kTarget, "--cim-namespace=root/x"},
                                         Arguments{"--bmc", kTarget, "--ipmi-port=623"},
                                         Arguments{"--tolv", kTarget, "--ipmi-cipher=3"},
                                         Arguments{"--esxi", kTarget, "--ipmi-interval=2"}));

class CommandLineCimTargetTest : public testing::TestWithParam<const char*> {};

TEST_P(CommandLineCimTargetTest, TakesTheCimOptions) {
    const CommandLine command = Scan({GetParam(), kTarget, "--cim-port", "15989", "--cim-http",
                                      "--cim-namespace", "root/example"});
    ASSERT_EQ(command.action, CommandLine::Action::kScan) << command.text;
    EXPECT_EQ(command.scan.cim_port, 15989);
    EXPECT_TRUE(command.scan.is_cim_http);
    EXPECT_EQ(command.scan.cim_namespace, "root/example");
}

TEST_P(CommandLineCimTargetTest, AsksOverTlsUnlessToldOtherwise) {
    EXPECT_FALSE(Scan({GetParam(), kTarget}).scan.is_cim_http);
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineCimTargetTest,
                         testing::Values("--bmc", "--tolv", "--esxi"));

TEST(CommandLineTargetsTest, EnclosureTakesTheIpmiOptions) {
    const CommandLine command = Scan(
        {"--vesk", kTarget, "--ipmi-port", "1623", "--ipmi-cipher", "3", "--ipmi-interval", "0"});
    ASSERT_EQ(command.action, CommandLine::Action::kScan) << command.text;
    EXPECT_EQ(command.scan.ipmi_port, 1623);
    EXPECT_EQ(command.scan.ipmi_cipher, 3);
    EXPECT_EQ(command.scan.ipmi_interval_seconds, 0);
}

TEST(CommandLineTargetsTest, IpmiIsPausedAndChoosesItsSuiteByDefault) {
    const ScanArguments scan = Scan({"--vesk", kTarget}).scan;
    EXPECT_EQ(scan.ipmi_port, 0);
    EXPECT_EQ(scan.ipmi_cipher, 0);
    EXPECT_EQ(scan.ipmi_interval_seconds, 1);
}

class CommandLineProtocolRangeTest
    : public testing::TestWithParam<std::pair<const char*, Arguments>> {};

TEST_P(CommandLineProtocolRangeTest, ValueOutsideItIsRefused) {
    Arguments arguments = {GetParam().first, kTarget};
    arguments.insert(arguments.end(), GetParam().second.begin(), GetParam().second.end());
    ExpectUsageError(Scan(arguments), GetParam().second.front());
}

INSTANTIATE_TEST_SUITE_P(Values, CommandLineProtocolRangeTest,
                         testing::Values(std::pair("--tolv", Arguments{"--cim-port", "0"}),
                                         std::pair("--tolv", Arguments{"--cim-port", "65536"}),
                                         std::pair("--vesk", Arguments{"--ipmi-port", "0"}),
                                         std::pair("--vesk", Arguments{"--ipmi-port", "65536"}),
                                         // Suite 0 would let anybody in.
                                         std::pair("--vesk", Arguments{"--ipmi-cipher", "0"}),
                                         std::pair("--vesk", Arguments{"--ipmi-cipher", "18"}),
                                         std::pair("--vesk", Arguments{"--ipmi-interval", "-1"})));

TEST(CommandLineTargetsTest, HelpHoldsTheModeTable) {
    for (const Arguments& arguments : {Arguments{"--help"}, Arguments{"scan", "--help"}}) {
        EXPECT_THAT(ParseCommandLine(arguments).text, HasSubstr(ModeTable()));
    }
}

class ModeTableTest : public testing::TestWithParam<const char*> {};

TEST_P(ModeTableTest, NamesTheOption) {
    EXPECT_THAT(ModeTable(), HasSubstr(std::string("\n  ") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Options, ModeTableTest,
                         testing::Values("--bmc", "--tolv ", "--tolv --switch BAY\n", "--esxi",
                                         "--vesk", "--inband [BMC]\n", "--amd [BMC]\n",
                                         "--local "));

TEST(ModeTableTest, FitsATerminalOfUsualWidth) {
    std::istringstream lines(ModeTable());
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 90U) << line;
}

}  // namespace
}  // namespace tarsel
