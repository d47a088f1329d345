#include "transport/http/tls_trust.h"

#include <openssl/evp.h>
#include <openssl/sha.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <array>
#include <fstream>
#include <memory>

#include "common/files/file_path.h"
#include "transport/http/curl_error_table.h"

namespace Vantix::transport {
namespace {

int HexValue(char letter) {
    if (letter >= '0' && letter <= '9') {
        return letter - '0';
    }
    if (letter >= 'a' && letter <= 'f') {
        return letter - 'a' + 10;
    }
    if (letter >= 'A' && letter <= 'F') {
        return letter - 'A' + 10;
    }
    return -1;
}

// What OpenSSL's usual security level asks for: RSA with 2048 bits (NIST SP 800-57).
constexpr int kLeastSecurityBits = 112;
constexpr int kLeastSecurityLevel = 2;

// Anybody can work out a short enough key, whatever the fingerprint of its certificate.
bool IsKeyStrong(X509* certificate) {
    const EVP_PKEY* const key = X509_get0_pubkey(certificate);
    return key != nullptr && EVP_PKEY_get_security_bits(key) >= kLeastSecurityBits;
}

int JudgePinnedCertificate(X509* certificate, TlsTrust& trust) {
    unsigned char* der = nullptr;
    const int size = certificate == nullptr ? -1 : i2d_X509(certificate, &der);
    const auto free_der = [](unsigned char* bytes) { OPENSSL_free(bytes); };
    const std::unique_ptr<unsigned char, decltype(free_der)> holder(der, free_der);
    if (size <= 0 || !trust.IsWanted(der, static_cast<std::size_t>(size))) {
        return X509_V_ERR_APPLICATION_VERIFICATION;
    }
    const bool is_strong = trust.IsLegacyAllowed() || IsKeyStrong(certificate);
    return is_strong ? X509_V_OK : X509_V_ERR_EE_KEY_TOO_SMALL;
}

// Called by OpenSSL instead of its own chain check, with the peer's certificate at hand.
int CheckPinnedCertificate(X509_STORE_CTX* context, void* trust) {
    const int verdict =
        JudgePinnedCertificate(X509_STORE_CTX_get0_cert(context), *static_cast<TlsTrust*>(trust));
    X509_STORE_CTX_set_error(context, verdict);
    return verdict == X509_V_OK ? 1 : 0;
}

CURLcode ConfigureContext(CURL*, void* ssl_context, void* trust_pointer) {
    auto* const context = static_cast<SSL_CTX*>(ssl_context);
    auto* const trust = static_cast<TlsTrust*>(trust_pointer);
    if (trust->IsLegacyAllowed()) {
        SSL_CTX_set_security_level(context, 0);
        SSL_CTX_set_options(context, SSL_OP_LEGACY_SERVER_CONNECT);
    } else if (SSL_CTX_get_security_level(context) < kLeastSecurityLevel) {
        // OpenSSL as its makers build it asks for less than the distributions do.
        SSL_CTX_set_security_level(context, kLeastSecurityLevel);
    }
    if (trust->IsPinned()) {
        // libcurl was told not to verify, so that it loads no store; without this line OpenSSL
        // would ignore what the callback says.
        SSL_CTX_set_verify(context, SSL_VERIFY_PEER, nullptr);
        SSL_CTX_set_cert_verify_callback(context, CheckPinnedCertificate, trust);
    }
    return CURLE_OK;
}

}  // namespace

std::optional<Sha256Digest> ParseFingerprint(std::string_view text) {
    Sha256Digest digest{};
    std::size_t digits = 0;
    for (const char letter : text) {
        if (letter == ':' || letter == ' ' || letter == '\t') {
            continue;
        }
        const int value = HexValue(letter);
        if (value < 0 || digits == 2 * digest.size()) {
            return std::nullopt;
        }
        auto& byte = digest[digits / 2];
        byte = static_cast<std::uint8_t>(byte * 16 + value);
        ++digits;
    }
    return digits == 2 * digest.size() ? std::optional(digest) : std::nullopt;
}

std::string FingerprintText(const Sha256Digest& digest) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : digest) {
        if (!text.empty()) {
            text += ':';
        }
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0x0FU];
    }
    return text;
}

namespace {

// What libcurl takes as one block of certificates.
constexpr std::size_t kMostCaBytes = 8'000'000;

// Read here because OpenSSL would take a name in the code page of a Windows machine. Empty, where
// no certificate can be found, when the file cannot be read or is larger than libcurl takes.
std::string CaBytes(const std::string& file) {
    std::ifstream stream(FilePath(file), std::ios::binary);
    std::string bytes;
    std::array<char, 16384> block;
    while (bytes.size() <= kMostCaBytes && stream) {
        stream.read(block.data(), static_cast<std::streamsize>(block.size()));
        bytes.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    return bytes.size() > kMostCaBytes ? std::string() : bytes;
}

}  // namespace

TlsTrust::TlsTrust(const CurlSettings& settings) : settings_(settings) {
    if (settings.verify_certificate && !settings.ca_file.empty()) {
        ca_bytes_ = CaBytes(settings.ca_file);
    }
    if (settings.fingerprint.empty()) {
        return;
    }
    pin_ = ParseFingerprint(settings.fingerprint);
    if (!pin_) {
        setup_error_ =
            "the certificate fingerprint is malformed: 64 hexadecimal digits (SHA-256) are needed";
    }
}

void TlsTrust::Apply(CURL* easy) {
    curl_easy_setopt(easy, CURLOPT_SSLVERSION,
                     static_cast<long>(settings_.legacy_tls ? CURL_SSLVERSION_TLSv1_0
                                                            : CURL_SSLVERSION_TLSv1_2));
    if (settings_.legacy_tls) {
        curl_easy_setopt(easy, CURLOPT_SSL_CIPHER_LIST, "DEFAULT:@SECLEVEL=0");
    }
    ApplyTrust(easy);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_FUNCTION, &ConfigureContext);
    curl_easy_setopt(easy, CURLOPT_SSL_CTX_DATA, this);
}

namespace {

// OpenSSL finds the store of a Unix system by itself; that of Windows is no file.
void UseSystemStore([[maybe_unused]] CURL* easy) {
#ifdef _WIN32
    curl_easy_setopt(easy, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
#endif
}

void UseCaBytes(CURL* easy, const std::string& bytes) {
    curl_blob blob{};
    // Never written to; libcurl's type is for both directions.
    blob.data = const_cast<char*>(bytes.data());
    blob.len = bytes.size();
    blob.flags = CURL_BLOB_NOCOPY;
    curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
}

}  // namespace

void TlsTrust::ApplyTrust(CURL* easy) const {
    const bool check_chain = settings_.verify_certificate && !pin_;
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, check_chain ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, check_chain ? 2L : 0L);
    if (check_chain && settings_.ca_file.empty()) {
        UseSystemStore(easy);
        return;
    }
    // A CA file replaces the system's store, it does not add to it; and a store that nobody asks is
    // not loaded at all (24 ms).
    curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(easy, CURLOPT_CAINFO, nullptr);
    if (check_chain) UseCaBytes(easy, ca_bytes_);
}

bool TlsTrust::IsWanted(const std::uint8_t* certificate, std::size_t size) {
    Sha256Digest digest{};
    SHA256(certificate, size, digest.data());
    if (pin_ && digest == *pin_) {
        seen_fingerprint_.clear();
        return true;
    }
    seen_fingerprint_ = FingerprintText(digest);
    return false;
}

std::string TlsTrust::Explain(CURLcode code, const std::string& text) const {
    if (code == CURLE_SSL_CACERT_BADFILE && !settings_.ca_file.empty()) {
        return "no certificates can be read from the CA file '" + settings_.ca_file + "'";
    }
    if (code == CURLE_PEER_FAILED_VERIFICATION && pin_ && !seen_fingerprint_.empty()) {
        return "the certificate's SHA-256 fingerprint is " + seen_fingerprint_ +
               ", which is not the expected one";
    }
    const bool is_tls_failure =
        code == CURLE_SSL_CONNECT_ERROR || code == CURLE_PEER_FAILED_VERIFICATION;
    if (is_tls_failure && !settings_.legacy_tls && MayLegacyTlsHelp(text)) {
        return text + " (the option --tls-legacy allows old protocol versions and short keys)";
    }
    return text;
}

}  // namespace Vantix::transport
