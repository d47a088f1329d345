// Follows redirects by our own rules: same scheme, host and port, at most three, method and body
// kept. Anything else ends as an error: credentials and tokens never travel to another host.
#pragma once

#include <string>

#include "transport/http/http_transport.h"

namespace Vantix::transport {

class RedirectFollower : public HttpTransport {
  public:
    /// `inner` must outlive the object. `scheme`, `host` (without brackets) and `port` are those
    /// that the inner transport talks to.
    RedirectFollower(HttpTransport& inner, std::string scheme, std::string host, int port);

    void Submit(HttpRequest request, Handler handler) override;
    bool Step(Milliseconds max_wait) override;
    void SetMaxConnections(int count) override;
    void DropIdleConnections() override;
    void Abort(AbortScope scope) override;

  private:
    void SubmitFollowing(HttpRequest request, Handler handler, int redirects_left);
    /// The path to ask instead; empty when `location` leads elsewhere.
    [[nodiscard]] std::string TargetOf(const std::string& location, const std::string& asked) const;

    HttpTransport& inner_;
    std::string scheme_;
    std::string host_;
    int port_;
};

}  // namespace Vantix::transport
