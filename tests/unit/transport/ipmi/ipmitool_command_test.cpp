#include "transport/ipmi/ipmitool_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace Vantix::transport {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const IpmiTarget kTarget{"127.0.0.1", 16623, "operator", "invented-pass"};

/// The argument behind `option`; empty when it is not there.
std::string ValueOf(const Command& command, const std::string& option) {
    const auto& words = command.arguments;
    const auto found = std::find(words.begin(), words.end(), option);
    return found == words.end() || found + 1 == words.end() ? "" : *(found + 1);
}

Command CommandFor(const IpmiTarget& target, const IpmiTry& attempt = {}) {
    return IpmiToolCommand("ipmitool", target, attempt, {"raw 0x06 0x01"});
}

TEST(IpmiToolCommandTest, WholeArgumentVectorIsAsWritten) {
    EXPECT_THAT(CommandFor(kTarget).arguments,
                ElementsAre("-v", "-I", "lanplus", "-H", "127.0.0.1", "-p", "16623", "-U",
                            "operator", "-f", PassedTextPath(0), "-C", "17", "-N", "2", "-R", "2",
                            "exec", PassedTextPath(1)));
}

TEST(IpmiToolCommandTest, PasswordStandsInAPassedTextOnly) {
    const Command command = CommandFor(kTarget);
    EXPECT_THAT(command.passed_texts, Contains("invented-pass"));
    for (const auto& word : command.arguments) EXPECT_THAT(word, Not(HasSubstr("invented-pass")));
    EXPECT_TRUE(command.environment.empty());
}

TEST(IpmiToolCommandTest, ScriptHoldsNoSecret) {
    EXPECT_THAT(CommandFor(kTarget).passed_texts.back(), Not(HasSubstr("invented-pass")));
}

TEST(IpmiToolCommandTest, ScriptMarksEachAnswerAndTheEnd) {
    const Command command = IpmiToolCommand("ipmitool", kTarget, {}, {"raw 0x06 0x01", "sdr"});
    EXPECT_EQ(command.passed_texts.back(), "echo @0\nraw 0x06 0x01\necho @1\nsdr\necho @2\n");
}

TEST(IpmiToolCommandTest, CipherOfTheTryIsAlwaysGiven) {
    EXPECT_EQ(ValueOf(CommandFor(kTarget, {3, ""}), "-C"), "3");
    EXPECT_EQ(ValueOf(CommandFor(kTarget, {17, ""}), "-C"), "17");
}

TEST(IpmiToolCommandTest, PrivilegeIsGivenOnlyWhenAsked) {
    EXPECT_THAT(CommandFor(kTarget).arguments, Not(Contains("-L")));
    EXPECT_EQ(ValueOf(CommandFor(kTarget, {17, "OPERATOR"}), "-L"), "OPERATOR");
}

TEST(IpmiToolCommandTest, EmptyPasswordIsNotPassedAsAFile) {
    const Command command = CommandFor({"127.0.0.1", 623, "guest", ""});
    EXPECT_THAT(command.arguments, Not(Contains("-f")));
    EXPECT_EQ(command.passed_texts.size(), 1U);
    EXPECT_EQ(ValueOf(command, "exec"), PassedTextPath(0));
}

TEST(IpmiToolCommandTest, LocalInterfaceNeedsNoAccount) {
    const Command command = CommandFor({"", 623, "operator", "invented-pass"});
    EXPECT_THAT(command.arguments,
                ElementsAre("-v", "-I", "open", "-N", "2", "-R", "2", "exec", PassedTextPath(0)));
    EXPECT_THAT(command.passed_texts, Not(Contains("invented-pass")));
}

TEST(IpmiToolCommandTest, RawLineWritesEveryByte) {
    EXPECT_EQ(RawLine({0x0a, 0x11, {0x00, 0xf8, 0x10}}), "raw 0x0a 0x11 0x00 0xf8 0x10");
    EXPECT_EQ(RawLine({0x06, 0x01, {}}), "raw 0x06 0x01");
}

TEST(IpmiToolCommandTest, PasswordOfTwentyBytesIsUsable) {
    EXPECT_TRUE(IsUsableIpmiPassword(std::string(20, 'x')));
    EXPECT_TRUE(IsUsableIpmiPassword(""));
}

TEST(IpmiToolCommandTest, PasswordOfTwentyOneBytesIsNot) {
    EXPECT_FALSE(IsUsableIpmiPassword(std::string(21, 'x')));
}

TEST(IpmiToolCommandTest, BytesAreCountedNotLetters) {
    std::string eleven_letters;
    for (int n = 0; n < 11; ++n) eleven_letters += "\xc3\xa9";
    EXPECT_FALSE(IsUsableIpmiPassword(eleven_letters));
}

TEST(IpmiToolCommandTest, PasswordThatTheToolWouldCutIsNotUsable) {
    for (const char* text : {"a\tb", "a\nb", "a\rb", "\n"}) {
        EXPECT_FALSE(IsUsableIpmiPassword(text)) << text;
    }
    EXPECT_FALSE(IsUsableIpmiPassword(std::string("a\0b", 3)));
}

}  // namespace
}  // namespace Vantix::transport
