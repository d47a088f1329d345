#include "platform/ipmi/ipmi_sessions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/fake_clock.h"
#include "support/fake_ipmitool.h"

namespace Vantix::ipmi {
namespace {

using test_support::FakeIpmiTool;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using transport::CommandEnd;
using transport::IpmiProblem;
using transport::Milliseconds;
using VantixConnection::ConnectOption;

constexpr const char* kOtherCipher =
    "Error in open session response message : no matching cipher suite\n";
constexpr const char* kWrongPassword = "> RAKP 2 HMAC is invalid\n";
constexpr const char* kSilentTarget = "Get Auth Capabilities error\n";
constexpr const char* kLesser = "Set Session Privilege Level to ADMINISTRATOR failed\n";
constexpr const char* kNoResources =
    "Error in open session response message : insufficient resources for session\n";

class IpmiSessionsTest : public testing::Test {
  protected:
    IpmiSessionsTest() {
        option_.target_address = "127.0.0.1";
        tool_.On("sdr", "text\n");
    }

    IpmiSessions Sessions() {
        return {option_, {option_.target_address, 623, "operator", "invented-pass"}, tool_, clock_};
    }
    static std::vector<std::string> ALine() { return {"sdr"}; }
    std::vector<std::string> Ciphers() const {
        std::vector<std::string> ciphers;
        for (std::size_t i = 0; i < tool_.commands.size(); ++i) {
            ciphers.push_back(tool_.ValueOf(i, "-C"));
        }
        return ciphers;
    }
    std::vector<std::string> Privileges() const {
        std::vector<std::string> levels;
        for (std::size_t i = 0; i < tool_.commands.size(); ++i) {
            levels.push_back(tool_.ValueOf(i, "-L"));
        }
        return levels;
    }

    ConnectOption option_;
    FakeIpmiTool tool_;
    transport::FakeClock clock_;
};

TEST_F(IpmiSessionsTest, AnswersOfOneSessionComeBack) {
    const SessionResult result = Sessions().Run(ALine());
    EXPECT_FALSE(result.failure);
    ASSERT_THAT(result.texts, SizeIs(1));
    EXPECT_EQ(result.texts[0], "text\n");
}

TEST_F(IpmiSessionsTest, SuiteSeventeenIsTriedFirst) {
    (void)Sessions().Run(ALine());
    EXPECT_THAT(Ciphers(), ElementsAre("17"));
}

TEST_F(IpmiSessionsTest, SuiteThreeFollowsWhereSeventeenIsNotSpoken) {
    tool_.FailNext(kOtherCipher);
    EXPECT_FALSE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3"));
}

TEST_F(IpmiSessionsTest, SuiteThreeIsTheLast) {
    tool_.FailNext(kOtherCipher).FailNext(kOtherCipher);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kCipher);
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3"));
}

TEST_F(IpmiSessionsTest, UnexplainedEndIsTriedWithTheOlderSuite) {
    tool_.FailNext("Error: Unable to establish IPMI v2 / RMCP+ session\n");
    EXPECT_FALSE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3"));
}

TEST_F(IpmiSessionsTest, SuiteThatWorkedIsKeptForLaterSessions) {
    tool_.FailNext(kOtherCipher);
    IpmiSessions sessions = Sessions();
    (void)sessions.Run(ALine());
    (void)sessions.Run(ALine());
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3", "3"));
}

TEST_F(IpmiSessionsTest, SuiteThatWorkedIsKeptForTheWholeRun) {
    tool_.FailNext(kOtherCipher);
    (void)Sessions().Run(ALine());
    (void)Sessions().Run(ALine());
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3", "3"));
}

TEST_F(IpmiSessionsTest, AnotherRunStartsAnew) {
    tool_.FailNext(kOtherCipher);
    (void)Sessions().Run(ALine());
    option_.run = std::make_shared<VantixConnection::RunContext>();
    (void)Sessions().Run(ALine());
    EXPECT_THAT(Ciphers(), ElementsAre("17", "3", "17"));
}

TEST_F(IpmiSessionsTest, SuiteOfTheUserIsTheOnlyOne) {
    option_.ipmi_cipher = 8;
    tool_.FailNext(kOtherCipher);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kCipher);
    EXPECT_THAT(Ciphers(), ElementsAre("8"));
}

TEST_F(IpmiSessionsTest, WrongPasswordIsNeverSentTwice) {
    tool_.FailNext(kWrongPassword);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kAuthentication);
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiSessionsTest, LoginRefusedInTheMiddleOfAScanEndsAllFurtherSessions) {
    IpmiSessions sessions = Sessions();
    (void)sessions.Run(ALine());
    tool_.FailNext(kWrongPassword);
    EXPECT_EQ(sessions.Run(ALine()).failure.problem, IpmiProblem::kAuthentication);
    EXPECT_EQ(sessions.Run(ALine()).failure.problem, IpmiProblem::kAuthentication);
    EXPECT_THAT(tool_.commands, SizeIs(2));
    EXPECT_FALSE(option_.run->MayTryLogin());
}

TEST_F(IpmiSessionsTest, LargerBudgetAllowsAnotherLogin) {
    option_.run = std::make_shared<VantixConnection::RunContext>(2);
    IpmiSessions sessions = Sessions();
    tool_.FailNext(kWrongPassword);
    (void)sessions.Run(ALine());
    EXPECT_FALSE(sessions.Run(ALine()).failure);
}

TEST_F(IpmiSessionsTest, LocalInterfaceNeedsNoLogin) {
    option_.target_address.clear();
    option_.run->LoginRefused("Redfish");
    EXPECT_FALSE(Sessions().Run(ALine()).failure);
}

TEST_F(IpmiSessionsTest, SilentHostCostsOneTryNotOneASuite) {
    tool_.FailNext(kSilentTarget);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kNoAnswer);
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiSessionsTest, NothingIsSentAfterTwoSilentSessions) {
    tool_.FailNext(kSilentTarget).EndNext(CommandEnd::kTimedOut);
    IpmiSessions sessions = Sessions();
    (void)sessions.Run(ALine());
    (void)sessions.Run(ALine());
    EXPECT_EQ(sessions.Run(ALine()).failure.problem, IpmiProblem::kNoAnswer);
    EXPECT_THAT(tool_.commands, SizeIs(2));
}

TEST_F(IpmiSessionsTest, AnswerBetweenTwoSilencesIsForgiven) {
    IpmiSessions sessions = Sessions();
    tool_.FailNext(kSilentTarget);
    (void)sessions.Run(ALine());
    (void)sessions.Run(ALine());
    tool_.FailNext(kSilentTarget);
    (void)sessions.Run(ALine());
    EXPECT_FALSE(sessions.Run(ALine()).failure);
}

TEST_F(IpmiSessionsTest, LesserAccountIsTriedWithLowerLevels) {
    tool_.FailNext(kLesser).FailNext(kLesser);
    EXPECT_FALSE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(Privileges(), ElementsAre("", "OPERATOR", "USER"));
}

TEST_F(IpmiSessionsTest, LevelThatWorkedIsKeptForTheWholeRun) {
    tool_.FailNext(kLesser);
    (void)Sessions().Run(ALine());
    (void)Sessions().Run(ALine());
    EXPECT_THAT(Privileges(), ElementsAre("", "OPERATOR", "OPERATOR"));
}

TEST_F(IpmiSessionsTest, AccountWithoutAnyLevelFails) {
    tool_.FailNext(kLesser).FailNext(kLesser).FailNext(kLesser);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kPrivilege);
    EXPECT_THAT(tool_.commands, SizeIs(3));
}

TEST_F(IpmiSessionsTest, BusyBmcIsAskedAgainAfterAWait) {
    const auto start = clock_.Now();
    tool_.FailNext(kNoResources);
    EXPECT_FALSE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(Ciphers(), ElementsAre("17", "17"));
    EXPECT_GE(clock_.Since(start), Milliseconds(5000));
}

TEST_F(IpmiSessionsTest, BmcThatStaysBusyIsGivenUp) {
    for (int n = 0; n < 10; ++n) tool_.FailNext(kNoResources);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kBusy);
    EXPECT_THAT(tool_.commands, SizeIs(4));
}

TEST_F(IpmiSessionsTest, PauseIsKeptBetweenTwoSessions) {
    IpmiSessions sessions = Sessions();
    (void)sessions.Run(ALine());
    const auto end = clock_.Now();
    (void)sessions.Run(ALine());
    EXPECT_GE(clock_.Since(end), Milliseconds(1000));
}

TEST_F(IpmiSessionsTest, FirstSessionStartsAtOnceAndThePauseIsTheUsers) {
    option_.ipmi_interval_ms = 0;
    const auto start = clock_.Now();
    IpmiSessions sessions = Sessions();
    (void)sessions.Run(ALine());
    (void)sessions.Run(ALine());
    EXPECT_EQ(clock_.Since(start), Milliseconds(0));
}

TEST_F(IpmiSessionsTest, MissingToolIsNotAskedForTwice) {
    tool_.EndNext(CommandEnd::kNotFound);
    EXPECT_EQ(Sessions().Run(ALine()).failure.problem, IpmiProblem::kToolMissing);
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiSessionsTest, HungToolIsKilledAfterThirtySeconds) {
    (void)Sessions().Run(ALine());
    EXPECT_EQ(tool_.commands[0].time_limit, Milliseconds(30000));
}

TEST_F(IpmiSessionsTest, TimeOfTheWholeScanCutsTheLimit) {
    option_.deadline_seconds = 12;
    IpmiSessions sessions = Sessions();
    clock_.Advance(Milliseconds(2000));
    (void)sessions.Run(ALine());
    EXPECT_EQ(tool_.commands[0].time_limit, Milliseconds(10000));
}

TEST_F(IpmiSessionsTest, NothingIsStartedWhenTheTimeIsOver) {
    option_.deadline_seconds = 2;
    IpmiSessions sessions = Sessions();
    clock_.Advance(Milliseconds(2000));
    EXPECT_EQ(sessions.Run(ALine()).failure.problem, IpmiProblem::kTimedOut);
    EXPECT_THAT(tool_.commands, IsEmpty());
}

TEST_F(IpmiSessionsTest, SessionThatIsBrokenOffKeepsItsAnswers) {
    tool_.On("sel", "more\n").BreakNextAfter(1, CommandEnd::kTimedOut);
    const SessionResult result = Sessions().Run({"sdr", "sel"});
    EXPECT_EQ(result.failure.problem, IpmiProblem::kTimedOut);
    ASSERT_THAT(result.texts, SizeIs(2));
    EXPECT_EQ(result.texts[0], "text\n");
    EXPECT_THAT(tool_.commands, SizeIs(1));
}

TEST_F(IpmiSessionsTest, CancellingEndsTheTries) {
    tool_.FailNext(kNoResources);
    tool_.on_run = [this] { option_.run->Cancel(); };
    EXPECT_TRUE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(tool_.commands, SizeIs(1));
    EXPECT_TRUE(tool_.commands[0].is_cancelled());
}

TEST_F(IpmiSessionsTest, LocalInterfaceKnowsNoSuitesAndLevels) {
    option_.target_address.clear();
    tool_.FailNext(kOtherCipher);
    EXPECT_TRUE(Sessions().Run(ALine()).failure);
    EXPECT_THAT(Ciphers(), ElementsAre(""));
}

}  // namespace
}  // namespace Vantix::ipmi
