#include "integration/transport/http/broken_http2_server.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <atomic>
#include <charconv>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

namespace Vantix::transport {
namespace {

struct Deleter {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
    void operator()(BIO* bio) const { BIO_free_all(bio); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
};
template <typename T>
using Owned = std::unique_ptr<T, Deleter>;

void UseNewCertificate(SSL_CTX* context) {
    const Owned<EVP_PKEY> key(EVP_EC_gen("P-256"));
    const Owned<X509> certificate(X509_new());
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    SSL_CTX_use_certificate(context, certificate.get());
    SSL_CTX_use_PrivateKey(context, key.get());
}

int PreferHttp2(SSL*, const unsigned char** chosen, unsigned char* length,
                const unsigned char* offered, unsigned int offered_length, void*) {
    static constexpr unsigned char kWanted[] = "\x02h2\x08http/1.1";
    unsigned char* found = nullptr;
    const int result = SSL_select_next_proto(&found, length, kWanted, sizeof(kWanted) - 1, offered,
                                             offered_length);
    *chosen = found;
    return result == OPENSSL_NPN_NEGOTIATED ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_NOACK;
}

bool IsHttp2(BIO* connection) {
    SSL* ssl = nullptr;
    BIO_get_ssl(connection, &ssl);
    const unsigned char* name = nullptr;
    unsigned int length = 0;
    SSL_get0_alpn_selected(ssl, &name, &length);
    return length == 2;
}

void Write(BIO* connection, std::string_view text) {
    BIO_write(connection, text.data(), static_cast<int>(text.size()));
    BIO_flush(connection);
}

}  // namespace

class BrokenHttp2Server::Impl {
  public:
    Impl() : context_(SSL_CTX_new(TLS_server_method())) {
        UseNewCertificate(context_.get());
        SSL_CTX_set_alpn_select_cb(context_.get(), &PreferHttp2, nullptr);
        // The name of the port that the system chose is read back from the socket.
        listener_.reset(BIO_new_accept("127.0.0.1:0"));
        BIO_set_accept_bios(listener_.get(), BIO_new_ssl(context_.get(), 0));
        if (BIO_do_accept(listener_.get()) <= 0) {
            throw std::runtime_error("cannot listen");
        }
        const std::string_view port = BIO_get_accept_port(listener_.get());
        std::from_chars(port.data(), port.data() + port.size(), port_);
        thread_ = std::thread([this] { Serve(); });
    }

    ~Impl() {
        is_ending_ = true;
        // One more connection wakes the thread up.
        const std::string address = "127.0.0.1:" + std::to_string(port_);
        const Owned<BIO> knock(BIO_new_connect(address.c_str()));
        BIO_do_connect(knock.get());
        thread_.join();
    }

    std::atomic<int> http2_connections{0};
    std::atomic<int> http1_requests{0};
    [[nodiscard]] int Port() const { return port_; }

  private:
    void Serve() {
        while (!is_ending_ && BIO_do_accept(listener_.get()) > 0) {
            const Owned<BIO> connection(BIO_pop(listener_.get()));
            if (!is_ending_ && BIO_do_handshake(connection.get()) > 0) {
                Talk(connection.get());
            }
        }
    }

    void Talk(BIO* connection) {
        const bool is_http2 = IsHttp2(connection);
        http2_connections += is_http2 ? 1 : 0;
        std::string received;
        char buffer[1024];
        int count = 0;
        // Reads on until the client hangs up: an early end would reset the connection and take
        // the nonsense away with it.
        while ((count = BIO_read(connection, buffer, sizeof(buffer))) > 0) {
            received.append(buffer, static_cast<std::size_t>(count));
            if (is_http2) {
                Write(connection, "HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
                BIO_ssl_shutdown(connection);
            } else if (received.find("\r\n\r\n") != std::string::npos) {
                received.clear();
                ++http1_requests;
                Write(connection, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}");
            }
        }
    }

    Owned<SSL_CTX> context_;
    Owned<BIO> listener_;
    int port_ = 0;
    std::atomic<bool> is_ending_{false};
    std::thread thread_;
};

BrokenHttp2Server::BrokenHttp2Server() : impl_(std::make_unique<Impl>()) {}
BrokenHttp2Server::~BrokenHttp2Server() = default;
int BrokenHttp2Server::Port() const {
    return impl_->Port();
}
int BrokenHttp2Server::Http2Connections() const {
    return impl_->http2_connections;
}
int BrokenHttp2Server::Http1Requests() const {
    return impl_->http1_requests;
}

}  // namespace Vantix::transport
