// The targets that are the machine the command runs on, and which options go with them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scan_command_line.h"
#include "support/temporary_folder.h"

namespace tarsel {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(CommandLineOwnMachineTest, LocalNeedsNothingElse) {
    const ScanArguments scan = ScanOf(Scan({"--local"}));
    EXPECT_EQ(scan.kind, TargetKind::kLocal);
    EXPECT_EQ(scan.host, "");
    EXPECT_EQ(scan.user, "");
}

struct OwnBmcCase {
    const char* option;
    TargetKind kind;
};
class CommandLineOwnBmcTest : public testing::TestWithParam<OwnBmcCase> {
  protected:
    static std::string Option() { return GetParam().option; }
};

TEST_P(CommandLineOwnBmcTest, NeedsNoAddressAndNoUser) {
    const ScanArguments scan = ScanOf(Scan({Option()}));
    EXPECT_EQ(scan.kind, GetParam().kind);
    EXPECT_EQ(scan.host, "");
    EXPECT_EQ(scan.user, "");
}

TEST_P(CommandLineOwnBmcTest, TakesNoOtherOptionForTheAddress) {
    const ScanArguments scan = ScanOf(Scan({Option(), "--scantype", "fw"}));
    EXPECT_EQ(scan.host, "");
    EXPECT_EQ(scan.scan_type, "fw");
}

TEST_P(CommandLineOwnBmcTest, AddressIsTakenApart) {
    const ScanArguments scan = ScanOf(Scan({Option(), "admin@[::1]:8443"}));
    EXPECT_EQ(scan.host, "::1");
    EXPECT_EQ(scan.port, 8443);
    EXPECT_EQ(scan.user, "admin");
}

TEST_P(CommandLineOwnBmcTest, AddressMayComeWithoutAUser) {
    const ScanArguments scan = ScanOf(Scan({Option(), "127.0.0.1"}));
    EXPECT_EQ(scan.host, "127.0.0.1");
    EXPECT_EQ(scan.user, "");
}

TEST_P(CommandLineOwnBmcTest, UserMayComeWithoutAnAddress) {
    const ScanArguments scan = ScanOf(Scan({Option(), "--user", "admin", "--password-fd", "7"}));
    EXPECT_EQ(scan.host, "");
    EXPECT_EQ(scan.user, "admin");
}

TEST_P(CommandLineOwnBmcTest, PasswordNeedsAUser) {
    ExpectUsageError(Scan({Option(), "--password-file", "x"}), "user name");
    ExpectUsageError(Scan({Option(), "127.0.0.1", "--password-stdin"}), "user name");
    ExpectUsageError(Scan({Option(), "--password-fd", "0"}), "user name");
}

TEST_P(CommandLineOwnBmcTest, AddressThatIsNoneIsRefused) {
    ExpectUsageError(Scan({Option(), "root@[::1"}), Option());
    ExpectUsageError(Scan({Option(), "127.0.0.1:0x50"}), Option());
}

TEST_P(CommandLineOwnBmcTest, IsGivenOnce) {
    ExpectUsageError(Scan({Option(), Option()}), Option());
}

TEST_P(CommandLineOwnBmcTest, PasswordInTheAddressIsRefusedAndNotRepeated) {
    const CommandLine command = Scan({Option(), "root:FakePass1@127.0.0.1"});
    EXPECT_EQ(command.action, CommandLine::Action::kUsageError);
    EXPECT_THAT(command.text, Not(HasSubstr("FakePass1")));
}

TEST_P(CommandLineOwnBmcTest, TakesTheOptionsOfItsProtocols) {
    const ScanArguments scan =
        ScanOf(Scan({Option(), "admin@127.0.0.1", "--insecure", "--ipmi-port", "1623", "--timeout",
                     "5", "--system-id", "1"}));
    EXPECT_TRUE(scan.is_insecure);
    EXPECT_EQ(scan.ipmi_port, 1623);
    EXPECT_EQ(scan.timeout_seconds, 5);
    EXPECT_EQ(scan.system_id, "1");
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineOwnBmcTest,
                         testing::Values(OwnBmcCase{"--inband", TargetKind::kInBand},
                                         OwnBmcCase{"--amd", TargetKind::kAmd}));

TEST(CommandLineOwnMachineTest, InBandScanTakesFactsAloneAndCim) {
    const ScanArguments scan =
        ScanOf(Scan({"--inband", "--info-only", "--zelvar", "--cim-port", "1"}));
    EXPECT_TRUE(scan.is_info_only);
    EXPECT_TRUE(scan.is_zelvar);
    EXPECT_EQ(scan.cim_port, 1);
}

TEST(CommandLineOwnMachineTest, AmdScanTakesTheClassesOfItsSystems) {
    const ScanArguments scan = ScanOf(Scan({"--amd", "--cfc", "--csp"}));
    EXPECT_TRUE(scan.is_cfc_system);
    EXPECT_TRUE(scan.is_csp_system);
}

class CommandLineMisplacedOptionTest : public testing::TestWithParam<Arguments> {};

TEST_P(CommandLineMisplacedOptionTest, IsNamedTogetherWithTheTarget) {
    const Arguments& arguments = GetParam();
    ExpectUsageError(Scan(arguments), arguments[1].substr(0, arguments[1].find('=')) +
                                          " means nothing for " + arguments[0] + ".");
}

INSTANTIATE_TEST_SUITE_P(
    Options, CommandLineMisplacedOptionTest,
    testing::Values(
        Arguments{"--local", "--user=admin"}, Arguments{"--local", "--password-file=x"},
        Arguments{"--local", "--password-fd=7"}, Arguments{"--local", "--password-stdin"},
        Arguments{"--local", "--insecure"}, Arguments{"--local", "--tls-legacy"},
        Arguments{"--local", "--proxy=http://127.0.0.1:3128"},
        Arguments{"--local", "--use-env-proxy"}, Arguments{"--local", "--auth=basic"},
        Arguments{"--local", "--timeout=5"}, Arguments{"--local", "--deadline=5"},
        Arguments{"--local", "--connect-timeout=5"}, Arguments{"--local", "--inventory-timeout=5"},
        Arguments{"--local", "--per-target-parallel=1"}, Arguments{"--local", "--login-attempts=1"},
        Arguments{"--local", "--max-body=1"}, Arguments{"--local", "--cim-port=5989"},
        Arguments{"--local", "--ipmi-port=623"}, Arguments{"--local", "--info-only"},
        Arguments{"--local", "--system-id=1"}, Arguments{"--local", "--zelvar"},
        Arguments{"--local", "--cfc"}, Arguments{"--inband", "--csp"},
        Arguments{"--amd", "--info-only"}, Arguments{"--amd", "--zelvar"},
        Arguments{"--amd", "--cim-http"}, Arguments{"--inband", "--switch=1"}));

class CommandLineSysrootTest : public testing::TestWithParam<const char*> {
  protected:
    const test_support::TemporaryFolder folder_;
};

TEST_P(CommandLineSysrootTest, FolderIsTaken) {
    EXPECT_EQ(ScanOf(Scan({GetParam(), "--sysroot", folder_.Path("")})).system_root,
              folder_.Path(""));
}

TEST_P(CommandLineSysrootTest, WhatIsNoFolderIsRefused) {
    ExpectUsageError(Scan({GetParam(), "--sysroot", folder_.Path("missing")}), "--sysroot");
    ExpectUsageError(Scan({GetParam(), "--sysroot", folder_.Write("file", "")}), "--sysroot");
    ExpectUsageError(Scan({GetParam(), "--sysroot="}), "--sysroot");
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineSysrootTest,
                         testing::Values("--inband", "--amd", "--local"));

TEST(CommandLineOwnMachineTest, RemoteTargetHasNoRecordedTree) {
    const test_support::TemporaryFolder folder;
    ExpectUsageError(Scan({"--bmc", "root@127.0.0.1", "--sysroot", folder.Path("")}),
                     "--sysroot means nothing for --bmc.");
}

}  // namespace
}  // namespace tarsel
