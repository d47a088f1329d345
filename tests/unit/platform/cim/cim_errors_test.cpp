#include "platform/cim/cim_errors.h"

#include <gtest/gtest.h>

#include "common/result/result_codes.h"

namespace Vantix::cim {
namespace {

using transport::CimFailure;
using transport::CimProblem;
using transport::HttpErrorKind;

CimFailure Failure(CimProblem problem, HttpErrorKind transport = HttpErrorKind::kNone,
                   int cim_status = 0) {
    CimFailure failure;
    failure.problem = problem;
    failure.transport = transport;
    failure.cim_status = cim_status;
    failure.text = "why";
    return failure;
}

TarselResult ResultOf(const CimFailure& failure, CimTargetKind kind = CimTargetKind::kBmc) {
    return ResultOfCimFailure(failure, kind, "host:5989", "demo");
}

TEST(CimErrorsTest, NoFailureIsASuccessWithoutWords) {
    EXPECT_TRUE(ResultOf(CimFailure()).IsSucceed());
    EXPECT_EQ(ResultOf(CimFailure()).message, "");
}

TEST(CimErrorsTest, TransportFailuresHaveTheirCodes) {
    const std::pair<HttpErrorKind, int> rows[] = {
        {HttpErrorKind::kBadAddress, CONNECTION_FAILED},
        {HttpErrorKind::kResolve, CONNECTION_FAILED},
        {HttpErrorKind::kConnect, CONNECTION_FAILED},
        {HttpErrorKind::kConnectTimeout, CONNECTION_FAILED},
        {HttpErrorKind::kReset, CONNECTION_FAILED},
        {HttpErrorKind::kTruncated, CONNECTION_FAILED},
        {HttpErrorKind::kTooLarge, CONNECTION_FAILED},
        {HttpErrorKind::kProtocol, CONNECTION_FAILED},
        {HttpErrorKind::kOther, CONNECTION_FAILED},
        {HttpErrorKind::kTlsHandshake, VERIFY_CERTIFICATE_FAILED},
        {HttpErrorKind::kUntrusted, VERIFY_CERTIFICATE_FAILED},
        {HttpErrorKind::kTimeout, TIMEOUT},
        {HttpErrorKind::kDeadline, TIMEOUT},
        {HttpErrorKind::kCancelled, INTERRUPTED_BY_USER}};
    for (const auto& [kind, code] : rows) {
        EXPECT_TRUE(ResultOf(Failure(CimProblem::kNotReached, kind)) == code)
            << static_cast<int>(kind);
    }
}

TEST(CimErrorsTest, AnsweredFailuresHaveTheirCodes) {
    EXPECT_TRUE(ResultOf(Failure(CimProblem::kUnauthorized)) == AUTHENTICATION_FAILED);
    EXPECT_TRUE(ResultOf(Failure(CimProblem::kLoginBarred)) == AUTHENTICATION_FAILED);
    EXPECT_TRUE(ResultOf(Failure(CimProblem::kForbidden)) == FUNCTION_NOT_SUPPORTED);
    EXPECT_TRUE(ResultOf(Failure(CimProblem::kNoService)) == NO_CIM_SERVICE);
}

TEST(CimErrorsTest, UnknownClassAndNamespaceAreNoService) {
    for (const int status : {3, 5}) {
        EXPECT_TRUE(ResultOf(Failure(CimProblem::kCimError, HttpErrorKind::kNone, status)) ==
                    NO_CIM_SERVICE);
    }
}

TEST(CimErrorsTest, FailingServiceIsAnInternalErrorOfItsTarget) {
    for (const auto problem :
         {CimProblem::kCimError, CimProblem::kHttpStatus, CimProblem::kBadBody}) {
        const CimFailure failure = Failure(problem, HttpErrorKind::kNone, 1);
        EXPECT_TRUE(ResultOf(failure, CimTargetKind::kBmc) == BMC_INTERNAL_ERROR);
        EXPECT_TRUE(ResultOf(failure, CimTargetKind::kChassis) == TOLV_INTERNAL_ERROR);
        EXPECT_TRUE(ResultOf(failure, CimTargetKind::kHypervisor) == ESXI_INTERNAL_ERROR);
    }
}

TEST(CimErrorsTest, MessageSaysWhatWhereWhyAndWhatToDo) {
    EXPECT_EQ(ResultOf(Failure(CimProblem::kNoService)).message,
              "There is no usable CIM service on host:5989 (why); enable CIM over HTTPS on the "
              "target or check address and port.");
}

TEST(CimErrorsTest, RefusedLoginNamesAccountAndRole) {
    const std::string message = ResultOf(Failure(CimProblem::kUnauthorized)).message;

    EXPECT_NE(message.find("for the account \"demo\""), std::string::npos);
    EXPECT_NE(message.find("role"), std::string::npos);
}

TEST(CimErrorsTest, OnlyAHostThatWasNotReachedMakesOtherPortsHopeless) {
    for (const auto kind :
         {HttpErrorKind::kBadAddress, HttpErrorKind::kResolve, HttpErrorKind::kConnectTimeout,
          HttpErrorKind::kDeadline, HttpErrorKind::kCancelled}) {
        EXPECT_FALSE(MayOtherPortsAnswer(Failure(CimProblem::kNotReached, kind)));
    }
    for (const auto kind :
         {HttpErrorKind::kConnect, HttpErrorKind::kReset, HttpErrorKind::kTimeout}) {
        EXPECT_TRUE(MayOtherPortsAnswer(Failure(CimProblem::kNotReached, kind)));
    }
    EXPECT_TRUE(MayOtherPortsAnswer(Failure(CimProblem::kNoService)));
}

}  // namespace
}  // namespace Vantix::cim
