#include "platform/connection/redfish_errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/result/result_codes.h"

namespace Vantix::VantixConnection {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using transport::HttpErrorKind;
using transport::RedfishFailure;
using transport::RedfishProblem;

constexpr const char* kTarget = "192.0.2.7:443";

RedfishFailure FailureOf(RedfishProblem problem, HttpErrorKind kind = HttpErrorKind::kNone) {
    RedfishFailure failure;
    failure.problem = problem;
    failure.transport = kind;
    failure.text = "GET /x: what happened";
    return failure;
}

TarselResult ResultOf(RedfishProblem problem, HttpErrorKind kind = HttpErrorKind::kNone) {
    return ResultOfConnectFailure(FailureOf(problem, kind), kTarget, "scanner");
}

struct Row {
    const char* name;
    RedfishProblem problem;
    HttpErrorKind kind;
    int code;
    const char* advice;
};

class ConnectFailureTest : public ::testing::TestWithParam<Row> {};

TEST_P(ConnectFailureTest, HasItsCodeAndOneSentenceWithTargetReasonAndAdvice) {
    const TarselResult result = ResultOf(GetParam().problem, GetParam().kind);
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_THAT(result.message, HasSubstr(kTarget));
    EXPECT_THAT(result.message, HasSubstr("GET /x: what happened"));
    EXPECT_THAT(result.message, HasSubstr(GetParam().advice));
    EXPECT_EQ(result.message.back(), '.');
    EXPECT_EQ(result.message.find('\n'), std::string::npos);
}

constexpr auto kNotReached = RedfishProblem::kNotReached;
constexpr auto kNoError = HttpErrorKind::kNone;

INSTANTIATE_TEST_SUITE_P(
    Refusals, ConnectFailureTest,
    ::testing::Values(
        Row{"WrongPassword", RedfishProblem::kUnauthorized, kNoError, AUTHENTICATION_FAILED,
            "no further login"},
        Row{"PasswordChange", RedfishProblem::kPasswordChange, kNoError, PASSWORD_MUST_BE_CHANGED,
            "change it on the BMC"},
        Row{"SessionLimit", RedfishProblem::kSessionLimit, kNoError, NO_AVAILABLE_USER_ID,
            "--auth basic"},
        Row{"Forbidden", RedfishProblem::kForbidden, kNoError, FUNCTION_NOT_SUPPORTED, "role"},
        Row{"Licence", RedfishProblem::kLicence, kNoError, FUNCTION_NOT_SUPPORTED, "licence"},
        Row{"NotFound", RedfishProblem::kNotFound, kNoError, NO_RESTFUL_SERVICE, "enable Redfish"},
        Row{"BadBody", RedfishProblem::kBadBody, kNoError, NO_RESTFUL_SERVICE, "enable Redfish"},
        Row{"Redirect", RedfishProblem::kRedirect, kNoError, CONNECTION_FAILED,
            "address that the BMC redirects to"},
        Row{"OtherStatus", RedfishProblem::kStatus, kNoError, GET_RESTFUL_DATA_FAILED,
            "try again later"}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Transport, ConnectFailureTest,
    ::testing::Values(
        Row{"BadAddress", kNotReached, HttpErrorKind::kBadAddress, CONNECTION_FAILED, "correct it"},
        Row{"Resolve", kNotReached, HttpErrorKind::kResolve, CONNECTION_FAILED, "spelling"},
        Row{"Connect", kNotReached, HttpErrorKind::kConnect, CONNECTION_FAILED, "the port"},
        Row{"ConnectTimeout", kNotReached, HttpErrorKind::kConnectTimeout, CONNECTION_FAILED,
            "powered"},
        Row{"Untrusted", kNotReached, HttpErrorKind::kUntrusted, VERIFY_CERTIFICATE_FAILED,
            "--ca-file"},
        Row{"UntrustedPin", kNotReached, HttpErrorKind::kUntrusted, VERIFY_CERTIFICATE_FAILED,
            "--pin"},
        Row{"UntrustedPeer", kNotReached, HttpErrorKind::kUntrusted, VERIFY_CERTIFICATE_FAILED,
            "the right BMC"},
        Row{"Handshake", kNotReached, HttpErrorKind::kTlsHandshake, VERIFY_CERTIFICATE_FAILED,
            "--tls-legacy"},
        Row{"Timeout", kNotReached, HttpErrorKind::kTimeout, TIMEOUT, "--timeout"},
        Row{"Deadline", kNotReached, HttpErrorKind::kDeadline, TIMEOUT, "--deadline"},
        Row{"Cancelled", kNotReached, HttpErrorKind::kCancelled, INTERRUPTED_BY_USER, "again"},
        Row{"Reset", kNotReached, HttpErrorKind::kReset, CONNECTION_FAILED, "restart the BMC"},
        Row{"Truncated", kNotReached, HttpErrorKind::kTruncated, CONNECTION_FAILED, "try again"},
        Row{"TooLarge", kNotReached, HttpErrorKind::kTooLarge, CONNECTION_FAILED, "try again"},
        Row{"Protocol", kNotReached, HttpErrorKind::kProtocol, CONNECTION_FAILED, "try again"},
        Row{"Other", kNotReached, HttpErrorKind::kOther, CONNECTION_FAILED, "try again"}),
    [](const auto& row) { return row.param.name; });

TEST(ConnectFailureResultTest, NoFailureIsSuccess) {
    const TarselResult result = ResultOfConnectFailure({}, kTarget, "scanner");
    EXPECT_TRUE(result.IsSucceed());
    EXPECT_EQ(result.message, "");
}

TEST(ConnectFailureResultTest, AccountIsNamedWhereItMatters) {
    for (const auto problem : {RedfishProblem::kUnauthorized, RedfishProblem::kPasswordChange,
                               RedfishProblem::kForbidden}) {
        EXPECT_THAT(ResultOf(problem).message, HasSubstr("\"scanner\""));
    }
    EXPECT_THAT(ResultOf(RedfishProblem::kNotFound).message, Not(HasSubstr("scanner")));
}

struct ReadRow {
    const char* name;
    RedfishProblem problem;
    HttpErrorKind kind;
    int code;
};

class ReadFailureTest : public ::testing::TestWithParam<ReadRow> {};

TEST_P(ReadFailureTest, HasItsCode) {
    EXPECT_EQ(CodeOfReadFailure(FailureOf(GetParam().problem, GetParam().kind)), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(
    All, ReadFailureTest,
    ::testing::Values(
        ReadRow{"None", RedfishProblem::kNone, kNoError, SUCCEED},
        ReadRow{"MissingResource", RedfishProblem::kNotFound, kNoError, GET_RESTFUL_DATA_FAILED},
        ReadRow{"BadBody", RedfishProblem::kBadBody, kNoError, GET_RESTFUL_DATA_FAILED},
        ReadRow{"Forbidden", RedfishProblem::kForbidden, kNoError, GET_RESTFUL_DATA_FAILED},
        ReadRow{"Licence", RedfishProblem::kLicence, kNoError, GET_RESTFUL_DATA_FAILED},
        ReadRow{"Status", RedfishProblem::kStatus, kNoError, GET_RESTFUL_DATA_FAILED},
        ReadRow{"LostLogin", RedfishProblem::kUnauthorized, kNoError, AUTHENTICATION_FAILED},
        ReadRow{"PasswordChange", RedfishProblem::kPasswordChange, kNoError,
                PASSWORD_MUST_BE_CHANGED},
        ReadRow{"Timeout", kNotReached, HttpErrorKind::kTimeout, TIMEOUT},
        ReadRow{"Reset", kNotReached, HttpErrorKind::kReset, CONNECTION_FAILED},
        ReadRow{"Cancelled", kNotReached, HttpErrorKind::kCancelled, INTERRUPTED_BY_USER}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace Vantix::VantixConnection
