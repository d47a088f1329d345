#include "transport/ipmi/bootstrap_credentials.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vantix::transport::BootstrapCredentialsRequest;
using Vantix::transport::Bytes;
using Vantix::transport::ParseBootstrapCredentials;
using Vantix::transport::RawAnswer;

RawAnswer AnswerOf(const std::string& user, const std::string& password) {
    RawAnswer answer;
    answer.completion = 0;
    answer.data = {0x52};
    for (std::string text : {user, password}) {
        text.resize(16);
        answer.data.insert(answer.data.end(), text.begin(), text.end());
    }
    return answer;
}

TEST(BootstrapCredentialsTest, RequestLeavesTheGivingOfAccountsSwitchedOn) {
    EXPECT_EQ(Vantix::transport::RawLine(BootstrapCredentialsRequest()), "raw 0x2c 0x02 0x52 0xa5");
}

TEST(BootstrapCredentialsTest, PaddedAndFullFieldsAreRead) {
    const auto padded = ParseBootstrapCredentials(AnswerOf("host1", "invented-pass"));
    ASSERT_TRUE(padded.has_value());
    EXPECT_EQ(padded->user, "host1");
    EXPECT_EQ(padded->password, "invented-pass");
    const auto full = ParseBootstrapCredentials(AnswerOf("u234567890123456", "p234567890123456"));
    ASSERT_TRUE(full.has_value());
    EXPECT_EQ(full->user, "u234567890123456");
    EXPECT_EQ(full->password, "p234567890123456");
}

TEST(BootstrapCredentialsTest, RefusalShortAnswerAndOtherGroupAreNone) {
    RawAnswer refused = AnswerOf("host1", "invented-pass");
    refused.completion = 0x80;
    EXPECT_FALSE(ParseBootstrapCredentials(refused).has_value());
    RawAnswer cut = AnswerOf("host1", "invented-pass");
    cut.data.pop_back();
    EXPECT_FALSE(ParseBootstrapCredentials(cut).has_value());
    RawAnswer other = AnswerOf("host1", "invented-pass");
    other.data.front() = 0xdc;
    EXPECT_FALSE(ParseBootstrapCredentials(other).has_value());
    EXPECT_FALSE(ParseBootstrapCredentials(RawAnswer()).has_value());
}

TEST(BootstrapCredentialsTest, EmptyAndUnprintableTextsAreNone) {
    EXPECT_FALSE(ParseBootstrapCredentials(AnswerOf("", "invented-pass")).has_value());
    EXPECT_FALSE(ParseBootstrapCredentials(AnswerOf("host1", "")).has_value());
    EXPECT_FALSE(ParseBootstrapCredentials(AnswerOf("host\x01", "invented-pass")).has_value());
    EXPECT_FALSE(ParseBootstrapCredentials(AnswerOf("host1", "invented\xff")).has_value());
}

}  // namespace
