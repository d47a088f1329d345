#include "platform/ipmi/ipmi_errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/result/result_codes.h"

namespace Vantix::ipmi {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using transport::IpmiProblem;

VantixConnection::ConnectOption Target() {
    VantixConnection::ConnectOption option;
    option.target_address = "::1";
    option.ipmi_port = 16623;
    option.user = "operator";
    option.password = "invented-pass";
    return option;
}

TarselResult ResultOf(IpmiProblem problem) {
    return ResultOfIpmiFailure({problem, "the tool's words"}, Target());
}

struct Case {
    IpmiProblem problem;
    int code;
};

class IpmiErrorsTableTest : public testing::TestWithParam<Case> {};

TEST_P(IpmiErrorsTableTest, ProblemHasItsCodeAndASentence) {
    const TarselResult result = ResultOf(GetParam().problem);
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_THAT(result.message, HasSubstr("[::1]:16623"));
    EXPECT_THAT(result.message, HasSubstr("(the tool's words); "));
    EXPECT_THAT(result.message, EndsWith("."));
    EXPECT_THAT(result.message, Not(HasSubstr("invented-pass")));
}

INSTANTIATE_TEST_SUITE_P(Problems, IpmiErrorsTableTest,
                         testing::Values(Case{IpmiProblem::kAuthentication, AUTHENTICATION_FAILED},
                                         Case{IpmiProblem::kCipher, IPMI_SESSION_FAILED},
                                         Case{IpmiProblem::kPrivilege, IPMI_SESSION_FAILED},
                                         Case{IpmiProblem::kBusy, IPMI_SESSION_FAILED},
                                         Case{IpmiProblem::kOther, IPMI_SESSION_FAILED},
                                         Case{IpmiProblem::kNoAnswer, CONNECTION_FAILED},
                                         Case{IpmiProblem::kNameUnknown, CONNECTION_FAILED},
                                         Case{IpmiProblem::kNoDevice, CONNECTION_FAILED},
                                         Case{IpmiProblem::kToolMissing, CONNECTION_FAILED},
                                         Case{IpmiProblem::kToolBroken, CONNECTION_FAILED},
                                         Case{IpmiProblem::kTimedOut, TIMEOUT},
                                         Case{IpmiProblem::kCancelled, INTERRUPTED_BY_USER}));

TEST(IpmiErrorsTest, NoFailureIsSuccessWithoutMessage) {
    const TarselResult result = ResultOf(IpmiProblem::kNone);
    EXPECT_TRUE(result.IsSucceed());
    EXPECT_EQ(result.message, "");
}

TEST(IpmiErrorsTest, RefusedAccountIsNamed) {
    EXPECT_THAT(ResultOf(IpmiProblem::kAuthentication).message,
                HasSubstr("for the account \"operator\""));
}

TEST(IpmiErrorsTest, MissingToolNamesThePackage) {
    EXPECT_THAT(ResultOf(IpmiProblem::kToolMissing).message,
                HasSubstr("install the package ipmitool"));
}

TEST(IpmiErrorsTest, LocalBmcIsNamedInWords) {
    EXPECT_THAT(ResultOfIpmiFailure({IpmiProblem::kNoDevice, "x"}, {}).message,
                HasSubstr("this machine's BMC"));
}

}  // namespace
}  // namespace Vantix::ipmi
