#include "tarsel/scan_options.h"

#include <gtest/gtest.h>

namespace tarsel {
namespace {

using Vantix::VantixConnection::AuthMethod;
using Vantix::VantixConnection::RunContext;

service::UpdateScanOption OptionFor(const ScanArguments& arguments) {
    return ScanOptionFor(arguments, {"FakePass1", "FakePhrase1"}, std::make_shared<RunContext>());
}

TEST(ScanOptionsTest, TargetAndLoginAreHandedOn) {
    ScanArguments arguments;
    arguments.host = "::1";
    arguments.port = 8443;
    arguments.user = "root";
    const auto run = std::make_shared<RunContext>();
    const auto connect = ScanOptionFor(arguments, {"FakePass1", ""}, run).connect_option;
    EXPECT_EQ(connect.connect_mode, 2);
    EXPECT_EQ(connect.target_address, "::1");
    EXPECT_EQ(connect.port, 8443);
    EXPECT_EQ(connect.user, "root");
    EXPECT_EQ(connect.password, "FakePass1");
    EXPECT_EQ(connect.run, run);
}

TEST(ScanOptionsTest, CertificatesAreCheckedUnlessRefused) {
    ScanArguments arguments;
    EXPECT_TRUE(OptionFor(arguments).connect_option.verify_certificate);
    arguments.is_insecure = true;
    EXPECT_FALSE(OptionFor(arguments).connect_option.verify_certificate);
}

TEST(ScanOptionsTest, TlsAndProxyOptionsAreHandedOn) {
    ScanArguments arguments;
    arguments.ca_file = "ca.pem";
    arguments.fingerprint = "AA";
    arguments.is_tls_legacy = true;
    arguments.proxy = "http://127.0.0.1:3128";
    arguments.use_environment_proxy = true;
    const auto connect = OptionFor(arguments).connect_option;
    EXPECT_EQ(connect.ca_file, "ca.pem");
    EXPECT_EQ(connect.fingerprint, "AA");
    EXPECT_TRUE(connect.legacy_tls);
    EXPECT_EQ(connect.proxy, "http://127.0.0.1:3128");
    EXPECT_TRUE(connect.use_environment_proxy);
}

TEST(ScanOptionsTest, PatienceIsHandedOn) {
    ScanArguments arguments;
    arguments.timeout_seconds = 1;
    arguments.connect_timeout_seconds = 2;
    arguments.inventory_timeout_seconds = 3;
    arguments.deadline_seconds = 4;
    arguments.max_parallel = 5;
    arguments.max_body_mib = 6;
    const auto connect = OptionFor(arguments).connect_option;
    EXPECT_EQ(connect.timeout_seconds, 1);
    EXPECT_EQ(connect.connect_timeout_seconds, 2);
    EXPECT_EQ(connect.inventory_timeout_seconds, 3);
    EXPECT_EQ(connect.deadline_seconds, 4);
    EXPECT_EQ(connect.max_parallel, 5);
    EXPECT_EQ(connect.max_body_bytes, 6U * 1024 * 1024);
}

TEST(ScanOptionsTest, EachLoginMethodHasItsWord) {
    ScanArguments arguments;
    EXPECT_EQ(OptionFor(arguments).connect_option.auth, AuthMethod::kAuto);
    arguments.auth = "session";
    EXPECT_EQ(OptionFor(arguments).connect_option.auth, AuthMethod::kSession);
    arguments.auth = "basic";
    EXPECT_EQ(OptionFor(arguments).connect_option.auth, AuthMethod::kBasic);
}

TEST(ScanOptionsTest, FlagsAndScopeOfTheScanAreHandedOn) {
    ScanArguments arguments;
    arguments.is_zelvar = true;
    arguments.is_csp_system = true;
    arguments.scan_type = "fw";
    arguments.output_dir = "out";
    arguments.system_id = "1";
    const auto option = OptionFor(arguments);
    EXPECT_TRUE(option.is_zelvar);
    EXPECT_FALSE(option.is_cfc_system);
    EXPECT_TRUE(option.is_csp_system);
    EXPECT_EQ(option.scan_type, "fw");
    EXPECT_EQ(option.output_dir, "out");
    EXPECT_EQ(option.connect_option.system_id, "1");
}

TEST(ScanOptionsTest, FactsAloneNeedNoInventory) {
    ScanArguments arguments;
    EXPECT_FALSE(OptionFor(arguments).connect_option.facts_only);
    arguments.is_info_only = true;
    EXPECT_TRUE(OptionFor(arguments).info_only);
    EXPECT_TRUE(OptionFor(arguments).connect_option.facts_only);
}

struct ModeCase {
    TargetKind kind;
    int mode;
};
class ScanOptionsModeTest : public testing::TestWithParam<ModeCase> {};

TEST_P(ScanOptionsModeTest, FollowsFromTheKindOfTarget) {
    ScanArguments arguments;
    arguments.kind = GetParam().kind;
    EXPECT_EQ(OptionFor(arguments).connect_option.connect_mode, GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ScanOptionsModeTest,
    testing::Values(ModeCase{TargetKind::kBmc, 2}, ModeCase{TargetKind::kChassis, 3},
                    ModeCase{TargetKind::kHypervisor, 4}, ModeCase{TargetKind::kIoSwitch, 5},
                    ModeCase{TargetKind::kEnclosure, 8}, ModeCase{TargetKind::kInBand, 1},
                    ModeCase{TargetKind::kAmd, 9}, ModeCase{TargetKind::kLocal, 16}));

TEST(ScanOptionsTest, RecordedTreeIsHandedOn) {
    ScanArguments arguments;
    EXPECT_EQ(OptionFor(arguments).connect_option.system_root, "");
    arguments.system_root = "recorded";
    EXPECT_EQ(OptionFor(arguments).connect_option.system_root, "recorded");
}

TEST(ScanOptionsTest, TablesListDriversWhereverTheyWereScanned) {
    EXPECT_EQ(TableScopeFor("all"), "dd");
    EXPECT_EQ(TableScopeFor("dd"), "dd");
    EXPECT_EQ(TableScopeFor("fw"), "fw");
}

TEST(ScanOptionsTest, BayIsHandedOn) {
    ScanArguments arguments;
    arguments.bay = 12;
    EXPECT_EQ(OptionFor(arguments).bay_id, 12);
}

TEST(ScanOptionsTest, CimOptionsAreHandedOn) {
    ScanArguments arguments;
    arguments.cim_port = 15989;
    arguments.is_cim_http = true;
    arguments.cim_namespace = "root/example";
    const auto connect = OptionFor(arguments).connect_option;
    EXPECT_EQ(connect.cim_port, 15989);
    EXPECT_TRUE(connect.cim_plain_http);
    EXPECT_EQ(connect.cim_namespace, "root/example");
}

TEST(ScanOptionsTest, IpmiOptionsAreHandedOn) {
    ScanArguments arguments;
    arguments.ipmi_port = 1623;
    arguments.ipmi_cipher = 3;
    arguments.ipmi_interval_seconds = 2;
    const auto connect = OptionFor(arguments).connect_option;
    EXPECT_EQ(connect.ipmi_port, 1623);
    EXPECT_EQ(connect.ipmi_cipher, 3);
    EXPECT_EQ(connect.ipmi_interval_ms, 2000);
}

TEST(ScanOptionsTest, ProtocolsAreLeftToThemselvesByDefault) {
    const auto connect = OptionFor(ScanArguments()).connect_option;
    EXPECT_EQ(connect.cim_port, 0);
    EXPECT_FALSE(connect.cim_plain_http);
    EXPECT_EQ(connect.cim_namespace, "");
    EXPECT_EQ(connect.ipmi_port, 0);
    EXPECT_EQ(connect.ipmi_cipher, 0);
    EXPECT_EQ(connect.ipmi_interval_ms, 1000);
}

ScanArguments RemoteArgumentsOf(const RemoteArguments& remote) {
    ScanArguments arguments;
    arguments.kind = TargetKind::kRemoteOs;
    arguments.host = "server7";
    arguments.remote = remote;
    return arguments;
}

TEST(ScanOptionsTest, RemoteScanIsHandedOn) {
    RemoteArguments remote;
    remote.key_file = "id";
    remote.known_hosts = "hosts";
    remote.is_legacy = true;
    remote.package_dir = "packages";
    remote.command = "{tarsel} scan --inband";
    remote.keeps_folder = true;
    const auto option = OptionFor(RemoteArgumentsOf(remote));
    EXPECT_EQ(option.connect_option.connect_mode, 11);
    EXPECT_EQ(option.connect_option.target_address, "server7");
    EXPECT_EQ(option.connect_option.ssh_key_file, "id");
    EXPECT_EQ(option.connect_option.ssh_key_passphrase, "FakePhrase1");
    EXPECT_EQ(option.connect_option.ssh_known_hosts, "hosts");
    EXPECT_TRUE(option.connect_option.legacy_ssh);
    EXPECT_EQ(option.package_dir, "packages");
    EXPECT_EQ(option.remote_command, "{tarsel} scan --inband");
    EXPECT_TRUE(option.remote_flag);
}

TEST(ScanOptionsTest, HostKeyWordsBecomePolicies) {
    using Vantix::VantixConnection::SshHostKeyPolicy;
    const auto policy_for = [](const std::string& word) {
        RemoteArguments remote;
        remote.host_key = word;
        return OptionFor(RemoteArgumentsOf(remote)).connect_option.ssh_host_key;
    };
    EXPECT_EQ(policy_for("strict"), SshHostKeyPolicy::kStrict);
    EXPECT_EQ(policy_for("accept-new"), SshHostKeyPolicy::kAcceptNew);
    EXPECT_EQ(policy_for("off"), SshHostKeyPolicy::kOff);
}

TEST(ScanOptionsTest, RemoteScanOfEverythingNeedsNoCommand) {
    EXPECT_EQ(OptionFor(RemoteArgumentsOf({})).remote_command, "");
}

TEST(ScanOptionsTest, ScopeOfARemoteScanTravelsInItsCommand) {
    ScanArguments arguments = RemoteArgumentsOf({});
    arguments.scan_type = "fw";
    EXPECT_EQ(OptionFor(arguments).remote_command,
              "{tarsel} scan --local --quiet --scantype fw --output {folder}");
}

}  // namespace
}  // namespace tarsel
