// Logging in and out of a service over real TLS, as a scan does it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "integration/platform/redfish/bmc_scan.h"
#include "platform/log/log_settings.h"
#include "support/environment.h"

namespace Vantix::redfish {
namespace {

using simulators::BmcCounts;
using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::Fault;
using ::testing::HasSubstr;
using ::testing::Not;
using VantixConnection::AuthMethod;
using VantixConnection::ConnectOption;

void ExpectOneSessionEnded(const BmcSimulator& bmc) {
    const BmcCounts counts = bmc.Counts();
    EXPECT_EQ(counts.sessions_made, 1);
    EXPECT_EQ(counts.sessions_ended, 1);
    EXPECT_EQ(counts.sessions_open, 0);
}

// ---- wrong passwords ---------------------------------------------------------------------------

class WrongPasswordScanTest : public ::testing::TestWithParam<AuthMethod> {};

TEST_P(WrongPasswordScanTest, ReachesTheServiceOnce) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.password = "not-the-password";
    option.auth = GetParam();
    const ScanOutcome outcome = Scan(option);
    EXPECT_EQ(outcome.connection.code, AUTHENTICATION_FAILED);
    EXPECT_THAT(outcome.connection.message, Not(HasSubstr("not-the-password")));
    EXPECT_EQ(bmc.Counts().logins_refused, 1);
    EXPECT_EQ(bmc.Counts().sessions_made, 0);
}

TEST_P(WrongPasswordScanTest, SpendsTheBudgetOfTheRun) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.password = "not-the-password";
    option.auth = GetParam();
    Scan(option);
    const int asked = bmc.Counts().requests;
    EXPECT_EQ(Scan(option).connection.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(bmc.Counts().requests, asked);
}

INSTANTIATE_TEST_SUITE_P(All, WrongPasswordScanTest,
                         ::testing::Values(AuthMethod::kAuto, AuthMethod::kSession,
                                           AuthMethod::kBasic));

TEST(WrongPasswordTest, AtARootThatWantsALoginReachesTheServiceOnce) {
    BmcOptions options = Scenario("rack-server");
    options.root_needs_login = true;
    BmcSimulator bmc(options);
    ConnectOption option = OptionFor(bmc);
    option.password = "not-the-password";
    EXPECT_EQ(Scan(option).connection.code, AUTHENTICATION_FAILED);
    EXPECT_EQ(bmc.Counts().logins_refused, 1);
}

TEST(WrongPasswordTest, DoesNotLockTheAccountThatLocksAfterTwo) {
    BmcOptions options = Scenario("rack-server");
    options.lock_out_after = 2;
    BmcSimulator bmc(options);
    ConnectOption option = OptionFor(bmc);
    option.password = "not-the-password";
    Scan(option);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
}

TEST(PasswordTextTest, AnyCharactersLogInBySessionAndByBasic) {
    BmcOptions options = Scenario("thin-inventory");
    options.password = "p:\xC3\xA4\"\\ $";
    BmcSimulator bmc(options);
    for (const AuthMethod method : {AuthMethod::kSession, AuthMethod::kBasic}) {
        ConnectOption option = OptionFor(bmc);
        option.auth = method;
        EXPECT_TRUE(Scan(option).connection.IsSucceed());
    }
    EXPECT_EQ(bmc.Counts().logins_refused, 0);
}

// ---- trust ------------------------------------------------------------------------------------

TEST(UntrustedServiceTest, GetsNoRequestAndNoCredentials) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.ca_file.clear();
    const ScanOutcome outcome = Scan(option);
    EXPECT_EQ(outcome.connection.code, VERIFY_CERTIFICATE_FAILED);
    EXPECT_THAT(outcome.connection.message, HasSubstr("--ca-file"));
    EXPECT_EQ(bmc.Counts().requests, 0);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

TEST(UntrustedServiceTest, WithBasicGetsNoCredentialsEither) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.ca_file.clear();
    option.auth = AuthMethod::kBasic;
    EXPECT_EQ(Scan(option).connection.code, VERIFY_CERTIFICATE_FAILED);
    EXPECT_EQ(bmc.Counts().requests, 0);
}

TEST(TrustedServiceTest, FingerprintAloneIsEnough) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.ca_file.clear();
    option.fingerprint = bmc.Fingerprint();
    EXPECT_TRUE(Scan(option).Succeeded());
}

TEST(TrustedServiceTest, UncheckedCertificateIsTheUsersWish) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.ca_file.clear();
    option.verify_certificate = false;
    EXPECT_TRUE(Scan(option).Succeeded());
}

TEST(ProxyTest, OfTheEnvironmentIsIgnored) {
    BmcSimulator bmc(Scenario("rack-server"));
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY"}) {
        test_support::SetVariable(name, "http://127.0.0.1:9");
    }
    const ScanOutcome outcome = Scan(OptionFor(bmc));
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY"}) {
        test_support::SetVariable(name, nullptr);
    }
    EXPECT_TRUE(outcome.Succeeded());
}

TEST(AddressTest, Ipv6ServiceIsScanned) {
    BmcOptions options = Scenario("thin-inventory");
    options.listen_ipv6 = true;
    BmcSimulator bmc(options);
    ConnectOption option = OptionFor(bmc);
    option.target_address = "::1";
    EXPECT_TRUE(Scan(option).connection.IsSucceed());
}

// ---- methods -----------------------------------------------------------------------------------

TEST(SessionScanTest, MakesOneSessionAndEndsIt) {
    BmcSimulator bmc(Scenario("rack-server"));
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    ExpectOneSessionEnded(bmc);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

TEST(SessionScanTest, LastCopyOfAConnectionEndsTheSession) {
    BmcSimulator bmc(Scenario("rack-server"));
    VantixConnection::ConnectionInfo first;
    ASSERT_TRUE(GetRESTConnection(OptionFor(bmc), first).IsSucceed());
    VantixConnection::ConnectionInfo second = first;
    first = {};
    EXPECT_EQ(bmc.Counts().sessions_ended, 0);
    second = {};
    ExpectOneSessionEnded(bmc);
}

class SessionAddressTest : public ::testing::TestWithParam<simulators::LocationStyle> {};

TEST_P(SessionAddressTest, IsFoundAndDeleted) {
    BmcOptions options = Scenario("rack-server");
    options.session_location = GetParam();
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    ExpectOneSessionEnded(bmc);
}

TEST_P(SessionAddressTest, IsFoundWithoutAddressInTheBody) {
    BmcOptions options = Scenario("rack-server");
    options.session_location = GetParam();
    options.session_body_has_odata_id = false;
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    ExpectOneSessionEnded(bmc);
}

INSTANTIATE_TEST_SUITE_P(All, SessionAddressTest,
                         ::testing::Values(simulators::LocationStyle::kRelative,
                                           simulators::LocationStyle::kAbsolute,
                                           simulators::LocationStyle::kPlainHttp,
                                           simulators::LocationStyle::kMissing));

TEST(SessionScanTest, ServiceThatRejectsAuthorizationAtTheLoginIsScanned) {
    BmcOptions options = Scenario("rack-server");
    options.refuse_basic_on_login = true;
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
}

TEST(SessionScanTest, RootThatWantsALoginIsReadWithTheSession) {
    BmcOptions options = Scenario("rack-server");
    options.root_needs_login = true;
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    ExpectOneSessionEnded(bmc);
}

TEST(SessionScanTest, RedirectOfTheLoginKeepsMethodAndBody) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule;
    rule.method = "POST";
    rule.times = 1;
    rule.fault.kind = Fault::Kind::kRedirect;
    rule.fault.status = 301;
    rule.fault.location = "/redfish/v1/SessionService/Sessions/";
    bmc.SetFaults({rule});
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    const BmcCounts counts = bmc.Counts();
    EXPECT_EQ(counts.authorization_headers_seen, 0);
    EXPECT_EQ(counts.logins_refused, 0);
    EXPECT_EQ(counts.RequestsTo("/redfish/v1/SessionService/Sessions/"), 1);
    // The simulator also makes a session for the login that it redirects; nobody can know that one.
    EXPECT_EQ(counts.sessions_made, 2);
    EXPECT_EQ(counts.sessions_ended, 1);
}

TEST(SessionScanTest, RedirectToAnotherHostLeavesThatHostUntouched) {
    BmcSimulator other(Scenario("rack-server"));
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule = FaultAt("/FirmwareInventory", Fault::Kind::kRedirect, 307);
    rule.fault.location = other.Url() + "/redfish/v1/UpdateService/FirmwareInventory";
    bmc.SetFaults({rule});
    EXPECT_FALSE(ScanImpatiently(OptionFor(bmc)).Succeeded());
    EXPECT_EQ(other.Counts().connections, 0);
    ExpectOneSessionEnded(bmc);
}

TEST(BasicScanTest, IsUsedWhereSessionsAreRefused) {
    BmcOptions options = Scenario("rack-server");
    options.allow_session = false;
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    EXPECT_GT(bmc.Counts().basic_requests, 0);
}

TEST(BasicScanTest, IsUsedWhereSlotsAreFull) {
    BmcOptions options = Scenario("rack-server");
    options.session_refusal_status = 503;
    options.session_refusal_message_id = "Base.1.12.SessionLimitExceeded";
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
}

TEST(BasicScanTest, IsNotUsedOnTheWishForSessionsOnly) {
    BmcOptions options = Scenario("rack-server");
    options.session_refusal_status = 503;
    options.session_refusal_message_id = "Base.1.12.SessionLimitExceeded";
    BmcSimulator bmc(options);
    ConnectOption option = OptionFor(bmc);
    option.auth = AuthMethod::kSession;
    EXPECT_EQ(Scan(option).connection.code, NO_AVAILABLE_USER_ID);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

TEST(BasicScanTest, MakesNoSessionOnTheWishForBasicOnly) {
    BmcSimulator bmc(Scenario("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.auth = AuthMethod::kBasic;
    EXPECT_TRUE(Scan(option).Succeeded());
    EXPECT_EQ(bmc.Counts().sessions_made, 0);
}

TEST(BasicScanTest, IsNotUsedAfterANetworkFaultAtTheLogin) {
    BmcSimulator bmc(Scenario("rack-server"));
    simulators::FaultRule rule;
    rule.method = "POST";
    rule.fault.kind = Fault::Kind::kReset;
    bmc.SetFaults({rule});
    EXPECT_EQ(ScanImpatiently(OptionFor(bmc)).connection.code, CONNECTION_FAILED);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

// ---- sessions that end early ----------------------------------------------------------------

TEST(ExpiredSessionTest, OneNewLoginSavesTheScan) {
    BmcOptions options = Scenario("rack-server");
    options.token_lifetime_requests = 5;
    options.tokens_that_expire = 1;
    BmcSimulator bmc(options);
    EXPECT_TRUE(Scan(OptionFor(bmc)).Succeeded());
    EXPECT_EQ(bmc.Counts().sessions_made, 2);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

TEST(ExpiredSessionTest, SecondEndIsALostLoginWithThePartialListKept) {
    BmcOptions options = Scenario("rack-server");
    options.expand = simulators::ExpandMode::kUnsupported;
    options.token_lifetime_requests = 15;
    BmcSimulator bmc(options);
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    EXPECT_EQ(outcome.identities_code, AUTHENTICATION_FAILED);
    EXPECT_FALSE(outcome.identities.empty());
    EXPECT_EQ(bmc.Counts().sessions_made, 2);
    EXPECT_EQ(bmc.Counts().sessions_open, 0);
}

TEST(PasswordChangeTest, SaidAtTheLoginStopsWithTheAccountNamed) {
    BmcOptions options = Scenario("rack-server");
    options.password_change = simulators::PasswordChange::kSaidAtLogin;
    BmcSimulator bmc(options);
    const ScanOutcome outcome = Scan(OptionFor(bmc));
    EXPECT_EQ(outcome.connection.code, PASSWORD_MUST_BE_CHANGED);
    EXPECT_THAT(outcome.connection.message, HasSubstr(options.user));
    ExpectOneSessionEnded(bmc);
}

TEST(PasswordChangeTest, SaidByEverythingElseIsToldAndTheSessionEnded) {
    BmcOptions options = Scenario("rack-server");
    options.password_change = simulators::PasswordChange::kForbidsTheRest;
    BmcSimulator bmc(options);
    const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
    const bool at_once = outcome.connection == PASSWORD_MUST_BE_CHANGED;
    EXPECT_TRUE(at_once || outcome.machine_type_code == PASSWORD_MUST_BE_CHANGED);
    EXPECT_EQ(bmc.Counts().sessions_made, 1);
}

TEST(LicenceTest, MissingOneCostsThatMemberAndNoLogin) {
    BmcOptions options = Scenario("rack-server");
    options.expand = simulators::ExpandMode::kUnsupported;
    BmcSimulator bmc(options);
    simulators::FaultRule rule =
        FaultAt("/FirmwareInventory/BMC-Primary", Fault::Kind::kStatus, 403);
    rule.fault.message_id = "Base.1.12.LicenseRequired";
    bmc.SetFaults({rule});
    const ConnectOption option = OptionFor(bmc);
    const ScanOutcome outcome = ScanImpatiently(option);
    EXPECT_FALSE(outcome.identities.empty());
    EXPECT_EQ(bmc.Counts().sessions_made, 1);
    EXPECT_EQ(bmc.Counts().logins_refused, 0);
}

// ---- ways out ---------------------------------------------------------------------------------

TEST(WayOutTest, CancelledScanEndsItsSession) {
    BmcSimulator bmc(Scenario("rack-server"));
    const ConnectOption option = OptionFor(bmc);
    VantixConnection::ConnectionInfo connection;
    ASSERT_TRUE(GetRESTConnection(option, connection).IsSucceed());
    option.run->Cancel();
    connection = {};
    ExpectOneSessionEnded(bmc);
}

TEST(WayOutTest, ConnectionReleasedAtOnceReadsNothingMore) {
    BmcOptions options = Scenario("rack-server");
    options.latency = std::chrono::milliseconds(20);
    BmcSimulator bmc(options);
    VantixConnection::ConnectionInfo connection;
    ASSERT_TRUE(GetRESTConnection(OptionFor(bmc), connection).IsSucceed());
    connection = {};
    ExpectOneSessionEnded(bmc);
    EXPECT_LE(bmc.Counts().requests, 6);  // root, login, what was under way, log-out
}

TEST(WayOutTest, UsedUpTimeEndsTheSession) {
    BmcSimulator bmc(Scenario("rack-server"));
    bmc.SetFaults({FaultAt("/FirmwareInventory", Fault::Kind::kSilent)});
    ConnectOption option = OptionFor(bmc);
    option.deadline_seconds = 1;
    EXPECT_EQ(ScanImpatiently(option).identities_code, TIMEOUT);
    ExpectOneSessionEnded(bmc);
}

TEST(WayOutTest, UsedUpTimeMakesAScanPartialWhateverIsMissing) {
    for (const char* const missing : {"/Storage/RAID1/Drives", "/PowerSupplies"}) {
        BmcSimulator bmc(Scenario("rack-server"));
        bmc.SetFaults({FaultAt(missing, Fault::Kind::kSilent)});
        ConnectOption option = OptionFor(bmc);
        option.deadline_seconds = 1;
        EXPECT_EQ(ScanImpatiently(option).identities_code, SUCCEED) << missing;
        EXPECT_TRUE(option.run->IsPartial()) << missing;
    }
}

}  // namespace
}  // namespace Vantix::redfish
