#include "transport/http/tls_trust.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

const std::string kPlain = "00112233445566778899aabbccddeeff00112233445566778899AABBCCDDEEFF";
const std::string kWithColons =
    "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF:"
    "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF";

TEST(TlsTrustUnitTest, FingerprintIsReadWithAndWithoutColons) {
    const auto plain = ParseFingerprint(kPlain);
    ASSERT_TRUE(plain);
    EXPECT_EQ((*plain)[1], 0x11);
    EXPECT_EQ((*plain)[31], 0xFF);
    EXPECT_EQ(ParseFingerprint(kWithColons), plain);
    EXPECT_EQ(ParseFingerprint(" " + kPlain + " "), plain);
}

TEST(TlsTrustUnitTest, FingerprintTextHasColonsAndCapitals) {
    EXPECT_EQ(FingerprintText(ParseFingerprint(kPlain).value_or(Sha256Digest())), kWithColons);
}

TEST(TlsTrustUnitTest, OtherTextsAreNoFingerprint) {
    const std::string sha1(40, 'a');
    for (const std::string& text :
         {std::string(), sha1, kPlain.substr(1), kPlain + "0", kPlain.substr(1) + "g",
          "sha256:" + kPlain, kPlain.substr(1) + "\n"}) {
        EXPECT_FALSE(ParseFingerprint(text)) << text;
    }
}

TEST(TlsTrustUnitTest, MalformedFingerprintIsASetupError) {
    CurlSettings settings;
    settings.fingerprint = "ab:cd";
    EXPECT_EQ(TlsTrust(settings).SetupError(),
              "the certificate fingerprint is malformed: 64 hexadecimal digits (SHA-256) are "
              "needed");
}

TEST(TlsTrustUnitTest, NoFingerprintIsNoSetupError) {
    EXPECT_EQ(TlsTrust(CurlSettings()).SetupError(), "");
}

TEST(TlsTrustUnitTest, CertificateIsComparedByItsDigest) {
    CurlSettings settings;
    // SHA-256 of "abc" (FIPS 180-4, example)
    settings.fingerprint = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
    TlsTrust trust(settings);
    const std::string wanted = "abc";
    const std::string other = "abd";
    EXPECT_TRUE(trust.IsWanted(reinterpret_cast<const std::uint8_t*>(wanted.data()), 3));
    EXPECT_FALSE(trust.IsWanted(reinterpret_cast<const std::uint8_t*>(other.data()), 3));
}

TEST(TlsTrustUnitTest, LegacyHintIsNotRepeatedWhereTheOptionIsOn) {
    CurlSettings settings;
    const std::string text = "error:0A000102:SSL routines::unsupported protocol";
    EXPECT_EQ(TlsTrust(settings).Explain(CURLE_SSL_CONNECT_ERROR, text),
              text + " (the option --tls-legacy allows old protocol versions and short keys)");
    settings.legacy_tls = true;
    EXPECT_EQ(TlsTrust(settings).Explain(CURLE_SSL_CONNECT_ERROR, text), text);
}

TEST(TlsTrustUnitTest, OtherFailuresKeepTheirWords) {
    EXPECT_EQ(TlsTrust(CurlSettings()).Explain(CURLE_COULDNT_CONNECT, "refused"), "refused");
}

}  // namespace
}  // namespace Vantix::transport
