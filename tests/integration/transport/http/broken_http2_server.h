// A TLS service on loopback that offers HTTP/2, but talks nonsense there; over HTTP/1.1 it answers
// every request with an empty JSON object.
#pragma once

#include <memory>

namespace Vantix::transport {

class BrokenHttp2Server {
  public:
    /// Throws std::runtime_error when it cannot listen.
    BrokenHttp2Server();
    /// Ends when the connection that is served at that time ends.
    ~BrokenHttp2Server();
    BrokenHttp2Server(const BrokenHttp2Server&) = delete;
    BrokenHttp2Server& operator=(const BrokenHttp2Server&) = delete;

    [[nodiscard]] int Port() const;
    [[nodiscard]] int Http2Connections() const;
    [[nodiscard]] int Http1Requests() const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Vantix::transport
