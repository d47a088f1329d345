// How CIM connections come about, and what is said when they do not.
#include <gtest/gtest.h>

#include <algorithm>

#include "cim_machine.h"
#include "common/result/result_codes.h"
#include "platform/system_info/system_info.h"

namespace Vantix::VantixConnection {
namespace {

using simulators::Fault;

TarselResult Fetch(const ConnectOption& option) {
    std::vector<ConnectionInfo> list{ConnectionInfo()};
    TarselResult result = FetchCIMConnectionList(option, list);
    EXPECT_EQ(list.size(), result.IsSucceed() ? 1U : 0U);
    return result;
}

bool Says(const TarselResult& result, const std::string& part) {
    return result.message.find(part) != std::string::npos;
}

class CimConnectionTest : public ::testing::Test {
  protected:
    TarselResult FetchWithFault(Fault::Kind kind, int status = 200) {
        simulators::FaultRule rule;
        rule.fault.kind = kind;
        rule.fault.status = status;
        bmc_.SetFaults({rule});
        ConnectOption option = OptionFor(bmc_);
        option.timeout_seconds = 1;
        return Fetch(option);
    }

    simulators::BmcSimulator bmc_{Machine("cim-only-bmc")};
};

TEST_F(CimConnectionTest, HeadersReachTheServiceAsTheyStand) {
    EXPECT_TRUE(Fetch(OptionFor(bmc_)).IsSucceed());

    const auto log = bmc_.Counts().log;
    ASSERT_FALSE(log.empty());
    const auto& headers = log.front().headers;
    EXPECT_EQ(*simulators::FindHeader(headers, "Content-Type"),
              "application/xml; charset=\"utf-8\"");
    EXPECT_EQ(*simulators::FindHeader(headers, "CIMOperation"), "MethodCall");
    EXPECT_EQ(*simulators::FindHeader(headers, "CIMMethod"), "EnumerateInstances");
    EXPECT_EQ(*simulators::FindHeader(headers, "CIMObject"), "root%2Fcimv2");
    const auto has_name = [&headers](const std::string& name) {
        return std::any_of(headers.begin(), headers.end(),
                           [&name](const auto& header) { return header.first == name; });
    };
    EXPECT_TRUE(has_name("CIMOperation") && has_name("CIMMethod") && has_name("CIMObject"));
}

TEST_F(CimConnectionTest, NamespacesAreTriedInOrder) {
    EXPECT_TRUE(Fetch(OptionFor(bmc_)).IsSucceed());

    std::vector<std::string> asked;
    for (const auto& request : bmc_.Counts().log) {
        asked.push_back(*simulators::FindHeader(request.headers, "CIMObject"));
    }
    EXPECT_EQ(asked, (std::vector<std::string>{"root%2Fcimv2", "root%2Finterop"}));
}

TEST_F(CimConnectionTest, NamedNamespaceIsTheOnlyOneAsked) {
    ConnectOption option = OptionFor(bmc_);
    option.cim_namespace = "root/interop";

    EXPECT_TRUE(Fetch(option).IsSucceed());
    EXPECT_EQ(bmc_.Counts().requests, 1);
}

TEST_F(CimConnectionTest, WrongNamespaceIsNoCimService) {
    ConnectOption option = OptionFor(bmc_);
    option.cim_namespace = "root/nowhere";

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == NO_CIM_SERVICE) << result;
    EXPECT_TRUE(Says(result, "--cim-namespace"));
}

TEST_F(CimConnectionTest, WrongPasswordIsOneRefusedLogin) {
    ConnectOption option = OptionFor(bmc_);
    option.password = "wrong";

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == AUTHENTICATION_FAILED) << result;
    EXPECT_TRUE(Says(result, "role")) << result;
    EXPECT_EQ(bmc_.Counts().logins_refused, 1);
    EXPECT_FALSE(option.run->MayTryLogin());
}

TEST_F(CimConnectionTest, SpentBudgetSendsNothing) {
    const ConnectOption option = OptionFor(bmc_);
    option.run->LoginRefused("over another protocol");

    EXPECT_TRUE(Fetch(option) == AUTHENTICATION_FAILED);
    EXPECT_EQ(bmc_.Counts().connections, 0);
}

TEST_F(CimConnectionTest, RedfishAndCimShareOneLoginBudget) {
    simulators::BmcSimulator bmc(Machine("rack-server"));
    ConnectOption option = OptionFor(bmc);
    option.password = "wrong";
    ConnectionInfo ignored;

    EXPECT_TRUE(GetRESTConnection(option, ignored) == AUTHENTICATION_FAILED);
    EXPECT_TRUE(Fetch(option) == AUTHENTICATION_FAILED);
    EXPECT_EQ(bmc.Counts().logins_refused, 1);
}

TEST_F(CimConnectionTest, UntrustedCertificateGetsNoLogin) {
    ConnectOption option = OptionFor(bmc_);
    option.ca_file.clear();

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == VERIFY_CERTIFICATE_FAILED) << result;
    EXPECT_EQ(bmc_.Counts().authorization_headers_seen, 0);
    EXPECT_EQ(bmc_.Counts().requests, 0);
}

TEST_F(CimConnectionTest, WrongFingerprintGetsNoLogin) {
    ConnectOption option = OptionFor(bmc_);
    option.fingerprint = std::string(64, 'a');

    EXPECT_TRUE(Fetch(option) == VERIFY_CERTIFICATE_FAILED);
    EXPECT_EQ(bmc_.Counts().requests, 0);
}

TEST_F(CimConnectionTest, RightFingerprintIsTrusted) {
    ConnectOption option = OptionFor(bmc_);
    option.ca_file.clear();
    option.fingerprint = bmc_.Fingerprint();

    EXPECT_TRUE(Fetch(option).IsSucceed());
}

TEST_F(CimConnectionTest, ClosedPortOfALivingBmcIsDisabledCim) {
    ConnectOption option = OptionFor(bmc_);
    option.cim_port = ClosedPort();

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == CIM_OVER_HTTPS_DISABLED) << result;
    EXPECT_EQ(bmc_.Counts().authorization_headers_seen, 0);
}

TEST_F(CimConnectionTest, ClosedPortOfADeadBmcIsNotReachable) {
    ConnectOption option = OptionFor(bmc_);
    option.cim_port = option.port = ClosedPort();

    EXPECT_TRUE(Fetch(option) == CONNECTION_FAILED);
}

TEST_F(CimConnectionTest, ClosedPortOfAChassisIsNotReachable) {
    ConnectOption option = OptionFor(bmc_, kConnectModeChassis);
    option.cim_port = ClosedPort();

    EXPECT_TRUE(Fetch(option) == CONNECTION_FAILED);
}

TEST_F(CimConnectionTest, WebServerIsNoCimService) {
    simulators::BmcOptions options;
    options.replaced_bodies["/redfish/v1"] = R"({"Name":"Root"})";
    const simulators::BmcSimulator web(options);

    const TarselResult result = Fetch(OptionFor(web));

    EXPECT_TRUE(result == NO_CIM_SERVICE) << result;
}

TEST_F(CimConnectionTest, WebPageIsNoCimService) {
    EXPECT_TRUE(FetchWithFault(Fault::Kind::kHtml) == NO_CIM_SERVICE);
    EXPECT_TRUE(FetchWithFault(Fault::Kind::kStatus, 404) == NO_CIM_SERVICE);
}

TEST_F(CimConnectionTest, SilentServiceTimesOutWithoutARetry) {
    const TarselResult result = FetchWithFault(Fault::Kind::kSilent);

    EXPECT_TRUE(result == TIMEOUT) << result;
    EXPECT_TRUE(Says(result, "restart the CIM service"));
    EXPECT_EQ(bmc_.Counts().requests, 1);
}

TEST_F(CimConnectionTest, ResetIsTriedOnceMoreOnAFreshConnection) {
    EXPECT_TRUE(FetchWithFault(Fault::Kind::kReset) == CONNECTION_FAILED);
    EXPECT_EQ(bmc_.Counts().requests, 2);
    EXPECT_EQ(bmc_.Counts().connections, 2);
}

TEST_F(CimConnectionTest, UnavailableServiceIsAskedOnce) {
    EXPECT_TRUE(FetchWithFault(Fault::Kind::kStatus, 503) == BMC_INTERNAL_ERROR);
    EXPECT_EQ(bmc_.Counts().requests, 1);
}

TEST_F(CimConnectionTest, HiddenErrorIsPutIntoTheMessage) {
    simulators::FaultRule rule;
    rule.fault.status = 500;
    rule.fault.headers = {{"CIMError", "request-not-valid"}, {"PGErrorDetail", "no%20memory"}};
    bmc_.SetFaults({rule});

    const TarselResult result = Fetch(OptionFor(bmc_));

    EXPECT_TRUE(Says(result, "request-not-valid; no memory")) << result;
}

TEST_F(CimConnectionTest, OddHeadersAndChunksAreRead) {
    simulators::FaultRule rule;
    for (const auto kind : {Fault::Kind::kOddHeaders, Fault::Kind::kChunked, Fault::Kind::kGzip}) {
        rule.fault.kind = kind;
        rule.fault.drip_bytes = 7;
        bmc_.SetFaults({rule});
        const auto connection = Connect(OptionFor(bmc_));
        std::pair<std::string, std::string> machine;
        EXPECT_EQ(SystemInfoScan::GetMachineType(connection, machine), SUCCEED);
        EXPECT_EQ(machine.first, "EXRS-1000");
    }
}

TEST_F(CimConnectionTest, SlowAnswerThatKeepsComingIsNotCut) {
    simulators::FaultRule rule;
    rule.fault.kind = Fault::Kind::kSlowDrip;
    rule.fault.drip_bytes = 400;
    rule.fault.drip_interval = std::chrono::milliseconds(300);
    bmc_.SetFaults({rule});
    ConnectOption option = OptionFor(bmc_);
    option.timeout_seconds = 1;

    EXPECT_TRUE(Fetch(option).IsSucceed());
}

TEST_F(CimConnectionTest, DeadlineEndsASilentService) {
    simulators::FaultRule rule;
    rule.fault.kind = Fault::Kind::kSilent;
    bmc_.SetFaults({rule});
    ConnectOption option = OptionFor(bmc_);
    option.deadline_seconds = 1;

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == TIMEOUT) << result;
    EXPECT_TRUE(Says(result, "--deadline"));
}

TEST_F(CimConnectionTest, HugeAnswerIsRefused) {
    ConnectOption option = OptionFor(bmc_);
    option.max_body_bytes = 300;

    EXPECT_TRUE(Fetch(option) == CONNECTION_FAILED);
}

TEST_F(CimConnectionTest, InterruptedRunConnectsNowhere) {
    const ConnectOption option = OptionFor(bmc_);
    option.run->Cancel();

    EXPECT_TRUE(Fetch(option) == INTERRUPTED_BY_USER);
    EXPECT_EQ(bmc_.Counts().connections, 0);
}

TEST_F(CimConnectionTest, DefaultIsTlsAlone) {
    simulators::BmcOptions options = Machine("cim-only-bmc");
    options.plain_http = true;
    const simulators::BmcSimulator plain(options);

    EXPECT_FALSE(Fetch(OptionFor(plain)).IsSucceed());
    EXPECT_EQ(plain.Counts().requests, 0);
}

TEST_F(CimConnectionTest, PlainHttpSendsNoLoginWhileCertificatesMatter) {
    simulators::BmcOptions options = Machine("cim-only-bmc");
    options.plain_http = true;
    const simulators::BmcSimulator plain(options);
    ConnectOption option = OptionFor(plain);
    option.cim_plain_http = true;

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == AUTHENTICATION_FAILED) << result;
    EXPECT_EQ(plain.Counts().authorization_headers_seen, 0);
    EXPECT_TRUE(option.run->MayTryLogin());
}

TEST_F(CimConnectionTest, PlainHttpWithoutVerificationLogsInAndSaysSo) {
    simulators::BmcOptions options = Machine("cim-only-bmc");
    options.plain_http = true;
    const simulators::BmcSimulator plain(options);
    ConnectOption option = OptionFor(plain);
    option.cim_plain_http = true;
    option.verify_certificate = false;

    EXPECT_TRUE(Fetch(option).IsSucceed());
    ASSERT_EQ(option.run->Notices().size(), 1U);
    EXPECT_NE(option.run->Notices()[0].find("travel unprotected"), std::string::npos);
}

TEST_F(CimConnectionTest, EarlierFailureOfTheTargetItselfIsRepeated) {
    for (const int code : {int{AUTHENTICATION_FAILED}, int{VERIFY_CERTIFICATE_FAILED},
                           int{PASSWORD_MUST_BE_CHANGED}, int{INTERRUPTED_BY_USER}}) {
        const ConnectOption option = OptionFor(bmc_);
        option.run->RecordFailure(TarselResult(code, "earlier"), true);
        const TarselResult result = Fetch(option);
        EXPECT_TRUE(result == code);
        EXPECT_EQ(result.message, "earlier");
    }
    EXPECT_EQ(bmc_.Counts().connections, 0);
}

TEST_F(CimConnectionTest, HostThatNobodyReachesIsNotTriedAgain) {
    for (const int code : {int{CONNECTION_FAILED}, int{TIMEOUT}}) {
        const ConnectOption option = OptionFor(bmc_);
        option.run->RecordFailure(TarselResult(code, "earlier"));
        EXPECT_EQ(Fetch(option).message, "earlier");
    }
    EXPECT_EQ(bmc_.Counts().connections, 0);
}

TEST_F(CimConnectionTest, OnePortThatFailedIsNoReasonNotToTryTheOther) {
    for (const int code : {int{CONNECTION_FAILED}, int{TIMEOUT}, int{NO_AVAILABLE_USER_ID}}) {
        const ConnectOption option = OptionFor(bmc_);
        option.run->RecordFailure(TarselResult(code, "earlier"), true);
        EXPECT_TRUE(Fetch(option).IsSucceed()) << code;
    }
}

TEST_F(CimConnectionTest, BothFailuresAreToldWhenCimFailsToo) {
    ConnectOption option = OptionFor(bmc_);
    option.run->RecordFailure(TarselResult(NO_RESTFUL_SERVICE, "no Redfish there"), true);
    option.cim_port = option.port = ClosedPort();

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == CONNECTION_FAILED) << result;
    EXPECT_TRUE(Says(result, "(Over Redfish: no Redfish there)")) << result;
}

TEST_F(CimConnectionTest, FailureOfTheOnlyServiceThereIsTheOneToMend) {
    ConnectOption option = OptionFor(bmc_);
    option.run->RecordFailure(TarselResult(GET_RESTFUL_DATA_FAILED, "Redfish is sick."), true);
    option.cim_port = ClosedPort();

    const TarselResult result = Fetch(option);

    EXPECT_TRUE(result == GET_RESTFUL_DATA_FAILED) << result;
    EXPECT_TRUE(Says(result, "Redfish is sick. (Nor over CIM: CIM over HTTPS is disabled"))
        << result;
}

TEST_F(CimConnectionTest, FailureOfACimServiceCountsMoreThanTheEarlierOne) {
    simulators::FaultRule rule;
    rule.fault.status = 500;
    bmc_.SetFaults({rule});
    const ConnectOption option = OptionFor(bmc_);
    option.run->RecordFailure(TarselResult(GET_RESTFUL_DATA_FAILED, "Redfish is sick."), true);

    EXPECT_TRUE(Fetch(option) == BMC_INTERNAL_ERROR);
}

TEST_F(CimConnectionTest, RefusedRedfishPortLeavesCimToBeTried) {
    ConnectOption option = OptionFor(bmc_);
    option.port = ClosedPort();
    option.deadline_seconds = 30;
    option.run->RecordFailure(TarselResult(SUCCEED, ""));
    ConnectionInfo ignored;

    EXPECT_TRUE(GetRESTConnection(option, ignored) == CONNECTION_FAILED);
    EXPECT_TRUE(Fetch(option).IsSucceed());
}

TEST_F(CimConnectionTest, PasswordIsInNoMessage) {
    ConnectOption option = OptionFor(bmc_);
    option.password = "sEcret-\"<&>";

    EXPECT_FALSE(Says(Fetch(option), "sEcret"));
}

}  // namespace
}  // namespace Vantix::VantixConnection
