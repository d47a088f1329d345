#include "transport/ipmi/ipmi_problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kLastLine = "Error: Unable to establish IPMI v2 / RMCP+ session\n";

struct Case {
    const char* name;
    const char* line;
    IpmiProblem problem;
};

class IpmiProblemTableTest : public testing::TestWithParam<Case> {};

// All failures end in the same line and the same exit status: only the line before tells.
TEST_P(IpmiProblemTableTest, LineBeforeTheLastDecides) {
    const std::string text =
        "Loading IANA PEN Registry...\n" + std::string(GetParam().line) + "\n" + kLastLine;
    EXPECT_EQ(ClassifyIpmiErrors(text).problem, GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, IpmiProblemTableTest,
    testing::Values(
        Case{"WrongPassword", "> RAKP 2 HMAC is invalid", IpmiProblem::kAuthentication},
        Case{"UnknownUser", "RAKP 2 message indicates an error : unauthorized name",
             IpmiProblem::kAuthentication},
        Case{"PasswordRefusedByTheBmc",
             "RAKP 4 message indicates an error : invalid integrity check value",
             IpmiProblem::kAuthentication},
        Case{"SilentHost", "Get Auth Capabilities error", IpmiProblem::kNoAnswer},
        Case{"SilentHostOtherLine", "Error issuing Get Channel Authentication Capabilities request",
             IpmiProblem::kNoAnswer},
        Case{"SilenceAfterTheStart", "> Error: no response from RAKP 1 message",
             IpmiProblem::kCipher},
        Case{"NoRoute", "Could not open socket!", IpmiProblem::kNoAnswer},
        Case{"UnknownName", "Address lookup for bmc.invalid failed\nCould not open socket!",
             IpmiProblem::kNameUnknown},
        Case{"NoMatchingSuite", "Error in open session response message : no matching cipher suite",
             IpmiProblem::kCipher},
        Case{"InvalidRole", "Error in open session response message : invalid role",
             IpmiProblem::kCipher},
        Case{"InvalidAuthentication",
             "Error in open session response message : invalid authentication algorithm",
             IpmiProblem::kCipher},
        Case{"InvalidIntegrity",
             "Error in open session response message : invalid integrity algorithm",
             IpmiProblem::kCipher},
        Case{"UnsupportedSuite", "Unsupported cipher suite ID : 17", IpmiProblem::kCipher},
        Case{"SuiteThatOnlyPretends", "> RAKP 4 message has invalid integrity check value",
             IpmiProblem::kCipher},
        Case{"NoFreeSession",
             "Error in open session response message : insufficient resources for session",
             IpmiProblem::kBusy},
        Case{"NodeBusy", "Get Device ID command failed: Node busy", IpmiProblem::kBusy},
        Case{"Starting", "Get Device ID command failed: BMC initialization in progress",
             IpmiProblem::kBusy},
        Case{"LesserAccount", "Set Session Privilege Level to ADMINISTRATOR failed",
             IpmiProblem::kPrivilege},
        Case{"LesserRole", "RAKP 2 message indicates an error : unauthorized role requested",
             IpmiProblem::kPrivilege},
        Case{
            "NoDevice",
            "Could not open device at /dev/ipmi0 or /dev/ipmi/0 or /dev/ipmidev/0: No such file or "
            "directory",
            IpmiProblem::kNoDevice},
        Case{"DamagedInstallation", "Failed to initialize the OEM info dictionary",
             IpmiProblem::kToolBroken},
        Case{"MissingLibrary", "ipmitool: error while loading shared libraries: libx.so.1",
             IpmiProblem::kToolBroken},
        Case{"Unheard", "Error: Received an Unexpected RAKP 2 message", IpmiProblem::kOther}),
    [](const testing::TestParamInfo<Case>& shown) { return std::string(shown.param.name); });

TEST(IpmiProblemTest, RefusedAccountOutranksTheSilenceAfterIt) {
    const IpmiFailure failure =
        ClassifyIpmiErrors("> RAKP 2 HMAC is invalid\n> Error: no response from RAKP 3 message\n");
    EXPECT_EQ(failure.problem, IpmiProblem::kAuthentication);
}

TEST(IpmiProblemTest, TextIsTheDecisiveLineAlone) {
    const IpmiFailure failure =
        ClassifyIpmiErrors(std::string("Loading\n> RAKP 2 HMAC is invalid\n") + kLastLine);
    EXPECT_EQ(failure.text, "RAKP 2 HMAC is invalid");
}

TEST(IpmiProblemTest, LetterCaseDoesNotMatter) {
    EXPECT_EQ(ClassifyIpmiErrors("rakp 2 hmac IS INVALID").problem, IpmiProblem::kAuthentication);
}

TEST(IpmiProblemTest, UnknownMakerListIsNoFailure) {
    const IpmiFailure failure = ClassifyIpmiErrors(
        "IANA PEN registry open failed: No such file or directory\nGet Auth Capabilities error\n");
    EXPECT_EQ(failure.problem, IpmiProblem::kNoAnswer);
}

TEST(IpmiProblemTest, SilentToolStillGivesASentence) {
    EXPECT_EQ(ClassifyIpmiErrors("").text, "ipmitool gave no reason");
    EXPECT_EQ(ClassifyIpmiErrors("\n\n").problem, IpmiProblem::kOther);
}

TEST(IpmiProblemTest, TextIsCleanAndShort) {
    const IpmiFailure failure =
        ClassifyIpmiErrors("bad \x01\xff Node busy " + std::string(5000, 'x') + "\n");
    EXPECT_EQ(failure.problem, IpmiProblem::kBusy);
    EXPECT_LT(failure.text.size(), 400U);
    EXPECT_THAT(failure.text, Not(HasSubstr("\x01")));
}

IpmiProblem ProblemOf(CommandEnd end) {
    CommandOutcome outcome;
    outcome.end = end;
    outcome.error_output = "Get Auth Capabilities error";
    return FailureOfRun(outcome).problem;
}

TEST(IpmiProblemTest, WayItEndedOutranksWhatItSaid) {
    EXPECT_EQ(ProblemOf(CommandEnd::kNotFound), IpmiProblem::kToolMissing);
    EXPECT_EQ(ProblemOf(CommandEnd::kNotStarted), IpmiProblem::kToolBroken);
    EXPECT_EQ(ProblemOf(CommandEnd::kSignalled), IpmiProblem::kToolBroken);
    EXPECT_EQ(ProblemOf(CommandEnd::kTimedOut), IpmiProblem::kTimedOut);
    EXPECT_EQ(ProblemOf(CommandEnd::kCancelled), IpmiProblem::kCancelled);
    EXPECT_EQ(ProblemOf(CommandEnd::kExited), IpmiProblem::kNoAnswer);
}

}  // namespace
}  // namespace Vantix::transport
