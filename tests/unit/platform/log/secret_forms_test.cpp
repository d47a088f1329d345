#include "platform/log/secret_forms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace Vantix {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const kOddSecret = "p:\xC3\xA4\"\\ $</&'>";

TEST(SecretFormsTest, EmptySecretHasNoForm) {
    EXPECT_THAT(FormsOfSecret(""), IsEmpty());
}

TEST(SecretFormsTest, SecretItselfIsAForm) {
    EXPECT_THAT(FormsOfSecret(kOddSecret), Contains(kOddSecret));
}

TEST(SecretFormsTest, JsonEscapesAreCovered) {
    EXPECT_THAT(FormsOfSecret("a\"b\\c\nd/e\x01"), Contains("a\\\"b\\\\c\\nd/e\\u0001"));
    EXPECT_THAT(FormsOfSecret("a/b"), Contains("a\\/b"));
}

TEST(SecretFormsTest, AsciiOnlyJsonIsCoveredInBothLetterCases) {
    EXPECT_THAT(FormsOfSecret("x\xC3\xAA"), Contains("x\\u00ea"));
    EXPECT_THAT(FormsOfSecret("x\xC3\xAA"), Contains("x\\u00EA"));
}

TEST(SecretFormsTest, AsciiOnlyJsonUsesSurrogatesBeyondTheFirstPlane) {
    EXPECT_THAT(FormsOfSecret("k\xF0\x9F\x94\x91"), Contains("k\\ud83d\\udd11"));
}

TEST(SecretFormsTest, XmlEscapesAreCovered) {
    EXPECT_THAT(FormsOfSecret("a<b>&\"'"), Contains("a&lt;b&gt;&amp;&quot;&apos;"));
    EXPECT_THAT(FormsOfSecret("a<b>&\"'"), Contains("a&lt;b&gt;&amp;&quot;&#39;"));
    EXPECT_THAT(FormsOfSecret("a<b>&\"'"), Contains("a&lt;b&gt;&amp;\"'"));
}

TEST(SecretFormsTest, UrlEncodingsAreCovered) {
    EXPECT_THAT(FormsOfSecret("a b/~\xC3\xA4"), Contains("a%20b%2F~%C3%A4"));
    EXPECT_THAT(FormsOfSecret("a b/~\xC3\xA4"), Contains("a%20b%2f~%c3%a4"));
    EXPECT_THAT(FormsOfSecret("a b/~\xC3\xA4"), Contains("a+b%2F~%C3%A4"));
}

TEST(SecretFormsTest, Base64IsCoveredWithItsPadding) {
    EXPECT_THAT(FormsOfSecret("foobar"), Contains("Zm9vYmFy"));
    EXPECT_THAT(FormsOfSecret("fooba"), Contains("Zm9vYmE="));
    EXPECT_THAT(FormsOfSecret("foob"), Contains("Zm9vYg=="));
}

bool AnyFormIsPartOf(const std::string& text, const std::string& secret) {
    const auto forms = FormsOfSecret(secret);
    return std::any_of(forms.begin(), forms.end(), [&text](const std::string& form) {
        return text.find(form) != std::string::npos;
    });
}

TEST(SecretFormsTest, Base64BehindAUserNameOfAnyLengthIsRecognised) {
    EXPECT_TRUE(AnyFormIsPartOf("YTpGYWtlUGFzczE=", "FakePass1"));      // "a:FakePass1"
    EXPECT_TRUE(AnyFormIsPartOf("YWI6RmFrZVBhc3Mx", "FakePass1"));      // "ab:FakePass1"
    EXPECT_TRUE(AnyFormIsPartOf("YWJjOkZha2VQYXNzMQ==", "FakePass1"));  // "abc:FakePass1"
}

TEST(SecretFormsTest, ShortSecretsYieldNoEmbeddedBase64) {
    EXPECT_THAT(FormsOfSecret("ab"), ElementsAre("YWI=", "ab"));
}

TEST(SecretFormsTest, LongFormsComeFirst) {
    const auto forms = FormsOfSecret(kOddSecret);
    EXPECT_TRUE(std::is_sorted(forms.begin(), forms.end(),
                               [](const auto& a, const auto& b) { return a.size() > b.size(); }));
}

TEST(SecretFormsTest, NoFormIsRepeated) {
    auto forms = FormsOfSecret("plain");
    std::sort(forms.begin(), forms.end());
    EXPECT_EQ(std::adjacent_find(forms.begin(), forms.end()), forms.end());
}

}  // namespace
}  // namespace Vantix
