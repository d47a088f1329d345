// A scan over SSH: its options, and which ones go with it.
#include <gmock/gmock.h>

#include "scan_command_line.h"
#include "support/temporary_folder.h"

namespace tarsel {
namespace {

using testing::HasSubstr;

CommandLine RemoteScan(Arguments more) {
    Arguments arguments = {"scan", "--remoteos", "server7:2222"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return ParseCommandLine(arguments);
}

ScanArguments RemoteArguments(const Arguments& more) {
    return ScanOf(RemoteScan(more));
}

TEST(CommandLineRemoteTest, UserMayBeMissing) {
    const ScanArguments scan = RemoteArguments({});
    EXPECT_EQ(scan.kind, TargetKind::kRemoteOs);
    EXPECT_EQ(scan.host, "server7");
    EXPECT_EQ(scan.port, 2222);
    EXPECT_EQ(scan.user, "");
}

TEST(CommandLineRemoteTest, DefaultsAreSafe) {
    const ScanArguments scan = RemoteArguments({});
    EXPECT_EQ(scan.remote.host_key, "strict");
    EXPECT_EQ(scan.remote.known_hosts, "");
    EXPECT_EQ(scan.remote.key_file, "");
    EXPECT_FALSE(scan.remote.is_legacy);
    EXPECT_FALSE(scan.remote.keeps_folder);
    EXPECT_EQ(scan.remote.command, "");
}

TEST(CommandLineRemoteTest, EveryOptionIsTaken) {
    const test_support::TemporaryFolder folder;
    const std::string key = folder.Write("id", "x");
    const ScanArguments scan = RemoteArguments(
        {"--host-key", "accept-new", "--known-hosts", "hosts", "--ssh-key", key, "--ssh-legacy",
         "--ssh-passphrase-fd", "7", "--package-dir", folder.Path(""), "--remote-command",
         "{tarsel} scan --inband --output {folder}", "--keep-remote"});
    EXPECT_EQ(scan.remote.host_key, "accept-new");
    EXPECT_EQ(scan.remote.known_hosts, "hosts");
    EXPECT_EQ(scan.remote.key_file, key);
    EXPECT_EQ(scan.remote.passphrase.descriptor, 7);
    EXPECT_TRUE(scan.remote.is_legacy);
    EXPECT_EQ(scan.remote.package_dir, folder.Path(""));
    EXPECT_EQ(scan.remote.command, "{tarsel} scan --inband --output {folder}");
    EXPECT_TRUE(scan.remote.keeps_folder);
}

class CommandLineBadRemoteTest : public testing::TestWithParam<Arguments> {};

TEST_P(CommandLineBadRemoteTest, IsRefusedByName) {
    const CommandLine command = RemoteScan(GetParam());
    EXPECT_EQ(command.action, CommandLine::Action::kUsageError);
    EXPECT_THAT(command.text, HasSubstr(GetParam().front()));
}

INSTANTIATE_TEST_SUITE_P(
    Options, CommandLineBadRemoteTest,
    testing::Values(Arguments{"--host-key", "maybe"}, Arguments{"--ssh-key", "/nonexistent/id"},
                    Arguments{"--package-dir", "/nonexistent"},
                    Arguments{"--ssh-passphrase-fd", "-1"}, Arguments{"--insecure"},
                    Arguments{"--tls-legacy"}, Arguments{"--auth", "basic"},
                    Arguments{"--proxy", "http://127.0.0.1:1"}, Arguments{"--cim-port", "1"},
                    Arguments{"--sysroot", "/"}, Arguments{"--info-only"}));

class CommandLineNotRemoteTest : public testing::TestWithParam<Arguments> {};

TEST_P(CommandLineNotRemoteTest, MeansNothingForOtherTargets) {
    Arguments arguments = {"scan", "--bmc", "root@127.0.0.1"};
    arguments.insert(arguments.end(), GetParam().begin(), GetParam().end());
    const CommandLine command = ParseCommandLine(arguments);
    EXPECT_EQ(command.action, CommandLine::Action::kUsageError);
    EXPECT_EQ(command.text, GetParam().front() + " means nothing for --bmc.");
}

INSTANTIATE_TEST_SUITE_P(Options, CommandLineNotRemoteTest,
                         testing::Values(Arguments{"--host-key", "off"},
                                         Arguments{"--known-hosts", "x"}, Arguments{"--ssh-legacy"},
                                         Arguments{"--ssh-passphrase-file", "x"},
                                         Arguments{"--package-dir", "/"},
                                         Arguments{"--remote-command", "x"},
                                         Arguments{"--keep-remote"}));

}  // namespace
}  // namespace tarsel
