#include "platform/log/secret_masker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/log/log_settings.h"

namespace Vantix {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(SecretMaskerTest, UnknownTextStays) {
    EXPECT_EQ(SecretMasker().Mask("nothing to hide"), "nothing to hide");
}

TEST(SecretMaskerTest, EveryOccurrenceIsMasked) {
    SecretMasker masker;
    masker.Add("FakePass1");
    EXPECT_EQ(masker.Mask("FakePass1 and FakePass1FakePass1"), "****** and ************");
}

TEST(SecretMaskerTest, EmptySecretIsIgnored) {
    SecretMasker masker;
    masker.Add("");
    EXPECT_EQ(masker.Mask("text"), "text");
}

TEST(SecretMaskerTest, LongSecretIsMaskedWholeAlthoughItHoldsAShortOne) {
    SecretMasker masker;
    masker.Add("pass");
    masker.Add("pass-and-more");
    EXPECT_EQ(masker.Mask("x pass-and-more y pass"), "x ****** y ******");
}

TEST(SecretMaskerTest, SecretOfStarsDoesNotLoop) {
    SecretMasker masker;
    masker.Add("*");
    EXPECT_EQ(masker.Mask("a*b"), "a******b");
}

TEST(SecretMaskerTest, EncodedFormsAreMasked) {
    SecretMasker masker;
    masker.Add("Fake \"1\"");
    const std::string masked =
        masker.Mask(R"(json Fake \"1\" url Fake%20%221%22 base64 RmFrZSAiMSI=)");
    EXPECT_EQ(masked, "json ****** url ****** base64 ******");
}

TEST(SecretMaskerTest, PatternsAreMaskedWithoutAnyKnownSecret) {
    EXPECT_EQ(SecretMasker().Mask("X-Auth-Token: t"), "X-Auth-Token: ******");
}

TEST(SecretMaskerTest, ForgottenSecretsAreNoLongerMasked) {
    SecretMasker masker;
    masker.Add("FakePass1");
    masker.ForgetAll();
    EXPECT_EQ(masker.Mask("FakePass1"), "FakePass1");
}

TEST(SecretMaskerTest, ErrorTextsAreMaskedBeforeLoggingWasConfigured) {
    AddLogSecret("FakePass2");
    EXPECT_THAT(MaskSecrets("peer said FakePass2"), Not(HasSubstr("FakePass2")));
    ShutdownLog();
}

}  // namespace
}  // namespace Vantix
