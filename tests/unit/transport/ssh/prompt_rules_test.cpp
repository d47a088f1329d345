#include "transport/ssh/prompt_rules.h"

#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

TEST(PromptRulesTest, OneHiddenPromptGetsThePassword) {
    EXPECT_EQ(ReplyToPrompts({{"Password: "}}, "", false), PromptReply::kPassword);
    EXPECT_EQ(ReplyToPrompts({{""}}, "", false), PromptReply::kPassword);
}

TEST(PromptRulesTest, PasswordIsGivenOnceOnly) {
    EXPECT_EQ(ReplyToPrompts({{"Password: "}}, "", true), PromptReply::kRefuse);
}

TEST(PromptRulesTest, VisiblePromptIsRefused) {
    EXPECT_EQ(ReplyToPrompts({{"Password: ", true}}, "", false), PromptReply::kRefuse);
}

TEST(PromptRulesTest, SeveralPromptsAreRefused) {
    EXPECT_EQ(ReplyToPrompts({{"Password: "}, {"Code: "}}, "", false), PromptReply::kRefuse);
    EXPECT_EQ(ReplyToPrompts({{"User: ", true}, {"Password: "}}, "", false), PromptReply::kRefuse);
}

TEST(PromptRulesTest, NoPromptIsAnsweredWithNothing) {
    EXPECT_EQ(ReplyToPrompts({}, "Welcome", false), PromptReply::kNothing);
    EXPECT_EQ(ReplyToPrompts({}, "", true), PromptReply::kNothing);
}

TEST(PromptRulesTest, WishForANewPasswordIsSeenInPromptAndInstruction) {
    EXPECT_EQ(ReplyToPrompts({{"New password: "}}, "", true), PromptReply::kPasswordMustChange);
    EXPECT_EQ(ReplyToPrompts({{"Enter new UNIX password: "}}, "", true),
              PromptReply::kPasswordMustChange);
    EXPECT_EQ(ReplyToPrompts({{"Current password: "}},
                             "You are required to change your password immediately", false),
              PromptReply::kPasswordMustChange);
    EXPECT_EQ(ReplyToPrompts({}, "Your password has expired", false),
              PromptReply::kPasswordMustChange);
}

}  // namespace
}  // namespace Vantix::transport
