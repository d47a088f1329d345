#include "bmc_simulator/certificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace simulators {
namespace {

template <auto kFree>
struct Freer {
    template <typename T>
    void operator()(T* object) const {
        kFree(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Cert = std::unique_ptr<X509, Freer<X509_free>>;
using Bio = std::unique_ptr<BIO, Freer<BIO_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION_free>>;

constexpr long kDay = 24L * 60 * 60;

void Check(bool good, const char* what) {
    if (!good) throw std::runtime_error(std::string("cannot make certificate: ") + what);
}

std::string Text(const Bio& bio) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &data);
    return {data, static_cast<std::size_t>(size)};
}

std::string Digest(const X509* certificate) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned size = 0;
    Check(X509_digest(certificate, EVP_sha256(), bytes.data(), &size) == 1, "fingerprint");
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        text.push_back(kDigits[bytes[i] >> 4]);
        text.push_back(kDigits[bytes[i] & 0xF]);
    }
    return text;
}

void AddExtension(X509* certificate, int nid, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, nid, value.c_str()));
    Check(extension && X509_add_ext(certificate, extension.get(), -1) == 1, value.c_str());
}

void SetSerialAndDates(X509* certificate, bool expired) {
    std::int64_t serial = 0;
    Check(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "serial");
    ASN1_INTEGER_set_int64(X509_get_serialNumber(certificate), serial & INT64_MAX);
    X509_gmtime_adj(X509_getm_notBefore(certificate), expired ? -30 * kDay : -kDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate), expired ? -kDay : 30 * kDay);
}

}  // namespace

Certificate MakeCertificate(KeyKind key_kind, const std::vector<std::string>& names, bool expired) {
    const Key key(key_kind == KeyKind::kRsa1024 ? EVP_RSA_gen(1024) : EVP_EC_gen("P-256"));
    Check(key != nullptr, "key");
    const Cert certificate(X509_new());
    Check(certificate && X509_set_version(certificate.get(), 2) == 1, "version");
    SetSerialAndDates(certificate.get(), expired);
    X509_NAME* subject = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("simulated-bmc"), -1, -1, 0);
    Check(X509_set_issuer_name(certificate.get(), subject) == 1, "issuer");
    Check(X509_set_pubkey(certificate.get(), key.get()) == 1, "public key");
    std::string alternatives;
    for (const std::string& name : names) alternatives += (alternatives.empty() ? "" : ",") + name;
    if (!alternatives.empty()) {
        AddExtension(certificate.get(), NID_subject_alt_name, alternatives);
    }
    AddExtension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
    Check(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0, "signature");

    const Bio certificate_text(BIO_new(BIO_s_mem()));
    const Bio key_text(BIO_new(BIO_s_mem()));
    Check(PEM_write_bio_X509(certificate_text.get(), certificate.get()) == 1, "PEM");
    Check(PEM_write_bio_PrivateKey(key_text.get(), key.get(), nullptr, nullptr, 0, nullptr,
                                   nullptr) == 1,
          "PEM of the key");
    return {Text(certificate_text), Text(key_text), Digest(certificate.get())};
}

std::string FingerprintOf(const std::string& certificate_pem) {
    const Bio text(
        BIO_new_mem_buf(certificate_pem.data(), static_cast<int>(certificate_pem.size())));
    const Cert certificate(PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr));
    Check(certificate != nullptr, "not a PEM certificate");
    return Digest(certificate.get());
}

}  // namespace simulators
