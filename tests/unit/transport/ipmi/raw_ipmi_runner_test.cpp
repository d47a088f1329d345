#include "transport/ipmi/raw_ipmi_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_ipmitool.h"
#include "support/scripted_raw_ipmi.h"
#include "transport/ipmi/device_id.h"
#include "transport/ipmi/fru_locator.h"
#include "transport/ipmi/ipmi_problem.h"

namespace Vantix::transport {
namespace {

using test_support::FakeIpmiTool;
using test_support::kDeviceIdLine;
using test_support::RawIpmiScript;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const Bytes kDeviceId = {0x20, 0x01, 0x09, 0x08, 0x02, 0x9f};
constexpr const char* kRefusedLine = "raw 0x0a 0x10 0x07";
const RawRequest kRefused = {0x0a, 0x10, {0x07}};

class RawIpmiRunnerTest : public testing::Test {
  protected:
    RawIpmiRunnerTest() { script_.On(kDeviceIdLine, kDeviceId); }

    CommandOutcome Run(const std::vector<std::string>& lines) {
        return runner_.Run(ACommand(lines));
    }
    static Command ACommand(const std::vector<std::string>& lines) {
        return IpmiToolCommand("ipmitool", {}, {}, lines);
    }
    static std::vector<RawAnswer> Answers(const std::vector<RawRequest>& requests,
                                          const CommandOutcome& outcome) {
        return ReadRawAnswers(requests, SplitAnswers(outcome.output, requests.size()),
                              outcome.error_output);
    }

    RawIpmiScript script_;
    FakeIpmiTool tool_;
    RawIpmiRunner runner_{script_.Opener(), tool_};
};

TEST_F(RawIpmiRunnerTest, RawLinesAreAnsweredByTheDriver) {
    const auto outcome = Run({kDeviceIdLine});
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
    EXPECT_EQ(outcome.exit_status, 0);
    const auto answers = Answers({GetDeviceIdRequest()}, outcome);
    ASSERT_THAT(answers, SizeIs(1));
    EXPECT_EQ(answers[0].data, kDeviceId);
    EXPECT_THAT(tool_.commands, IsEmpty());
    EXPECT_EQ(script_.openings, 1);
}

TEST_F(RawIpmiRunnerTest, RefusalIsAnAnswerLikeThatOfTheTool) {
    const auto outcome = Run({kRefusedLine, kDeviceIdLine});
    const auto answers = Answers({kRefused, GetDeviceIdRequest()}, outcome);
    ASSERT_THAT(answers, SizeIs(2));
    EXPECT_EQ(answers[0].completion, 0xc1);
    EXPECT_EQ(answers[1].data, kDeviceId);
    EXPECT_EQ(outcome.exit_status, 1);
}

TEST_F(RawIpmiRunnerTest, RequestThatTheDriverFailsOnCostsOnlyItself) {
    script_.On(kRefusedLine, {}, -1);
    const auto outcome = Run({kRefusedLine, kDeviceIdLine});
    const auto answers = Answers({kRefused, GetDeviceIdRequest()}, outcome);
    EXPECT_EQ(answers[0].completion, -1);
    EXPECT_EQ(answers[1].data, kDeviceId);
    EXPECT_EQ(outcome.end, CommandEnd::kExited);
}

TEST_F(RawIpmiRunnerTest, LocatorsAreReadFromTheRepository) {
    script_.On("raw 0x0a 0x22", {0x05, 0x00});
    script_.On("raw 0x0a 0x23 0x05 0x00 0x00 0x00 0x00 0x05",
               {0xff, 0xff, 0x00, 0x00, 0x51, 0x11, 0x0c});
    script_.On("raw 0x0a 0x23 0x05 0x00 0x00 0x00 0x05 0x0c",
               {0xff, 0xff, 0x20, 0x03, 0x80, 0, 0, 0x10, 0, 0x0a, 0x02, 0, 0xc1, 'P'});
    const auto outcome = Run({kFruLocatorLine});
    const auto texts = SplitAnswers(outcome.output, 1);
    ASSERT_THAT(texts, SizeIs(1));
    const auto locators = ParseFruLocators(texts[0].value_or(""));
    ASSERT_THAT(locators, SizeIs(1));
    EXPECT_EQ(locators[0].fru_id, 3);
    EXPECT_EQ(locators[0].entity_instance, 2U);
}

TEST_F(RawIpmiRunnerTest, OtherLinesAreNoCommands) {
    for (const char* line :
         {"chassis power off", "raw", "raw 0x06", "raw 6 1", "raw 0x06 0x100", "raw 0x06 0x01 x"}) {
        const auto outcome = Run({line});
        EXPECT_EQ(outcome.exit_status, 1) << line;
        EXPECT_THAT(outcome.error_output, HasSubstr("Invalid command")) << line;
    }
    EXPECT_THAT(script_.lines, IsEmpty());
}

TEST_F(RawIpmiRunnerTest, SessionsOverTheNetworkAreTheTools) {
    tool_.On(kDeviceIdLine, test_support::kDeviceIdAnswer);
    const auto outcome = runner_.Run(
        IpmiToolCommand("ipmitool", {"127.0.0.1", 623, "open", "secret"}, {}, {kDeviceIdLine}));
    EXPECT_THAT(outcome.output, HasSubstr("20 01 09 08"));
    EXPECT_EQ(script_.openings, 0);
    ASSERT_THAT(tool_.commands, SizeIs(1));
    EXPECT_EQ(tool_.ValueOf(0, "-I"), "lanplus");
}

TEST_F(RawIpmiRunnerTest, ToolRunsWhereThereIsNoDriverAndTakesItsOwnInterface) {
    script_.Fail("the driver shows no device");
    tool_.On(kDeviceIdLine, test_support::kDeviceIdAnswer);
    const auto outcome = Run({kDeviceIdLine});
    EXPECT_THAT(outcome.output, HasSubstr("20 01 09 08"));
    ASSERT_THAT(tool_.commands, SizeIs(1));
    EXPECT_THAT(tool_.commands[0].arguments, Not(Contains("-I")));
    EXPECT_THAT(tool_.commands[0].arguments, Not(Contains("open")));
    EXPECT_THAT(tool_.commands[0].arguments, Contains("exec"));
    EXPECT_EQ(outcome.error_output, "No IPMI driver: the driver shows no device\n");
}

TEST_F(RawIpmiRunnerTest, FailureOfTheToolIsToldInItsOwnWords) {
    script_.Fail("the driver shows no device");
    tool_.FailNext("No hostname specified!\n");
    const IpmiFailure failure = FailureOfRun(Run({kDeviceIdLine}));
    EXPECT_EQ(failure.problem, IpmiProblem::kOther);
    EXPECT_EQ(failure.text, "No hostname specified!");
}

TEST_F(RawIpmiRunnerTest, NeitherDriverNorToolIsAMissingDevice) {
    script_.Fail("the driver shows no device");
    tool_.EndNext(CommandEnd::kNotFound);
    const IpmiFailure failure = FailureOfRun(Run({kDeviceIdLine}));
    EXPECT_EQ(failure.problem, IpmiProblem::kNoDevice);
    EXPECT_EQ(failure.text, "No IPMI driver and no ipmitool: the driver shows no device");
}

TEST_F(RawIpmiRunnerTest, SilentDriverEndsTheSessionAtItsTimeLimit) {
    script_.Hang(kDeviceIdLine);
    Command command = ACommand({kDeviceIdLine, kRefusedLine});
    command.time_limit = std::chrono::milliseconds(20);
    const auto outcome = runner_.Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_THAT(SplitAnswers(outcome.output, 2), IsEmpty());
    EXPECT_THAT(script_.lines, ElementsAre(kDeviceIdLine));
    const IpmiFailure failure = FailureOfRun(outcome);
    EXPECT_EQ(failure.problem, IpmiProblem::kTimedOut);
    EXPECT_EQ(failure.text, "the IPMI driver gave no answer in time");
}

TEST_F(RawIpmiRunnerTest, AnswersBeforeTheSilenceAreKept) {
    script_.Hang(kRefusedLine);
    Command command = ACommand({kDeviceIdLine, kRefusedLine});
    command.time_limit = std::chrono::milliseconds(20);
    const auto outcome = runner_.Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    EXPECT_EQ(Answers({GetDeviceIdRequest(), kRefused}, outcome)[0].data, kDeviceId);
}

TEST_F(RawIpmiRunnerTest, CancelledSessionSendsNoMore) {
    bool is_cancelled = false;
    script_.on_request = [&](const std::string&) { is_cancelled = true; };
    Command command = ACommand({kDeviceIdLine, kDeviceIdLine});
    command.is_cancelled = [&] { return is_cancelled; };
    const auto outcome = runner_.Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kCancelled);
    EXPECT_THAT(script_.lines, SizeIs(1));
}

}  // namespace
}  // namespace Vantix::transport
