#include "transport/ipmi/raw_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(SplitAnswersTest, TextBetweenTheMarksBelongsToTheLine) {
    EXPECT_THAT(
        SplitAnswers("@0 \n 20 01\n@1 \ntext\nmore\n@2 \n", 2),
        ElementsAre(Optional(std::string(" 20 01\n")), Optional(std::string("text\nmore\n"))));
}

TEST(SplitAnswersTest, OutputWithoutMarkMeansNoSession) {
    EXPECT_THAT(SplitAnswers("Error\n", 2), IsEmpty());
    EXPECT_THAT(SplitAnswers("", 2), IsEmpty());
}

TEST(SplitAnswersTest, LinesAfterABrokenRunHaveNoAnswer) {
    EXPECT_THAT(SplitAnswers("@0\n 01\n@1\n", 3),
                ElementsAre(Optional(std::string(" 01\n")), Optional(std::string()), std::nullopt));
}

TEST(SplitAnswersTest, TextBeforeTheFirstMarkIsLeftOut) {
    EXPECT_THAT(SplitAnswers("hello\n@0\n01\n@1\n", 1), ElementsAre(Optional(std::string("01\n"))));
}

TEST(SplitAnswersTest, TextThatLooksLikeAnotherMarkStaysText) {
    EXPECT_THAT(SplitAnswers("@0\n@7\n@1\n", 1), ElementsAre(Optional(std::string("@7\n"))));
}

TEST(SplitAnswersTest, TextAfterTheLastMarkIsLeftOut) {
    EXPECT_THAT(SplitAnswers("@0\n01\n@1\ntail\n@2\n", 1),
                ElementsAre(Optional(std::string("01\n"))));
}

TEST(ParseRawBytesTest, PairsOfDigitsOverSeveralLinesAreBytes) {
    EXPECT_THAT(ParseRawBytes(" 10 01 ff\n A0\n"), Optional(ElementsAre(0x10, 0x01, 0xff, 0xa0)));
}

TEST(ParseRawBytesTest, AnythingElseIsNoAnswer) {
    for (const char* text :
         {"", " \n", "1", "123", "0x10", "zz", "10 1g", "10 -1", "+1", "10,11"}) {
        EXPECT_FALSE(ParseRawBytes(text)) << text;
    }
}

TEST(ParseRawBytesTest, NulByteIsNoBlank) {
    EXPECT_FALSE(ParseRawBytes(std::string_view("10\0 11", 6)));
}

constexpr const char* kInvalidCommand =
    "Unable to send RAW command (channel=0x0 netfn=0x3a lun=0x0 cmd=0x50 rsp=0xc1): Invalid "
    "command\n";

TEST(ParseRefusalsTest, CompletionCodeAndRequestAreRead) {
    const auto refusals = ParseRefusals(std::string("RAW REQUEST (1 bytes)\n") + kInvalidCommand);
    ASSERT_EQ(refusals.size(), 1U);
    EXPECT_EQ(refusals[0].network_function, 0x3a);
    EXPECT_EQ(refusals[0].command, 0x50);
    EXPECT_EQ(refusals[0].completion, 0xc1);
}

TEST(ParseRefusalsTest, RequestWithoutAnyAnswerHasNoCompletionCode) {
    const auto refusals =
        ParseRefusals("Unable to send RAW command (channel=0x0 netfn=0x6 lun=0x0 cmd=0x1)\n");
    ASSERT_EQ(refusals.size(), 1U);
    EXPECT_EQ(refusals[0].completion, -1);
}

TEST(ParseRefusalsTest, DamagedLinesAreLeftOut) {
    EXPECT_THAT(ParseRefusals("Unable to send RAW command (netfn=0x\n"
                              "Unable to send RAW command (netfn=0x1ff cmd=0x1)\n"
                              "Unable to send RAW command ("),
                IsEmpty());
}

TEST(ReadRawAnswersTest, RefusedRequestGetsItsOwnCode) {
    const std::vector<RawRequest> requests = {
        {0x06, 0x01, {}}, {0x3a, 0x50, {0}}, {0x06, 0x04, {}}};
    const auto answers =
        ReadRawAnswers(requests, SplitAnswers("@0\n 20\n@1\n@2\n 55 00\n@3\n", 3), kInvalidCommand);
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_THAT(answers[0].data, ElementsAre(0x20));
    EXPECT_EQ(answers[1].completion, 0xc1);
    EXPECT_FALSE(answers[1].IsOk());
    EXPECT_THAT(answers[2].data, ElementsAre(0x55, 0x00));
}

TEST(ReadRawAnswersTest, EqualRequestsGetTheirCodesInOrder) {
    const std::vector<RawRequest> requests = {{0x0a, 0x11, {0}}, {0x0a, 0x11, {1}}};
    const auto answers = ReadRawAnswers(
        requests, SplitAnswers("@0\n@1\n@2\n", 2),
        "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x11 rsp=0xcb): x\n"
        "Unable to send RAW command (channel=0x0 netfn=0xa lun=0x0 cmd=0x11 rsp=0xd4): x\n");
    EXPECT_EQ(answers[0].completion, 0xcb);
    EXPECT_EQ(answers[1].completion, 0xd4);
}

TEST(ReadRawAnswersTest, RequestThatTheRunDidNotReachIsUnanswered) {
    const std::vector<RawRequest> requests = {{0x06, 0x01, {}}, {0x06, 0x04, {}}};
    const auto answers = ReadRawAnswers(requests, SplitAnswers("@0\n 20\n", 2), "");
    EXPECT_TRUE(answers[0].IsOk());
    EXPECT_EQ(answers[1].completion, -1);
}

TEST(ReadRawAnswersTest, RunWithoutSessionAnswersNothing) {
    const auto answers = ReadRawAnswers({{0x06, 0x01, {}}}, {}, "");
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].completion, -1);
}

}  // namespace
}  // namespace Vantix::transport
