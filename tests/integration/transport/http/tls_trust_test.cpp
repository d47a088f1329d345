// Whom the transport trusts, against real TLS services.
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "common/files/file_path.h"
#include "integration/transport/http/http_client.h"
#include "support/temporary_folder.h"

namespace Vantix::transport {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;

// Expects that nothing but a failed handshake was seen.
void ExpectNothingSent(const BmcSimulator& bmc) {
    const simulators::BmcCounts counts = bmc.Counts();
    EXPECT_EQ(counts.requests, 0);
    EXPECT_EQ(counts.authorization_headers_seen, 0);
}

TEST(TlsTrustTest, CertificateOfTheCaFileIsTrusted) {
    const BmcSimulator bmc(SmallBmc());
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_TRUE(outcome.Answered()) << outcome.error.text;
    EXPECT_EQ(outcome.response.status, 200);
}

TEST(TlsTrustTest, UntrustedCertificateGetsNoCredentials) {
    const BmcSimulator bmc(SmallBmc());
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file.clear();
    const HttpOutcome outcome = AskOnce(settings, GetAs(kRoot, "demo", "geheim"));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
    EXPECT_EQ(outcome.error.text.find("geheim"), std::string::npos);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, OtherCaFileIsNotTrusted) {
    const BmcSimulator bmc(SmallBmc());
    const BmcSimulator other(SmallBmc());
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file = other.CaFile();
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, MissingCaFileIsNamed) {
    const BmcSimulator bmc(SmallBmc());
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file = "/no/such/ca.pem";
    const HttpOutcome outcome = AskOnce(settings, GetAs(kRoot, "demo", "geheim"));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
    EXPECT_EQ(outcome.error.text, "no certificates can be read from the CA file '/no/such/ca.pem'");
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, CaFileMayHaveAnyName) {
    const BmcSimulator bmc(SmallBmc());
    const test_support::TemporaryFolder folder;
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file = folder.Path("ca \xC3\xBC\xE4\xB8\xAD.pem");
    std::ofstream(FilePath(settings.ca_file), std::ios::binary)
        << test_support::TemporaryFolder::ReadFile(bmc.CaFile());
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).response.status, 200);
}

TEST(TlsTrustTest, CaFileWithoutCertificatesIsNamed) {
    const BmcSimulator bmc(SmallBmc());
    const test_support::TemporaryFolder folder;
    CurlSettings settings = SettingsFor(bmc);
    for (const std::string& text :
         {std::string(), std::string("no certificate\n"), std::string(8'000'001, '\n')}) {
        settings.ca_file = folder.Write("empty.pem", text);
        const HttpOutcome outcome = AskOnce(settings, GetAs(kRoot, "demo", "geheim"));
        EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
        EXPECT_EQ(outcome.error.text,
                  "no certificates can be read from the CA file '" + settings.ca_file + "'");
    }
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, CertificateForAnotherHostIsNotTrusted) {
    BmcOptions options = SmallBmc();
    options.certificate_names = {"DNS:another.example"};
    const BmcSimulator bmc(options);
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, ExpiredCertificateIsNotTrusted) {
    BmcOptions options = SmallBmc();
    options.certificate_expired = true;
    const BmcSimulator bmc(options);
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, SwitchedOffCheckTrustsAnybody) {
    BmcOptions options = SmallBmc();
    options.certificate_expired = true;
    options.certificate_names = {"DNS:another.example"};
    const BmcSimulator bmc(options);
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file.clear();
    settings.verify_certificate = false;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).response.status, 200);
}

// ---- fingerprint
// ---------------------------------------------------------------------------------

CurlSettings PinnedTo(const BmcSimulator& bmc, const std::string& fingerprint) {
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file.clear();
    settings.fingerprint = fingerprint;
    return settings;
}

TEST(TlsTrustTest, RightFingerprintIsTrusted) {
    const BmcSimulator bmc(SmallBmc());
    EXPECT_EQ(AskOnce(PinnedTo(bmc, bmc.Fingerprint()), Get(kRoot)).response.status, 200);
}

TEST(TlsTrustTest, RightFingerprintDecidesAloneOverNameAndDate) {
    BmcOptions options = SmallBmc();
    options.certificate_expired = true;
    options.certificate_names = {"DNS:another.example"};
    const BmcSimulator bmc(options);
    EXPECT_EQ(AskOnce(PinnedTo(bmc, bmc.Fingerprint()), Get(kRoot)).response.status, 200);
}

TEST(TlsTrustTest, WrongFingerprintGetsNoCredentials) {
    const BmcSimulator bmc(SmallBmc());
    const CurlSettings settings = PinnedTo(bmc, std::string(64, 'a'));
    const HttpOutcome outcome = AskOnce(settings, GetAs(kRoot, "demo", "geheim"));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
    EXPECT_NE(outcome.error.text.find("fingerprint is "), std::string::npos) << outcome.error.text;
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, WrongFingerprintWinsOverATrustedChain) {
    const BmcSimulator bmc(SmallBmc());
    CurlSettings settings = SettingsFor(bmc);
    settings.fingerprint = std::string(64, 'a');
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, WrongFingerprintWinsOverTheSwitchedOffCheck) {
    const BmcSimulator bmc(SmallBmc());
    CurlSettings settings = PinnedTo(bmc, std::string(64, 'a'));
    settings.verify_certificate = false;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, MalformedFingerprintOpensNoConnection) {
    const BmcSimulator bmc(SmallBmc());
    const HttpOutcome outcome = AskOnce(PinnedTo(bmc, "ab:cd"), Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
    EXPECT_NE(outcome.error.text.find("malformed"), std::string::npos) << outcome.error.text;
    EXPECT_EQ(bmc.Counts().connections, 0);
}

// ---- old protocol versions and short keys
// ----------------------------------------------------------

BmcOptions OldTls() {
    BmcOptions options = SmallBmc();
    options.tls_min = simulators::TlsVersion::kTls10;
    options.tls_max = simulators::TlsVersion::kTls11;
    return options;
}

std::string TextOf(BIO* bio) {
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(bio, &bytes);
    return std::string(bytes, static_cast<std::size_t>(size));
}

// A certificate with a key that no current controller has, but some old ones do.
BmcOptions VeryShortKey() {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_RSA_gen(512), EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    const std::unique_ptr<BIO, decltype(&BIO_free)> key_text(BIO_new(BIO_s_mem()), BIO_free);
    const std::unique_ptr<BIO, decltype(&BIO_free)> text(BIO_new(BIO_s_mem()), BIO_free);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    PEM_write_bio_PrivateKey(key_text.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    PEM_write_bio_X509(text.get(), certificate.get());
    BmcOptions options = SmallBmc();
    options.key_kind = simulators::KeyKind::kRsa1024;  // lowers the simulator's own demands
    options.tls_max = simulators::TlsVersion::kTls12;  // later versions cannot use such a key
    options.certificate_pem = TextOf(text.get());
    options.private_key_pem = TextOf(key_text.get());
    return options;
}

BmcOptions ShortKey() {
    BmcOptions options = SmallBmc();
    options.key_kind = simulators::KeyKind::kRsa1024;
    return options;
}

TEST(TlsTrustTest, OldProtocolVersionIsRefusedAndTheOptionNamed) {
    const BmcSimulator bmc(OldTls());
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kTlsHandshake);
    EXPECT_NE(outcome.error.text.find("--tls-legacy"), std::string::npos) << outcome.error.text;
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, OldProtocolVersionWorksOnDemand) {
    const BmcSimulator bmc(OldTls());
    CurlSettings settings = SettingsFor(bmc);
    settings.legacy_tls = true;
    const HttpOutcome outcome = AskOnce(settings, Get(kRoot));
    EXPECT_EQ(outcome.response.status, 200) << outcome.error.text;
}

TEST(TlsTrustTest, ShortKeyIsRefusedAndTheOptionNamed) {
    const BmcSimulator bmc(ShortKey());
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_FALSE(outcome.Answered());
    EXPECT_NE(outcome.error.text.find("--tls-legacy"), std::string::npos) << outcome.error.text;
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, ShortKeyWorksOnDemand) {
    const BmcSimulator bmc(ShortKey());
    CurlSettings settings = SettingsFor(bmc);
    settings.legacy_tls = true;
    const HttpOutcome outcome = AskOnce(settings, Get(kRoot));
    EXPECT_EQ(outcome.response.status, 200) << outcome.error.text;
}

TEST(TlsTrustTest, VeryShortKeyIsRefusedAndTheOptionNamed) {
    const BmcSimulator bmc(VeryShortKey());
    const HttpOutcome outcome = AskOnce(PinnedTo(bmc, bmc.Fingerprint()), Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kUntrusted);
    EXPECT_NE(outcome.error.text.find("--tls-legacy"), std::string::npos) << outcome.error.text;
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, VeryShortKeyWorksOnDemand) {
    const BmcSimulator bmc(VeryShortKey());
    CurlSettings settings = PinnedTo(bmc, bmc.Fingerprint());
    settings.legacy_tls = true;
    const HttpOutcome outcome = AskOnce(settings, Get(kRoot));
    EXPECT_EQ(outcome.response.status, 200) << outcome.error.text;
}

TEST(TlsTrustTest, OldProtocolAllowanceDoesNotWeakenTheTrust) {
    const BmcSimulator bmc(OldTls());
    CurlSettings settings = SettingsFor(bmc);
    settings.ca_file.clear();
    settings.legacy_tls = true;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    ExpectNothingSent(bmc);
}

TEST(TlsTrustTest, FingerprintIsCheckedUnderOldProtocolVersionsToo) {
    const BmcSimulator bmc(OldTls());
    CurlSettings settings = PinnedTo(bmc, std::string(64, 'a'));
    settings.legacy_tls = true;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kUntrusted);
    settings.fingerprint = bmc.Fingerprint();
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).response.status, 200);
}

}  // namespace
}  // namespace Vantix::transport
