// HTTP over libcurl's multi interface, on the caller's thread.
//
// Knows TLS trust (system store, CA file, certificate fingerprint, off), proxies, connection reuse
// and limits. Does not follow redirects, does not retry, knows no sessions: those are decided
// above.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "transport/http/http_transport.h"

namespace Vantix::transport {

struct CurlSettings {
    std::string host;  ///< name or address; IPv6 without brackets, zone id allowed
    int port = 443;
    bool use_tls = true;
    bool verify_certificate = true;
    std::string ca_file;      ///< PEM, read once; empty: the system's store
    std::string fingerprint;  ///< SHA-256 of the certificate, hexadecimal, colons allowed; when
                              ///< set it decides, chain and name are not looked at; a short key
                              ///< is refused all the same unless legacy_tls allows it
    bool legacy_tls = false;  ///< TLS 1.0 and up, security level 0, legacy renegotiation
    std::string proxy;        ///< empty: connect directly
    bool use_environment_proxy = false;
    Milliseconds connect_timeout{10000};
    std::size_t max_body_bytes = 32 * 1024 * 1024;
    int max_connections = 3;
    std::string user_agent = "tarsel";
};

class CurlTransport : public HttpTransport {
  public:
    explicit CurlTransport(CurlSettings settings);
    ~CurlTransport() override;
    CurlTransport(const CurlTransport&) = delete;
    CurlTransport& operator=(const CurlTransport&) = delete;

    void Submit(HttpRequest request, Handler handler) override;
    bool Step(Milliseconds max_wait) override;
    void SetMaxConnections(int count) override;
    void DropIdleConnections() override;
    int PreferIdleConnections() override;
    void Abort(AbortScope scope) override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Vantix::transport
